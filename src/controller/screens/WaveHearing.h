#pragma once

#include <QObject>
#include <memory>

#include "WaveAccess.h"
#include "audition/PlayHead.h"
#include "runloop/RunLoop.h"
#include "screens/WaveSelection.h"

class Audition;

/// Lets the sound in use be heard from the wave view, beside what is played on the keys: from a
/// place on, or scrubbed under a finger. The play head moves 60 times a second while it plays;
/// otherwise nothing runs. Frames outside the sound are taken for its nearest. [main]
class WaveHearing : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool playing READ playing NOTIFY playingChanged)
    /// Frame that is heard; below 0 when nothing is.
    Q_PROPERTY(double playHead READ playHead NOTIFY playHeadChanged)

  public:
    using Sound = std::shared_ptr<WaveSequenceAccess>;
    /// Linear; what the instrument's automatic gain aims at, so that both are about as loud.
    static constexpr float kGain = 0.5f;

    /// The selection is not owned; null for none.
    explicit WaveHearing(const WaveSelection* selection = nullptr);
    ~WaveHearing() override;

    bool playing() const { return m_playing; }
    double playHead() const { return m_playHead; }

    /// What is heard from now on; ends what was, and lets go of it.
    void setSound(Sound sound);
    /// Up to the frame `to`; without one, or with one that does not lie behind, to the end: that
    /// of the selection for a frame within a selected part, else the sound's. Moves there when it
    /// plays already.
    Q_INVOKABLE void playFrom(int frame, int to = -1);
    /// Ends all that is heard.
    Q_INVOKABLE void stop();
    /// A short grain around this frame, at once; ends the playing.
    Q_INVOKABLE void scrubTo(int frame);
    /// The last grain fades by itself.
    Q_INVOKABLE void endScrub();

  Q_SIGNALS:
    void playingChanged();
    void playHeadChanged();

  private:
    int length() const;
    int endFor(int frame, int to) const;
    void beginScrub();
    void look();
    void ended();
    void show(bool playing, double playHead);

    const WaveSelection* m_selection;
    std::unique_ptr<Audition> m_audition;
    Sound m_sound;
    PlayHead m_head;
    bool m_playing = false;
    bool m_scrubbing = false;
    double m_playHead = -1;
    RunLoop::Token m_looks = 0;  // 0: it does not play
};
