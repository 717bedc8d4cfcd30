#include "LookupTable.h"

std::uint32_t LookupTable::referenceItem(const VornWave2* wave) {
    const auto [entry, isNew] = m_indices.try_emplace(wave, count());
    if (isNew)
        m_items.push_back(wave);
    return entry->second;
}
