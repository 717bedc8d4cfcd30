#pragma once

#include <memory>
#include <string>

#include "editing/EditHistory.h"
#include "editing/EditWorker.h"
#include "editing/OldSounds.h"
#include "editing/SoundEdit.h"
#include "editing/SoundEdits.h"
#include "recording/UnsavedTake.h"

/// What a screen hears of the sound that is edited. [main]
class EditSessionDelegate {
  public:
    virtual ~EditSessionDelegate() = default;
    /// `WaveChoice::shownWave` is another, and `selection` what is to be selected of it.
    virtual void soundEdited() {}
    /// Work began or ended, or other edits can be undone and redone.
    virtual void editingChanged() {}
    /// One line for the user.
    virtual void editingTold(const std::string& /*line*/) {}
};

/// Edits of the sound in use, with all that came before them. An edited sound is shown at once; the
/// voices, which need it in one piece, get a copy as soon as that is made in the background, of the
/// last edit only, and play the sound of before until then. A sound that is a file's again, or a
/// take as it was, is handed over as it is, without a copy. [main]
///
/// A sound without a name is kept as a take is. When another one comes into use, by whatever way,
/// the history ends with it, and so does what is under way.
class EditSession {
  public:
    /// A sound that can be loaded again, once it is stored, is no longer.
    static constexpr std::uint32_t kMostFrames = 20 * 60 * 44100;
    /// A list of more blocks is given up for the copy that the voices have.
    static constexpr std::size_t kMostBlocks = 4096;

    /// `unsaved` keeps what has no name; null keeps nothing.
    EditSession(WaveChoice& waves, UnsavedTake* unsaved);
    ~EditSession();
    EditSession(const EditSession&) = delete;
    EditSession& operator=(const EditSession&) = delete;

    /// Not retained; null for none.
    void setDelegate(EditSessionDelegate* delegate);
    /// Call whenever another sound may be in use: begins its history then.
    void soundChanged();

    /// Any edit but `join`. What cannot be done is told, and nothing changes; neither does it while
    /// work is under way.
    void edit(SoundEdit edit, const EditSpan& selection);
    /// Puts the sound of a file, mixed to mono, behind the sound in use. Loads it in the
    /// background.
    void join(const std::string& path, const EditSpan& selection);
    void undo();
    void redo();

    const EditHistory& history() const { return m_history; }
    /// What is to be selected after the last edit, undo or redo.
    const EditSpan& selection() const { return m_history.now().selection; }
    /// Whether an edit is being made that takes its time; what is under way is not undoable yet.
    bool busy() const { return m_work.busy() || m_joining.busy(); }
    /// 0 to 1.
    float progress() const;
    /// Forgets the edit that is under way.
    void cancel();
    /// Whether the voices still play the sound of before.
    bool handingOver() const { return m_flattening.busy(); }

  private:
    bool ready();
    bool isOurs();
    const VornWaveSequence::Pointer& sound() const { return m_history.now().sound; }
    SoundEdits::Edited atOnce(SoundEdit edit, const EditSpan& span) const;
    void beginWork(SoundEdit edit, const EditSpan& span);
    SoundEdits::Edited withBehind(const WaveChoice::Loaded& loaded);
    void apply(SoundEdits::Edited edited, SoundEdit edit, const EditSpan& selection);
    void leave();
    void present();
    void flatten();
    void handOver(std::shared_ptr<VornWave2> wave);
    void flatteningFailed(const std::string& error);
    void keep();
    void discard(std::vector<EditState> states);

    WaveChoice& m_waves;
    UnsavedTake* m_unsaved;
    EditSessionDelegate* m_delegate;
    EditHistory m_history;
    std::uint64_t m_choice = 0;  // of the history's sound
    EditWorker m_work;
    EditWorker m_joining{4};  // files may hang
    EditWorker m_flattening;
    OldSounds m_old;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);  // for who may answer later
};
