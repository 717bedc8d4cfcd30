#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "VornWave2.h"
#include "VornWaveSequence.h"
#include "startup/Voices.h"

/// Names to files, and the one sound that all voices play. [main]
class WaveChoice {
  public:
    /// A sound that is ready to be played, or the one line that says why it is not.
    struct Loaded {
        std::shared_ptr<VornWave2> wave;  // mono, where not said otherwise; null after an error
        std::string filename;             // last component of the path
        std::string error;                // names file and reason
        std::string notice;               // played, but something is amiss
        std::string path = {};            // in full
    };

    /// The data folder is not touched before it is asked for.
    explicit WaveChoice(Voices& voices) : m_voices(voices) {}

    /// Full path of a file in the data folder. Without a data folder the program stops.
    static std::string dataFile(const std::string& name);
    static std::string presetFilename() { return dataFile("presets.plist"); }
    static std::string temporaryRecordingFile() {
        return dataFile("-temporary-audio-recording-.tmp");
    }
    static std::string defaultSoundFile();
    /// Path of the resource of that full file name; none if it is not there.
    static std::optional<std::string> resource(const std::string& filename);
    /// The file name without extension if the path lies among the resources.
    static std::optional<std::string> builtInSound(const std::string& path);
    /// A preset's wave name without its folder prefix: "generated/sine" is "Sine Wave.wav".
    static std::string plainWaveName(const std::string& name);
    /// Creates the data folder if it is missing and sees whether it can be written to. Answers one
    /// line when not, else nothing.
    [[nodiscard]] static std::string makeDataFolder();
    /// The file of a preset's wave: in the data folder, else among the resources, else none.
    static std::optional<std::string> findWavePath(const std::string& name);

    /// The wave of that file, which may not be loaded yet. [any thread] but [render]
    static std::shared_ptr<VornWave2> waveOf(const std::string& path);
    /// Reads a file of that wave and mixes it to mono; `generate` belongs to it. [any thread] but
    /// [render].
    static Loaded read(std::shared_ptr<VornWave2> wave, const std::string& path);
    /// Puts what the program makes itself into a built-in wave, unless it is there. [main]
    static void generate(const Loaded& loaded);
    /// Reads a sound file, mixes it to mono and generates built-in waves.
    static Loaded load(const std::string& path);
    /// The same without mixing.
    static Loaded loadAllChannels(const std::string& path);
    /// The same for a wave of that file that has been loaded. [main]
    static Loaded withAllChannels(std::shared_ptr<VornWave2> wave, const std::string& path);

    /// Makes a loaded sound the one in use by all voices.
    void use(const Loaded& loaded);
    /// The sound in use, if it is that of this file.
    std::optional<Loaded> inUse(const std::string& path) const;
    /// How often a sound was taken into use: who loads one sees whether another came first.
    std::uint64_t choices() const { return m_choices; }

    /// Loads a file and uses it; a missing file falls back to the default sound, once. A file that
    /// cannot be loaded leaves the sound in use as it was and answers why.
    Loaded setWaveTo(const std::string& path);

    /// Makes samples in memory (mono) the sound in use: it has no file until it is stored.
    void useUnsaved(std::shared_ptr<VornWave2> wave);
    /// What the voices play, in one piece; null before anything was chosen.
    const std::shared_ptr<VornWaveSequence>& currentWave() const { return m_currentWave; }

    /// Where the sound in use is stored, if it is.
    struct Identity {
        std::optional<std::string> filename = {};
        Loaded inUse = {};
    };
    Identity identity() const { return {m_currentWaveFilename, m_inUse}; }
    /// The sound in use was edited. It is shown at once, and has no file; the voices play what they
    /// have until `useEdited`. Whoever stores the sound meanwhile calls `settle`, which calls
    /// `useEdited` by way of this. Does not count as a choice.
    void showEdited(std::shared_ptr<VornWaveSequence> sound, std::function<void()> settle);
    /// The edited sound in one piece, for the voices, and where it is stored.
    void useEdited(const std::shared_ptr<VornWave2>& wave, const Identity& identity);
    /// Afterwards the voices play what is shown. An edit of a long sound is waited for.
    void settle();
    /// The sound in use as it was edited last.
    const std::shared_ptr<VornWaveSequence>& shownWave() const { return m_shownWave; }

    /// After the sound in use was stored, under the file name it has now.
    void setCurrentWaveFilename(std::optional<std::string> filename) {
        m_currentWaveFilename = std::move(filename);
    }

    /// Writes a sound as a 16-bit mono WAV file (see StoredWave): aside first, so that what stands
    /// at `path` is replaced by the whole file or stays. Answers one line when it failed, else
    /// nothing.
    [[nodiscard]] static std::string storeWave(const VornWaveSequence& wave,
                                               const std::string& path);
    /// "BASE Audio", or "BASE Audio 2" and so on: the first whose WAV file is not in the data
    /// folder.
    static std::string findAvailableWaveName(const std::string& base);
    /// Whether a shipped or a user's sound has this name (without extension).
    static bool hasWaveWithName(const std::string& name);

    /// File name of the sound in use; none when it has no file.
    const std::optional<std::string>& currentWaveFilename() const { return m_currentWaveFilename; }

  private:
    void choose(const std::shared_ptr<VornWave2>& wave);
    void giveToVoices(const std::shared_ptr<VornWave2>& wave);

    Voices& m_voices;
    std::shared_ptr<VornWaveSequence> m_currentWave;
    std::shared_ptr<VornWaveSequence> m_shownWave;
    std::function<void()> m_settle;  // null: the voices play what is shown
    std::optional<std::string> m_currentWaveFilename;
    Loaded m_inUse;
    std::uint64_t m_choices = 0;
};
