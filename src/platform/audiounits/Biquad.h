#pragma once

/// Coefficients of a filter of second order, y = (b0 x + b1 x' + b2 x" - a1 y' - a2 y"), at the
/// graph's rate. R. Bristow-Johnson, "Cookbook formulae for audio EQ biquad filter coefficients".
/// Double precision: in single, a band at 32 Hz would add audible noise. [control]
struct Biquad {
    double b0 = 1;
    double b1 = 0;
    double b2 = 0;
    double a1 = 0;
    double a2 = 0;

    /// A band of one octave around `hertz`, `decibels` up or down.
    static Biquad peak(double hertz, double decibels);
    /// Everything below or above `hertz`, where half the decibels are reached.
    static Biquad lowShelf(double hertz, double decibels);
    static Biquad highShelf(double hertz, double decibels);

    /// What the filter does to the level of a tone.
    double decibelsAt(double hertz) const;
};
