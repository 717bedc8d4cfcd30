#pragma once

#include <string>

class InstrumentWindow;

// What the instrument's window costs. Each prints a line beside what is allowed, and wants a
// process of its own in which the JACK server runs; all but the start want a WindowSession as well.

/// From a touch's delivery to the moment at which the voices are told.
void measureTouch();
/// From a key to the first frame of the output that it changes. `period` in frames.
void measureLatency(int period);
/// Ten fingers slide and all lamps move.
void measureFrames();
/// Nobody plays.
void measureIdle();
void measureMemory();
/// What `times` preset changes and ten times as many key presses leave behind.
void measureGrowth(int times);
/// A sound of twenty minutes is shown, zoomed and scrolled while twelve voices sound.
void measureWaves();
/// Starts the program several times, warm, in a display of its own. A key is pressed as soon as the
/// first frame is told. Needs xdotool.
void measureStartup(const std::string& program);

/// Lets the event loop run as it does in the program.
void live(double seconds);
/// Ten fingers slide over the keys, and every dial turns.
void play(InstrumentWindow& instrument, double seconds);
