#include "screens/GrainModeState.h"

#include "parameters/GrainModes.h"

namespace {

const GrainModeItem& item(int index) {
    return kGrainModes[std::size_t(index) < kGrainModes.size() ? std::size_t(index) : 0];
}

QString text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

QString GrainModeState::name() const {
    return tr(item(index()).name.data());
}

QString GrainModeState::image() const {
    return text(item(index()).image);
}

QString GrainModeState::spokenLabel() const {
    return tr("Grain Mode: ") + name();
}

void GrainModeState::pick(int index) {
    if (index < 0 || std::size_t(index) >= kGrainModes.size())
        return;
    m_settings.setGrainMode(index);
    Q_EMIT changed();
}
