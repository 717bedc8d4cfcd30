#include "editing/EditHistory.h"

#include <iterator>

std::vector<EditState> EditHistory::begin(EditState first) {
    std::vector<EditState> old = std::exchange(m_states, {});
    m_names.clear();
    m_at = 0;
    m_states.push_back(std::move(first));
    return old;
}

std::vector<EditState> EditHistory::add(std::string name, EditState next) {
    const auto behind = m_states.begin() + static_cast<std::ptrdiff_t>(m_at) + 1;
    std::vector<EditState> dropped(std::make_move_iterator(behind),
                                   std::make_move_iterator(m_states.end()));
    m_states.resize(m_at + 1);
    m_names.resize(m_at);
    m_states.push_back(std::move(next));
    m_names.push_back(std::move(name));
    ++m_at;
    return dropped;
}
