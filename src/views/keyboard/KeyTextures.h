#pragma once

#include <QHash>
#include <QQuickWindow>
#include <QSGTexture>
#include <memory>

#include "keyboard/PianoKeyButton.h"

/// The textures that the keys of a window share: a picture or a label is uploaded once. Lives as
/// long as any node that shows one, and goes with the last of them. [render, while main waits]
class KeyTextures {
  public:
    static std::shared_ptr<KeyTextures> of(QQuickWindow& window);

    explicit KeyTextures(QQuickWindow& window) : m_window(window) {}

    /// @param scale  pixels in a point, for these two
    QSGTexture* picture(const PianoKeyButton& key, qreal scale);
    QSGTexture* label(const KeyLabel& label, qreal scale);

  private:
    QSGTexture* keep(const QString& name, const QImage& image);

    QQuickWindow& m_window;
    QHash<QString, std::shared_ptr<QSGTexture>> m_textures;
};
