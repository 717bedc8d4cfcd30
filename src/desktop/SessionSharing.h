#pragma once

#include "screens/DesktopSharing.h"

class QMimeData;

/// The clipboard and the other programs of the desktop session. [main]
class SessionSharing final : public DesktopSharing {
  public:
    void copy(const QString& path) override;
    Clipboard clipboard() const override;
    void openIn(const QString& path, Failed failed) override;

    /// What clipboard or drag data hold for us.
    static Clipboard taken(const QMimeData& data);
};
