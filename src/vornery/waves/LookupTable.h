#pragma once

#include <cstdint>
#include <map>
#include <vector>

class VornWave2;

/// Numbers the waves of the sequences that are being written, in the order in which they are met.
/// Keeps none of them alive. [main]
class LookupTable {
  public:
    /// The wave's number, given to it now if it has none.
    std::uint32_t referenceItem(const VornWave2* wave);
    /// The waves by their numbers.
    const std::vector<const VornWave2*>& itemList() const { return m_items; }
    std::uint32_t count() const { return static_cast<std::uint32_t>(m_items.size()); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

  private:
    std::map<const VornWave2*, std::uint32_t> m_indices;
    std::vector<const VornWave2*> m_items;
};
