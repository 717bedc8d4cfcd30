#pragma once

/// Where a sound is heard, made of the positions that a render reports after each of its buffers,
/// in steps. It moves as evenly as the clock, never backwards, never ahead of what was rendered,
/// and falls a quarter of a second behind at most. Frames at 44100 Hz; times are those of
/// `Clock::monotonic`. [main]
class PlayHead {
  public:
    void begin(double frame, double now);
    /// Answers where it is now.
    double follow(double reported, double now);

  private:
    double m_frame = 0;
    double m_when = 0;
};
