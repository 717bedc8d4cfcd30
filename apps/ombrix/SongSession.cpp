#include "SongSession.h"

#include <array>

#include "PresetArgument.h"
#include "RandomSource.h"
#include "SoundArgument.h"
#include "log/Log.h"
#include "midi/MidiFile.h"

namespace {

constexpr std::array kSongOptions{
    OptionRow{"sound", "NAME|FILE", "the sound that is played: its name or a sound file"},
    OptionRow{"preset", "NAME|FILE", "all settings from a preset: its name, or a property list"},
    OptionRow{"set", "KEY=VALUE", "one setting, as a preset stores it; may be given again"},
    OptionRow{"seed", "N", "start of the random sequence, 0 to 4294967295 (1)"},
    OptionRow{"no-auto-gain", nullptr, "leave the level as it is"},
};

std::string applySetting(Preset& preset, const std::string& setting) {
    const auto equals = setting.find('=');
    if (equals == std::string::npos)
        return "--set " + setting + ": write it as KEY=VALUE";
    std::string error;
    if (!preset.set(setting.substr(0, equals), setting.substr(equals + 1), error))
        return "--set " + error;
    return "";
}

}  // namespace

std::span<const OptionRow> songOptions() {
    return kSongOptions;
}

std::unique_ptr<SongSession> SongSession::prepare(const Arguments& arguments, std::string& error) {
    std::unique_ptr<SongSession> session(new SongSession);
    if (arguments.words().size() != 1) {
        error = arguments.words().empty() ? "name the MIDI file to play"
                                          : "one MIDI file at a time, not " + arguments.words()[1];
        return nullptr;
    }
    error = session->readSong(arguments.words()[0]);
    if (error.empty())
        error = session->settle(arguments);
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

std::string SongSession::settle(const Arguments& arguments) {
    if (const auto text = arguments.value("seed")) {
        const auto seed = wholeNumber(*text, 0, 0xffffffffu);
        if (!seed)
            return "--seed " + *text + ": a whole number from 0 to 4294967295 is wanted";
        RandomSource::seed(static_cast<std::uint32_t>(*seed));
    }
    m_instrument = std::make_unique<Instrument>(!arguments.has("no-auto-gain"));
    std::string error;
    PresetArgument chosen{m_instrument->makePresetFromSettings()};
    if (const auto choice = arguments.value("preset"))
        chosen = PresetArgument::find(*choice, error);
    if (!chosen.preset)
        return error;
    Preset preset = *chosen.preset;
    for (const std::string& setting : arguments.values("set")) {
        if (error = applySetting(preset, setting); !error.empty())
            return error;
    }
    const auto sound = arguments.has("sound") ? arguments.value("sound") : preset.wave;
    if (chosen.isStored && sound && sound == chosen.preset->wave)
        error = loadFile(storedSoundPath(preset));
    else
        error = loadSound(sound);
    if (!error.empty())
        return error;
    preset.wave.reset();  // loaded already
    m_instrument->updateSettingsFromPreset(preset);
    return "";
}

std::string SongSession::loadSound(const std::optional<std::string>& sound) {
    const auto path = sound ? soundPath(*sound) : WaveChoice::defaultSoundFile();
    if (!path)
        return noSuchSound(*sound);
    return loadFile(*path);
}

std::string SongSession::loadFile(const std::string& path) {
    const WaveChoice::Loaded loaded = WaveChoice::load(path);
    if (!loaded.wave)
        return loaded.error;
    if (!loaded.notice.empty())
        tellUser("%s", loaded.notice.c_str());
    m_instrument->waves().use(loaded);
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
