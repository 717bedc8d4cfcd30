#pragma once

#include <QString>

class DialView;

/// Writes a dial's value as text.
class DialViewTooltipFormatting {
  public:
    virtual ~DialViewTooltipFormatting() = default;
    /// `accessible`: for a screen reader, which says units in full. [main]
    virtual QString formatDialView(const DialView& dial, bool accessible) = 0;
};
