#pragma once

/// Qt 6.4 asks a Wayland compositor's seat for its text input without seeing whether there is a
/// seat (keyboard, mouse, touch), and crashes with the first text on the screen. Where there is
/// none, as on a compositor without a screen, the program begins anew with an input method that
/// asks no seat. To be called right after the application was made; elsewhere it does nothing.
void beginAnewWithoutSeat(char** argv);
