#pragma once

#include <QString>

/// Text as lists are searched: what a player types without accents and capitals finds it.
namespace SearchText {

/// Two texts that differ in letter case, accents or the width of their letters only are folded
/// into one.
QString folded(const QString& text);

}  // namespace SearchText
