#pragma once

#include <QKeyEvent>
#include <optional>

/// What a key of the computer's keyboard does for us.
struct KeyPosition {
    enum class Role { plays, octaveDown, octaveUp, hold, escape };
    Role role;
    int semitone = 0;  ///< of a key that plays: 0 to 23, from the C of the lower row up
};

/// By where the key lies, whatever is printed on it, if the window system says so; else by what it
/// types. The rows from Z to M and from Q to U are white keys, those above them black. Nothing for
/// other keys.
/// @param scanCodesKnown  whether native scan codes are those of X11 and Wayland (evdev's, plus 8)
std::optional<KeyPosition> keyPosition(const QKeyEvent& event, bool scanCodesKnown);
