#pragma once

#include <QObject>

/// The stretch of the sound in use that is selected, in frames: what is auditioned and edited. All
/// wave views show the same one. A change posts "com.quaddle.waveview.selection", whoever made it;
/// views look again when they hear that. [main]
class WaveSelection : public QObject {
    Q_OBJECT
    Q_PROPERTY(int start READ start NOTIFY changed)
    Q_PROPERTY(int stop READ stop NOTIFY changed)
    Q_PROPERTY(int length READ length NOTIFY changed)
    Q_PROPERTY(bool everything READ everything NOTIFY changed)

  public:
    static constexpr const char* kNotification = "com.quaddle.waveview.selection";

    int start() const { return m_start; }
    /// Behind its last frame; never before `start`.
    int stop() const { return m_stop; }
    /// Whether the whole sound is selected.
    bool everything() const { return m_start == 0 && m_stop == m_length; }
    /// Of the sound.
    int length() const { return m_length; }
    /// Whether a frame lies in a stretch that is only a part of the sound.
    bool isPartAt(int frame) const { return !everything() && m_start <= frame && frame < m_stop; }

    /// Both are kept within the sound, whichever comes first.
    Q_INVOKABLE void select(int start, int stop);
    Q_INVOKABLE void selectAll() { select(0, m_length); }
    /// Another sound of so many frames: all of it.
    void reset(int length);
    /// The same sound, edited: what of the selection is still there. All stays all.
    void resize(int length);

  Q_SIGNALS:
    void changed();

  private:
    void set(int start, int stop, int length);

    int m_start = 0;
    int m_stop = 0;
    int m_length = 0;
};
