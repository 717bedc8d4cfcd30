#include "wave/TimeScale.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double kClosest = 40;      // points between two labels
constexpr double kFineStep = 0.001;  // seconds, below which frames are counted

// In ascending order; the one two places before divides each into four to six.
constexpr std::array kFrameSteps{1., 2., 5., 10., 20., 50., 100.};
constexpr std::array kTimeSteps{0.0002, 0.0005, 0.001, 0.002, 0.005, 0.01, 0.02, 0.05,  0.1,
                                0.2,    0.5,    1.,    2.,    5.,    10.,  20.,  60.,   120.,
                                300.,   600.,   1200., 3600., 7200., 18e3, 36e3, 72000.};

template <std::size_t count>
TimeScale::Steps chosen(const std::array<double, count>& steps, std::size_t index, double unit) {
    return {unit * steps[index], unit * steps[index - std::min<std::size_t>(2, index)]};
}

/// So that neighbours that are `seconds` apart differ.
int decimalsFor(double seconds) {
    int decimals = 0;
    for (double unit = 1; unit > seconds * 1.000001 && decimals < 6; unit /= 10)
        ++decimals;
    return decimals;
}

QString clockTime(double seconds, int decimals) {
    const double unit = std::pow(10., decimals);
    const auto units = std::llround(seconds * unit);  // before it is split: 59.9996 is 1:00.000
    const auto perSecond = std::llround(unit);
    const auto whole = units / perSecond;
    const auto two = [](long long number) {
        return QString::number(number).rightJustified(2, u'0');
    };
    QStringList parts{QString::number(whole / 60 % 60), two(whole % 60)};
    if (whole >= 3600)
        parts = QStringList{QString::number(whole / 3600), two(whole / 60 % 60), two(whole % 60)};
    QString text = parts.join(u':');
    if (decimals > 0)
        text += u'.' + QString::number(units % perSecond).rightJustified(decimals, u'0');
    return text;
}

}  // namespace

TimeScale::Steps TimeScale::stepsFor(double frames) const {
    for (std::size_t i = 0; i < kFrameSteps.size() && kFrameSteps[i] < kFineStep * m_rate; ++i) {
        if (kFrameSteps[i] >= frames)
            return chosen(kFrameSteps, i, 1);
    }
    std::size_t i = 2;
    while (i + 1 < kTimeSteps.size() && kTimeSteps[i] * m_rate < frames)
        ++i;
    return chosen(kTimeSteps, i, m_rate);
}

QString TimeScale::label(double frame, double step) const {
    const bool fine = step < kFineStep * m_rate * 0.999999;
    const QString time = clockTime(frame / m_rate, decimalsFor(step / m_rate));
    return fine ? time + QStringLiteral(" \u00b7 ") + QString::number(std::llround(frame)) : time;
}

TimeScale::Steps TimeScale::fitting(const WaveViewport& viewport, const Width& widthOf) const {
    const double end = viewport.first() + viewport.span();
    Steps steps = stepsFor(kClosest * viewport.framesPerPoint());
    while (widthOf(label(end, steps.label)) * viewport.framesPerPoint() > steps.label) {
        const Steps wider = stepsFor(steps.label * 1.01);
        if (wider.label <= steps.label)
            break;  // there is none
        steps = wider;
    }
    return steps;
}

std::vector<TimeScale::Mark> TimeScale::marks(const WaveViewport& viewport,
                                              const Width& widthOf) const {
    std::vector<Mark> marks;
    if (!(viewport.framesPerPoint() > 0))
        return marks;
    const Steps steps = fitting(viewport, widthOf);
    const auto each = std::llround(steps.label / steps.mark);
    // One beyond the left edge, whose label may still be seen.
    const auto first = std::llround(std::floor(viewport.first() / steps.label)) * each;
    const double end = viewport.first() + viewport.span();
    for (auto number = first; double(number) * steps.mark <= end; ++number) {
        const double frame = double(number) * steps.mark;
        marks.push_back(
            {viewport.xOf(frame), number % each == 0 ? label(frame, steps.label) : QString()});
    }
    return marks;
}
