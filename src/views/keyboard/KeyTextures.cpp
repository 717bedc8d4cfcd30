#include "keyboard/KeyTextures.h"

#include <QFont>
#include <QPainter>

#include "artwork/Artwork.h"

namespace {

constexpr int kLabelPixels = 24;  // height of the type, in points of the screen

QColor colour(const KeyLabel& label) {
    return label.highlighted ? QColor::fromRgbF(1 / 3.f, 1 / 3.f, 1 / 3.f)
                             : QColor::fromRgbF(0.75f, 0.75f, 0.75f);
}

QImage written(const KeyLabel& label, qreal scale) {
    QImage image((label.frame.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QFont font("Lato");
    font.setPixelSize(kLabelPixels);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(colour(label));
    painter.drawText(QRectF({}, label.frame.size()), Qt::AlignCenter, label.text);
    return image;
}

/// For a program whose pictures are missing: it can still be played.
QImage plain(const PianoKeyButton& key) {
    QImage image(key.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const int margin = key.sharp() ? 13 : 1;
    QPainter(&image).fillRect(image.rect().adjusted(margin, 0, -margin, -1),
                              QColor(key.highlighted() ? Qt::gray
                                     : key.sharp()     ? Qt::black
                                                       : Qt::white));
    return image;
}

}  // namespace

std::shared_ptr<KeyTextures> KeyTextures::of(QQuickWindow& window) {
    static QHash<QQuickWindow*, std::weak_ptr<KeyTextures>> known;
    auto& place = known[&window];
    auto textures = place.lock();
    if (!textures) {
        textures = std::make_shared<KeyTextures>(window);
        place = textures;
    }
    return textures;
}

QSGTexture* KeyTextures::picture(const PianoKeyButton& key, qreal scale) {
    const QString name = QString("%1 %2").arg(key.picture()).arg(scale);
    if (const auto found = m_textures.constFind(name); found != m_textures.cend())
        return found->get();
    const QImage image = Artwork::image(key.picture(), scale);
    return keep(name, image.isNull() ? plain(key) : image);
}

QSGTexture* KeyTextures::label(const KeyLabel& label, qreal scale) {
    const QString name = QString("label %1 %2 %3 %4")
                             .arg(label.text)
                             .arg(label.highlighted)
                             .arg(label.frame.width())
                             .arg(scale);
    if (const auto found = m_textures.constFind(name); found != m_textures.cend())
        return found->get();
    return keep(name, written(label, scale));
}

QSGTexture* KeyTextures::keep(const QString& name, const QImage& image) {
    const QQuickWindow::CreateTextureOptions shared = QQuickWindow::TextureCanUseAtlas;
    std::shared_ptr<QSGTexture> texture(
        m_window.createTextureFromImage(image, shared | QQuickWindow::TextureHasAlphaChannel));
    m_textures.insert(name, texture);
    return texture.get();
}
