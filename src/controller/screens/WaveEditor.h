#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <functional>

#include "editing/EditSession.h"
#include "runloop/RunLoop.h"
#include "screens/WaveHearing.h"
#include "screens/WaveSelection.h"
#include "screens/WaveState.h"

/// The edits of the sound in use, as buttons and keys ask for them: of what is selected, undone and
/// redone without limit. An edit that takes no time to speak of is not shown as under way. [main]
class WaveEditor : public QObject, private EditSessionDelegate {
    Q_OBJECT
    Q_PROPERTY(bool canEdit READ canEdit NOTIFY changed)
    Q_PROPERTY(bool canCut READ canCut NOTIFY changed)
    Q_PROPERTY(bool canJoin READ canJoin NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY changed)
    Q_PROPERTY(QString undoText READ undoText NOTIFY changed)
    Q_PROPERTY(QString redoText READ redoText NOTIFY changed)
    Q_PROPERTY(QString lengthText READ lengthText NOTIFY changed)
    Q_PROPERTY(QString selectionText READ selectionText NOTIFY changed)
    Q_PROPERTY(bool busy READ busy NOTIFY changed)
    Q_PROPERTY(QString busyText READ busyText NOTIFY changed)
    Q_PROPERTY(float progress READ progress NOTIFY progressChanged)

  public:
    /// Hears one line for the user at a time.
    using Tell = std::function<void(const std::string& line)>;
    /// What the editor works with; none is owned. `unsaved` may be null.
    struct Rooms {
        WaveChoice& waves;
        WaveLoading& sounds;
        UnsavedTake* unsaved;
        WaveState& state;
        WaveSelection& selection;
        WaveHearing& hearing;
    };

    WaveEditor(const Rooms& rooms, Tell tell);
    ~WaveEditor() override;

    /// Whether what is selected can be silenced, faded, normalised and reversed.
    bool canEdit() const {
        return canJoin() && m_rooms.selection.start() < m_rooms.selection.stop();
    }
    /// Whether it can be cropped to and cut out: not when it is everything.
    bool canCut() const { return canEdit() && !m_rooms.selection.everything(); }
    /// Not while a sound is on its way, or an edit under way.
    bool canJoin() const;
    bool canUndo() const { return canJoin() && m_session.history().canUndo(); }
    bool canRedo() const { return canJoin() && m_session.history().canRedo(); }
    /// "Undo Crop"; "Undo" when there is nothing to be undone.
    QString undoText() const;
    QString redoText() const;
    /// Of the sound: "1:02.500".
    QString lengthText() const;
    /// What is selected, and how long that is.
    QString selectionText() const;

    /// Whether an edit is under way that takes its time.
    bool busy() const { return m_shownBusy; }
    /// What that is: "Reverse".
    QString busyText() const { return m_busyText; }
    /// 0 to 1.
    float progress() const { return m_progress; }
    /// Whether an edit is under way, or the voices do not have the last one yet.
    bool working() const { return m_session.busy() || m_session.handingOver(); }

    Q_INVOKABLE void crop() { edit(SoundEdit::crop); }
    Q_INVOKABLE void cut() { edit(SoundEdit::cut); }
    Q_INVOKABLE void silence() { edit(SoundEdit::silence); }
    Q_INVOKABLE void fadeIn() { edit(SoundEdit::fadeIn); }
    Q_INVOKABLE void fadeOut() { edit(SoundEdit::fadeOut); }
    Q_INVOKABLE void normalise() { edit(SoundEdit::normalise); }
    Q_INVOKABLE void reverse() { edit(SoundEdit::reverse); }
    /// A sound file, loaded in the background, behind the sound in use.
    Q_INVOKABLE void join(const QUrl& file);
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// Gives up the edit that is under way.
    Q_INVOKABLE void cancel() { m_session.cancel(); }
    /// Plays what is selected; stops when something plays.
    Q_INVOKABLE void playOrStop();

  Q_SIGNALS:
    void changed();
    void progressChanged();
    /// The sound in use is another than before, and unsaved unless it was undone to what is stored.
    void edited();

  private:
    void soundEdited() override;
    void editingChanged() override;
    void editingTold(const std::string& line) override { m_tell(line); }

    EditSpan selected() const;
    void edit(SoundEdit edit);
    void look();

    Rooms m_rooms;
    Tell m_tell;
    EditSession m_session;
    bool m_shownBusy = false;
    QString m_busyText;
    float m_progress = 0;
    RunLoop::Token m_looking = 0;  // 0: nothing is under way
};
