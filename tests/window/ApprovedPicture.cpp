#include "ApprovedPicture.h"

#include <QColor>
#include <QDir>
#include <array>
#include <cmath>

namespace {

constexpr int kSquare = 16;           // pixels
constexpr double kTolerance = 14;     // of 255, in the mean of a square
constexpr double kDifferentMost = 2;  // squares of a hundred

using Mean = std::array<double, 3>;

Mean meanOf(const QImage& picture, int left, int top) {
    Mean sum{};
    int count = 0;
    for (int y = top; y < std::min(top + kSquare, picture.height()); ++y) {
        for (int x = left; x < std::min(left + kSquare, picture.width()); ++x, ++count) {
            const QColor colour = picture.pixelColor(x, y);
            sum[0] += colour.red();
            sum[1] += colour.green();
            sum[2] += colour.blue();
        }
    }
    for (double& value : sum)
        value /= count;
    return sum;
}

bool alike(const Mean& a, const Mean& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::abs(a[i] - b[i]) > kTolerance)
            return false;
    }
    return true;
}

/// In squares of a hundred.
double difference(const QImage& a, const QImage& b) {
    int different = 0;
    int count = 0;
    for (int top = 0; top < a.height(); top += kSquare) {
        for (int left = 0; left < a.width(); left += kSquare, ++count)
            different += !alike(meanOf(a, left, top), meanOf(b, left, top));
    }
    return 100.0 * different / count;
}

}  // namespace

testing::AssertionResult looksApproved(const QImage& picture, const std::string& name) {
    const QString file = QString::fromStdString(name + ".png");
    const QString approved = QDir(OMBRIX_SCREENS).filePath(file);
    if (qEnvironmentVariableIsSet("OMBRIX_APPROVE"))
        return picture.save(approved, nullptr, 0) ? testing::AssertionSuccess()
                                                  : testing::AssertionFailure();
    const QImage wanted(approved);
    if (wanted.size() == picture.size() && difference(picture, wanted) <= kDifferentMost)
        return testing::AssertionSuccess();
    picture.save(file);
    return testing::AssertionFailure() << name << " differs from the approved picture; see "
                                       << qPrintable(QDir(file).absolutePath());
}
