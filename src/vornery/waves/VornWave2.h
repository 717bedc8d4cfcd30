#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "WaveAccess.h"
#include "files/VornAudioFile.h"
#include "handoff/Shared.h"
#include "memory/SampleMemory.h"

/// Owner of a sound's samples: made from samples that the program has, or from a file that is
/// loaded at once or in the background into 32-bit floats at 44100 Hz. One file path has at most
/// one wave in the process. A wave that is loading yields no windows; one that failed never does.
///
/// Made, fetched and replaced on the main thread; the last owner to let go may be a loader.
class VornWave2 : public ContiguousWave, public std::enable_shared_from_this<VornWave2> {
  public:
    enum LoadState : std::int32_t { notLoaded = 0, loading = 1, loaded = 2 };
    enum Residency : std::int32_t { inMemory = 0, onDisk = 2 };

    /// The wave of the file `file` in `folder`, not yet read, unless it lives already.
    static std::shared_ptr<VornWave2> initWithReferenceToFile(const std::string& file,
                                                              const std::string& folder);
    /// The same, loaded on this thread. Look at `loadError`. A wave that is just being loaded in
    /// the background is returned as it is; see `waitUntilLoaded`.
    static std::shared_ptr<VornWave2> initWithContentsOfFile(const std::string& file,
                                                             const std::string& folder);
    /// `length` frames of the description's channels.
    static std::shared_ptr<VornWave2> initWithCopyOfData(const float* samples, std::uint32_t length,
                                                         const StreamDescription& description,
                                                         const std::string& nameHint);
    static std::shared_ptr<VornWave2> initWithOwnershipOfData(SampleMemory samples,
                                                              std::uint32_t length,
                                                              const StreamDescription& description,
                                                              const std::string& nameHint);
    static std::shared_ptr<VornWave2> waveWithOwnershipOfData(SampleMemory samples,
                                                              std::uint32_t length,
                                                              const StreamDescription& description,
                                                              const std::string& nameHint);
    /// A new wave in memory of `length` zeros in `description`'s channels, to be written into
    /// through `mutableData` and to be saved into `folder` if it is saved. Without memory for them
    /// (no wave takes more than half of the machine's) it has no frames.
    static std::shared_ptr<VornWave2> mutableWaveOfLength(std::uint32_t length,
                                                          const StreamDescription& description,
                                                          const std::string& nameHint,
                                                          const std::string& folder);
    ~VornWave2() override;
    VornWave2(const VornWave2&) = delete;
    VornWave2& operator=(const VornWave2&) = delete;

    /// Loads the file, if nobody has begun to: on this thread (flag other than 0) or on one of its
    /// own, which keeps the wave alive meanwhile.
    void fetch(int flag);
    /// Nobody waits for it any more: a load that is under way fails soon, and the file's next wave
    /// is a new one. A wave that is loaded stays as it is. [any thread but render]
    void abandon();
    /// Returns when a load that is under way has ended. [any thread but render]
    void waitUntilLoaded() const;

    // WaveAccess. The windows are safe on any thread; they read nothing until the wave is loaded.
    std::uint32_t sampleCount() const override { return m_frameCount; }
    /// While loading the file's own format, afterwards that of the samples.
    const StreamDescription* audioDescription() const override;
    const float* retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                  std::int32_t* format) const override;
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override;
    /// `frames` is not clamped.
    std::uint32_t write(std::uint32_t frames, float* into) const override;

    std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t from,
                                               std::uint32_t count) const override;

    /// Memory of a wave from `mutableWaveOfLength`; null for every other wave. [main]
    float* mutableData();
    /// Does nothing.
    void mapOut() {}
    /// Writes the wave in its own format, aside and then in one step over what stands at `path`.
    /// On failure, which is logged, that stays as it is.
    bool writeWavFile(const std::string& path) const;
    /// The same into `folder`; the wave then has that file's name and counts as on disk.
    bool saveTo(const std::string& file, const std::string& folder);
    /// Where a wave from `mutableWaveOfLength` may be saved; else empty.
    const std::string& folder() const { return m_folder; }

    /// [any thread] A LoadState.
    std::int32_t bkgLoadState() const { return m_loadState.load(std::memory_order_acquire); }
    /// [any thread] From 0 to 1.
    float progress() const { return m_progress; }
    /// A Residency.
    std::int32_t residency() const { return m_residency; }
    const std::string& filename() const { return m_filename; }
    /// Empty for a wave that was made in memory.
    const std::string& fullPath() const { return m_fullPath; }

    /// Once loaded: why there are no samples, in one line that names the file; empty when all is
    /// well.
    std::string loadError() const;
    /// Once loaded: what the user should know about a wave that does play, in one line, or empty.
    std::string loadNotice() const;

    /// Plays `frames` frames of other samples from now on, in the same format. Readers may still
    /// be in the old ones: they are kept until `releaseReplacedData`, or the wave's end. [main]
    void cheekilyReplaceDataWithOwnershipOf(SampleMemory samples, std::uint32_t frames);
    /// Whether that was done. [main]
    bool dataReplaced() const { return m_dataReplaced; }
    /// Call when every voice and view has taken the wave anew. [main]
    void releaseReplacedData();

  private:
    /// Samples and their number, seen together by readers on other threads.
    struct Content {
        SampleMemory samples;
        std::uint32_t frames;
    };

    VornWave2() = default;
    void open(const std::string& file, const std::string& path);
    void adopt(SampleMemory samples, std::uint32_t frames);
    void internalFetch();
    std::uint32_t channels() const { return audioDescription()->mChannelsPerFrame; }

    std::atomic<const Content*> m_content{nullptr};
    Shared<std::uint32_t> m_frameCount{0};
    StreamDescription m_fileDescription;
    StreamDescription m_myAudioDescription;
    std::int32_t m_residency = inMemory;
    std::string m_filename;
    std::string m_fullPath;
    std::string m_folder;
    bool m_mutable = false;
    std::atomic<std::int32_t> m_loadState{notLoaded};
    std::unique_ptr<VornAudioFile> m_af;
    Shared<float> m_progress{0.f};
    Shared<bool> m_unwanted{false};
    bool m_dataReplaced = false;
    std::string m_loadError;  // written by the loader before it says "loaded"
    std::string m_loadNotice;
    std::vector<std::unique_ptr<const Content>> m_contents;  // the last is the one that plays
};
