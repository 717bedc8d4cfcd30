#pragma once

#include <span>

/// What a command answers to the shell.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitBadUse = 2;  // bad use or bad input

/// The commands. `words` begins with the command's own name. Each answers the exit code.
int renderCommand(std::span<char*> words);
int playCommand(std::span<char*> words);
int liveCommand(std::span<char*> words);
int midiCommand(std::span<char*> words);
int takeCommand(std::span<char*> words);
int auditionCommand(std::span<char*> words);
int devicesCommand(std::span<char*> words);
int presetsCommand(std::span<char*> words);
