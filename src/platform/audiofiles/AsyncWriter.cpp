#include "audiofiles/AsyncWriter.h"

#include "audiofiles/AudioFile.h"
#include "log/Log.h"

namespace {

// Longer than a disk that wakes up, or that another program keeps busy, takes as a rule.
constexpr double kRingSeconds = 8.0;
constexpr std::uint32_t kFramesAtATime = 16384;

using namespace std::chrono_literals;

}  // namespace

AsyncWriter::AsyncWriter(WavOutput& file, const StreamDescription& client)
    : m_file(file),
      m_change(client, file.format()),
      m_ring(client, kRingSeconds),
      m_writing("record-write", 50ms, [this] { emptyRing(); }),
      m_syncing("record-sync", 1000ms, [this] { sync(); }) {}

OSStatus AsyncWriter::write(std::uint32_t frames, const AudioBufferList& data) noexcept {
    if (data.mNumberBuffers < m_ring.bufferCount())
        return kAudio_ParamError;
    for (std::uint32_t b = 0; b < m_ring.bufferCount(); ++b)
        if (!data.mBuffers[b].mData ||
            data.mBuffers[b].mDataByteSize / m_ring.frameBytes() < frames)
            return kAudio_ParamError;
    if (m_status.load(std::memory_order_relaxed) != noErr)
        return noErr;
    if (const std::uint32_t taken = m_ring.push(data, frames); taken < frames)
        m_dropped.fetch_add(frames - taken, std::memory_order_relaxed);
    return noErr;
}

void AsyncWriter::emptyRing() {
    while (m_status.load() == noErr) {
        std::uint32_t frames = kFramesAtATime;
        const AudioBufferList list = m_ring.front(&frames);
        if (frames == 0)
            return;
        try {
            put(m_change.convert(list, frames));
        } catch (const std::bad_alloc&) {
            end(kAudioFileOutOfMemoryError);
        }
        m_ring.pop(frames);
    }
}

void AsyncWriter::put(std::span<const std::byte> bytes) {
    if (bytes.empty())
        return;
    OSStatus status = noErr;
    const std::size_t written = m_file.write(m_bytes, bytes.data(), bytes.size(), &status);
    m_bytes += written;
    // After a failed write too: all that fitted is to be heard.
    if (const OSStatus header = m_file.refreshHeader(); status == noErr)
        status = header;
    end(status);
}

void AsyncWriter::end(OSStatus status) {
    OSStatus none = noErr;
    if (status != noErr && m_status.compare_exchange_strong(none, status))
        Log::status(status);
}

void AsyncWriter::sync() {
    const std::uint64_t bytes = m_bytes;
    if (bytes != m_synced)
        end(m_file.sync());  // the kernel tells of a lost write once only
    m_synced = bytes;
}

void AsyncWriter::finish() {
    m_writing.stop();
    m_syncing.stop();
    if (m_finished)
        return;
    m_finished = true;
    emptyRing();
    for (auto rest = m_change.flush(); !rest.empty() && m_status.load() == noErr;
         rest = m_change.flush())
        put(rest);
}
