#include "midi/network/SequenceWindow.h"

namespace {

constexpr std::uint32_t kWindowPackets = 64;
/// Two packets in a row from further back than this are a stream that has begun again (RFC 3550,
/// appendix A.1).
constexpr std::uint32_t kMostMisordered = 100;

std::int16_t distanceFrom(std::uint32_t from, std::uint16_t to) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(to - from));
}

}  // namespace

SequenceWindow::Place SequenceWindow::take(std::uint16_t sequence) {
    if (!m_started)
        return start(sequence);
    const int distance = distanceFrom(m_newest, sequence);
    return distance > 0 ? advance(static_cast<std::uint32_t>(distance))
                        : lookBack(sequence, static_cast<std::uint32_t>(-distance));
}

SequenceWindow::Place SequenceWindow::start(std::uint16_t sequence) {
    *this = {};
    m_started = true;
    m_newest = 0x10000u | sequence;
    m_missing = ~std::uint64_t{0};
    m_gap = m_outOfSight = true;
    return {Arrival::first, m_newest};
}

SequenceWindow::Place SequenceWindow::advance(std::uint32_t distance) {
    m_restart.reset();
    if (distance > 1 && !m_gap) {
        m_gap = m_sureKnown = true;
        m_sure = m_newest;
    }
    if (distance >= kWindowPackets) {
        m_outOfSight |= m_gap;
        m_missing = ~std::uint64_t{0} >> (distance == kWindowPackets ? 1 : 0);
    } else {
        m_outOfSight |= m_gap && m_missing >> (kWindowPackets - distance) != 0;
        m_missing = m_missing << distance | ((std::uint64_t{1} << (distance - 1)) - 1);
    }
    m_newest += distance;
    return {Arrival::newer, m_newest};
}

SequenceWindow::Place SequenceWindow::lookBack(std::uint16_t sequence, std::uint32_t distance) {
    if (distance > kMostMisordered) {
        if (m_restart == sequence)
            return start(sequence);
        m_restart = static_cast<std::uint16_t>(sequence + 1);
    }
    const std::uint64_t bit =
        distance == 0 || distance > kWindowPackets ? 0 : std::uint64_t{1} << (distance - 1);
    if ((m_missing & bit) == 0)
        return {Arrival::dropped, m_newest};
    m_missing &= ~bit;
    m_gap = m_gap && (m_missing != 0 || m_outOfSight);
    return {Arrival::late, m_newest - distance};
}

bool SequenceWindow::isCoveredFrom(std::uint16_t checkpoint) const {
    return m_sureKnown && distanceFrom(m_sure + 1, checkpoint) <= 0;
}

void SequenceWindow::makeUp() {
    m_gap = m_outOfSight = false;
}

std::uint16_t SequenceWindow::sureThrough() const {
    return static_cast<std::uint16_t>(m_gap && m_sureKnown ? m_sure : m_newest);
}
