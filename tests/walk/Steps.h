#pragma once

#include "Walk.h"

// Rooms of the walk. Each leaves the main screen as it found it: nothing open, no finger down.

void turnEveryDial(Walk& walk);
void dragTheEnvelope(Walk& walk);
void pickEveryGrainMode(Walk& walk);
void stepThroughPresets(Walk& walk);
void pickPreset(Walk& walk, const QString& name);
void keepAPreset(Walk& walk);
void changeEverySetting(Walk& walk);
/// `tone` is a sound file that the microphone is to hear.
void recordATake(Walk& walk, const std::string& tone);
/// `folder` takes a sound of twenty minutes.
void exploreAWave(Walk& walk, const std::string& folder);
void recordAPerformance(Walk& walk);
/// One that presses keys over MIDI, and ends with one down.
void playFromAnotherProgram(Walk& walk);
/// The same for somebody else's network session, which is killed.
void playOverTheNetwork(Walk& walk);
void followTheTutorial(Walk& walk);
void startAgain(Walk& walk);
