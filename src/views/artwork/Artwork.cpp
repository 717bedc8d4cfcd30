#include "artwork/Artwork.h"

#include <QHash>
#include <algorithm>
#include <cmath>

#include "folders/Folders.h"
#include "log/Log.h"

namespace {

QString path(const QString& name, int scale) {
    const auto folder = QString::fromStdString((Folders::resources() / "artwork").string());
    if (scale == 1)
        return folder + '/' + name;
    const qsizetype dot = name.lastIndexOf('.');
    return QStringLiteral("%1/%2@%3x%4").arg(folder, name.left(dot)).arg(scale).arg(name.mid(dot));
}

}  // namespace

QImage Artwork::image(const QString& name, qreal scale) {
    const int whole = std::clamp(static_cast<int>(std::ceil(scale)), 1, 3);
    static QHash<QString, QImage> known;
    const QString file = path(name, whole);
    const auto found = known.constFind(file);
    if (found != known.cend())
        return *found;
    QImage image(file);
    if (image.isNull())
        Log::line("No picture %s", qPrintable(file));
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(whole);
    known.insert(file, image);
    return image;
}

QSizeF Artwork::size(const QString& name) {
    return image(name, 1).deviceIndependentSize();
}
