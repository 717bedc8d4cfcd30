#include "VornSequenceScrubber.h"

#include <utility>

#include "PullUpstream.h"
#include "ScrubRender.h"
#include "WindowPlace.h"

VornSequenceScrubber::VornSequenceScrubber(std::shared_ptr<WaveSequenceAccess> sequence)
    : VornCallbackUnit(&render, StreamDescription::sint16(2)),
      m_sequence(std::move(sequence)),
      m_data(std::make_unique<VornSequenceScrubberData>()),
      m_retired([this](std::int32_t posting) {
          return m_data->reach.withdraw(m_data->pending, posting);
      }) {
    m_callbackData.inputProcRefCon = m_data.get();
}

VornSequenceScrubber::~VornSequenceScrubber() {
    stop();
}

void VornSequenceScrubber::setSequence(std::shared_ptr<WaveSequenceAccess> sequence) {
    stop();
    auto& list = m_data->ownedList;
    m_retired.retire(std::move(list), std::exchange(m_sequence, std::move(sequence)),
                     m_data->pending.writeCount());
    std::uint32_t count = m_sequence ? m_sequence->sampleCount() : 0;
    list = m_sequence ? m_sequence->retrieveWindowsAt(0, &count) : nullptr;
    m_data->pending.write({list.get(), list.get(), 0});
}

void VornSequenceScrubber::setPlayPosition(std::uint32_t position) {
    const WaveWindow* const list = m_data->ownedList.get();
    const WindowPlace place = placeOf(position, list);
    if (place.window && place.window->data)
        m_data->pending.write({list, place.window, place.offset});
    else
        stop();
}

void VornSequenceScrubber::scrubTo(std::int32_t frame, float) {
    if (!m_sequence)
        return;
    const float start = static_cast<float>(frame) - 44100.f / m_data->fadeRate;
    setPlayPosition(start > 0.f ? static_cast<std::uint32_t>(start) : 0);
}

void VornSequenceScrubber::stop() {
    m_data->pending.write({});
}

bool VornSequenceScrubber::isSounding() const {
    const auto& data = *m_data;
    return data.pending.readCount() != data.pending.writeCount() || data.next.active ||
           data.heads[0].active || data.heads[1].active;
}

OSStatus VornSequenceScrubber::render(void* scrubberData, AudioUnitRenderActionFlags* flags,
                                      const AudioTimeStamp*, std::uint32_t, std::uint32_t frames,
                                      AudioBufferList* list) {
    auto& data = *static_cast<VornSequenceScrubberData*>(scrubberData);
    const RenderReach::Render here(data.reach, data.pending.readCount());
    ScrubRender scrub(data);
    scrub.take(here.mayKeep());
    markSilence(flags, scrub.write(list->samples<std::int16_t>(), frames) == 0);
    return noErr;
}
