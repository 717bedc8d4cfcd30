#include "VornSequencePlayer.h"

#include <algorithm>
#include <utility>

#include "PullUpstream.h"
#include "ScaledWindow.h"
#include "WindowPlace.h"

namespace {

StreamDescription outputOf(bool convert) {
    return convert ? StreamDescription::sint16(2) : StreamDescription::float32(2);
}

// Goes to a window with frames left, from the last to the first if the sound loops; else to the
// terminator. A sound of empty windows has ended, loop or not.
bool findFrames(VornSequencePlayerPointers& at, bool looping) {
    if (at.offset < at.currentWindow->frameCount)
        return true;
    at.offset = 0;
    at.currentWindow = windowWithFrames(at.currentWindow + 1);
    if (!at.currentWindow->data && looping) {
        at.position = 0;
        at.currentWindow = windowWithFrames(at.firstWindow);
    }
    return at.currentWindow->data != nullptr;
}

// Cleared only if nothing newer waits that may have been set to play.
void endPlaying(VornSequencePlayerData& data) {
    if (data.playing && data.pending.readCount() == data.pending.writeCount())
        data.playing = false;
}

// Returns the frames that came from the sound; the others are silence at the end.
template <typename Sample>
std::uint32_t playWindows(VornSequencePlayerData& data, std::uint32_t frames, Sample* out,
                          std::uint32_t channels, StereoPeaks& peaks) {
    VornSequencePlayerPointers& at = data.current;
    const float gain = data.gain;
    std::uint32_t done = 0;
    while (done < frames) {
        if (!findFrames(at, data.looping)) {
            endPlaying(data);
            std::fill_n(out + std::size_t{done} * channels, std::size_t{frames - done} * channels,
                        Sample(0));
            break;
        }
        const std::uint32_t stretch =
            std::min(at.currentWindow->frameCount - at.offset, frames - done);
        writeScaled({at.currentWindow, at.offset}, stretch, gain,
                    out + std::size_t{done} * channels, channels, peaks);
        at.offset += stretch;
        at.position += stretch;
        done += stretch;
    }
    return done;
}

void playNothing(VornSequencePlayerData& data, std::uint32_t frames, std::uint32_t channels,
                 void* out) {
    const std::size_t samples = std::size_t{frames} * channels;
    std::fill_n(static_cast<char*>(out), samples * (data.convert ? 2 : 4), char(0));
    endPlaying(data);
}

}  // namespace

VornSequencePlayer::VornSequencePlayer(std::shared_ptr<WaveSequenceAccess> sequence, bool convert)
    : VornCallbackUnit(&render, outputOf(convert)),
      m_data(std::make_unique<VornSequencePlayerData>()),
      m_retired([this](std::int32_t posting) {
          return m_data->reach.withdraw(m_data->pending, posting);
      }) {
    m_callbackData.inputProcRefCon = m_data.get();
    m_data->convert = convert;
    m_data->current.description = m_posted.description = m_streamDescription;
    if (sequence)
        setSequence(std::move(sequence));
}

VornSequencePlayer::~VornSequencePlayer() {
    pause();
}

void VornSequencePlayer::setSequence(std::shared_ptr<WaveSequenceAccess> sequence) {
    auto oldSequence = std::exchange(m_sequence, std::move(sequence));
    std::uint32_t count = m_sequence ? m_sequence->sampleCount() : 0;
    auto oldWindows =
        std::exchange(m_windows, m_sequence ? m_sequence->retrieveWindowsAt(0, &count) : nullptr);
    m_streamDescription = outputOf(m_data->convert);
    m_posted = {m_windows.get(), m_windows.get(), 0, 0, m_streamDescription};
    publish();
    m_retired.retire(std::move(oldWindows), std::move(oldSequence), m_data->pending.writeCount());
}

void VornSequencePlayer::stop() {
    pause();
    rewind();
}

std::uint32_t VornSequencePlayer::playPosition() const {
    const auto written = static_cast<std::uint32_t>(m_data->pending.writeCount());
    const bool taken = m_data->reportedReadCount.load(std::memory_order_acquire) == written;
    return taken ? m_data->reportedPosition : m_data->requestedPosition;
}

void VornSequencePlayer::setPlayPosition(std::uint32_t position) {
    const WindowPlace place = placeOf(position, m_windows.get());
    m_posted.currentWindow = place.window;
    m_posted.offset = place.offset;
    m_posted.position = position;
    m_data->requestedPosition = position;
    publish();
}

void VornSequencePlayer::publish() {
    m_data->pending.write(m_posted);
}

OSStatus VornSequencePlayer::render(void* playerData, AudioUnitRenderActionFlags* flags,
                                    const AudioTimeStamp*, std::uint32_t, std::uint32_t frames,
                                    AudioBufferList* list) {
    auto& data = *static_cast<VornSequencePlayerData*>(playerData);
    const RenderReach::Render here(data.reach, data.pending.readCount());
    VornSequencePlayerPointers& at = data.current;
    if (!here.mayKeep())
        at.firstWindow = at.currentWindow = nullptr;
    data.pending.read(at);
    if (!data.playing || !at.firstWindow || !at.currentWindow->data) {
        playNothing(data, frames, list->mBuffers[0].mNumberChannels, list->mBuffers[0].mData);
        markSilence(flags, true);
        data.reportedPosition = at.position;
        return noErr;
    }
    const std::uint32_t channels = list->mBuffers[0].mNumberChannels == 2 ? 2 : 1;
    StereoPeaks peaks;
    const std::uint32_t played =
        data.convert ? playWindows(data, frames, list->samples<std::int16_t>(), channels, peaks)
                     : playWindows(data, frames, list->samples<float>(), channels, peaks);
    markSilence(flags, played == 0);
    data.peakLeft = peaks.left;
    data.peakRight = channels == 2 ? peaks.right : peaks.left;
    data.reportedPosition = at.position;
    data.reportedReadCount.store(static_cast<std::uint32_t>(data.pending.readCount()),
                                 std::memory_order_release);
    return noErr;
}
