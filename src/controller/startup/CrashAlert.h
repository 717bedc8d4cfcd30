#pragma once

#include "audiounits/FourCharCode.h"

/// What is asked after a run that did not leave cleanly. "Reset" is Settings::resetAfterCrash;
/// "Cancel" leaves what was restored.
namespace CrashAlert {

inline constexpr const char* kTitle = "Crash Detected";
inline constexpr const char* kMessage =
    "Would you like to reset the synthesiser? This may help prevent a repeat of the crash.";
inline constexpr const char* kCancel = "Cancel";
inline constexpr const char* kReset = "Reset";
inline constexpr auto kTag = fourCC("crsh");

}  // namespace CrashAlert
