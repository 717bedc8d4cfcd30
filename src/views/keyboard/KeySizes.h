#pragma once

#include <QSizeF>

inline constexpr int kWhiteKeyCount = 52;
inline constexpr int kBlackKeyCount = 36;
/// Points. Black keys begin above the edge, so that their picture's shadow is not cut.
inline constexpr double kKeyboardHeight = 229;
inline constexpr double kBlackKeyY = -4;
inline constexpr double kBlackKeyHeight = 154;

/// One of the two sizes of keys, in points. The picture of a black key is wider than the key that
/// is seen; its frame is centred on the boundary of two white keys.
struct KeySizes {
    double whiteWidth;
    double blackWidth;
    double firstBlackX;
    const char* pictureSuffix;  ///< of the pictures' names

    QSizeF contentSize() const { return {kWhiteKeyCount * whiteWidth, kKeyboardHeight}; }
};

inline constexpr KeySizes kNormalKeys{51, 64, 19, ""};
inline constexpr KeySizes kLargeKeys{102, 115, 45, "-fat"};
