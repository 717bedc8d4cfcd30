#include "screens/PresetBar.h"

#include <algorithm>

#include "parameters/PresetNames.h"

void PresetBar::choose(const QString& name) {
    if (const Preset* preset = m_store.find(name.toStdString()))
        m_settings.pick(Preset(*preset));
}

void PresetBar::step(int by) {
    const PresetStore::Presets& presets = m_store.presets();
    if (presets.empty())
        return;
    const auto count = static_cast<std::ptrdiff_t>(presets.size());
    const auto current = presets.find(PresetNames::keyOf(m_settings.pickerTitle()));
    // Without a current one the list is entered at the end that is stepped from.
    const std::ptrdiff_t from =
        current == presets.end() ? (by > 0 ? -1 : 0) : std::distance(presets.begin(), current);
    m_settings.pick(std::next(presets.begin(), (from + by + count) % count)->second);
}
