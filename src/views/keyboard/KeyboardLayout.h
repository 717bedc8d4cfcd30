#pragma once

class ScrollingKeyboardView;

/// Builds the keys of a keyboard. [main]
namespace KeyboardLayout {

/// Replaces all keys by new ones of the size, and with the labels, that the view asks for. Keys get
/// their tags in the order of pitch, 0 for A0 to 87 for C8.
void layoutKeyboard(ScrollingKeyboardView& keyboard);

/// Puts every key back to the height where it belongs, after the view's frame has changed.
void layoutKeyboardVertically(ScrollingKeyboardView& keyboard);

}  // namespace KeyboardLayout
