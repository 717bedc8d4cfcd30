#include "keyboard/KeyPosition.h"

#include <algorithm>
#include <array>

namespace {

using Role = KeyPosition::Role;

constexpr quint32 kScanCodeOffset = 8;  // from evdev's codes to those of X11

struct Row {
    quint32 evdev;
    Qt::Key key;
    KeyPosition position;
};

constexpr std::array kRows = {
    Row{44, Qt::Key_Z, {Role::plays, 0}},
    Row{31, Qt::Key_S, {Role::plays, 1}},
    Row{45, Qt::Key_X, {Role::plays, 2}},
    Row{32, Qt::Key_D, {Role::plays, 3}},
    Row{46, Qt::Key_C, {Role::plays, 4}},
    Row{47, Qt::Key_V, {Role::plays, 5}},
    Row{34, Qt::Key_G, {Role::plays, 6}},
    Row{48, Qt::Key_B, {Role::plays, 7}},
    Row{35, Qt::Key_H, {Role::plays, 8}},
    Row{49, Qt::Key_N, {Role::plays, 9}},
    Row{36, Qt::Key_J, {Role::plays, 10}},
    Row{50, Qt::Key_M, {Role::plays, 11}},
    Row{16, Qt::Key_Q, {Role::plays, 12}},
    Row{3, Qt::Key_2, {Role::plays, 13}},
    Row{17, Qt::Key_W, {Role::plays, 14}},
    Row{4, Qt::Key_3, {Role::plays, 15}},
    Row{18, Qt::Key_E, {Role::plays, 16}},
    Row{19, Qt::Key_R, {Role::plays, 17}},
    Row{6, Qt::Key_5, {Role::plays, 18}},
    Row{20, Qt::Key_T, {Role::plays, 19}},
    Row{7, Qt::Key_6, {Role::plays, 20}},
    Row{21, Qt::Key_Y, {Role::plays, 21}},
    Row{8, Qt::Key_7, {Role::plays, 22}},
    Row{22, Qt::Key_U, {Role::plays, 23}},
    Row{26, Qt::Key_BracketLeft, {Role::octaveDown}},
    Row{27, Qt::Key_BracketRight, {Role::octaveUp}},
    Row{57, Qt::Key_Space, {Role::hold}},
    Row{1, Qt::Key_Escape, {Role::escape}},
};

}  // namespace

std::optional<KeyPosition> keyPosition(const QKeyEvent& event, bool scanCodesKnown) {
    const quint32 code = event.nativeScanCode();
    const bool byPlace = scanCodesKnown && code > kScanCodeOffset;
    const auto found = std::ranges::find_if(kRows, [&](const Row& row) {
        return byPlace ? row.evdev == code - kScanCodeOffset
                       : row.key == event.key() && !(event.modifiers() & Qt::KeypadModifier);
    });
    if (found == kRows.end())
        return std::nullopt;
    return found->position;
}
