#pragma once

#include "graph/VornComponentUnit.h"

/// The platform's format converter: sample format, channels and rate. [control]
class VornConverterUnit : public VornComponentUnit {
  public:
    VornConverterUnit();

    StreamDescription sourceFormat() const;
    void setSourceFormat(const StreamDescription& format);
    StreamDescription targetFormat() const;
    void setTargetFormat(const StreamDescription& format);
};
