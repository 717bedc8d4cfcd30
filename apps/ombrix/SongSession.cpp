#include "SongSession.h"

#include "InstrumentRequest.h"
#include "midi/MidiFile.h"

std::unique_ptr<SongSession> SongSession::prepare(const Arguments& arguments, std::string& error) {
    std::unique_ptr<SongSession> session(new SongSession);
    if (arguments.words().size() != 1) {
        error = arguments.words().empty() ? "name the MIDI file to play"
                                          : "one MIDI file at a time, not " + arguments.words()[1];
        return nullptr;
    }
    error = session->readSong(arguments.words()[0]);
    if (error.empty())
        session->m_instrument = makeInstrument(arguments, error);
    return error.empty() ? std::move(session) : nullptr;
}

std::string SongSession::readSong(const std::string& path) {
    std::string error;
    const auto file = MidiFile::read(path, error);
    if (!file)
        return error;
    auto timeline = MidiTimeline::make(*file, error);
    if (!timeline)
        return path + ": " + error;
    m_timeline = std::move(*timeline);
    return "";
}

void SongPlayer::sendUntil(std::uint64_t frame) {
    const auto& events = m_timeline.events;
    for (; m_next < events.size() && events[m_next].frame < frame; ++m_next) {
        const MidiTimelineEvent& event = events[m_next];
        if (event.on)
            m_notes.midiNoteDown(event.key, event.velocity);
        else
            m_notes.midiNoteUp(event.key);
    }
    if (!m_ended && m_next == events.size() && m_timeline.endFrame < frame) {
        m_notes.releaseAll();
        m_ended = true;
    }
}

std::uint64_t SongPlayer::nextFrame() const {
    return m_next < m_timeline.events.size() ? m_timeline.events[m_next].frame
                                             : m_timeline.endFrame;
}
