#include "QrMidiSource.h"

#include <algorithm>
#include <thread>

namespace {
thread_local const QrMidiSource* told = nullptr;  // the source that tells on this thread
}

std::shared_ptr<const QrMidiSource::Delegates> QrMidiSource::current() const {
    std::lock_guard guard(m_mutex);
    return m_delegates;
}

void QrMidiSource::addDelegate(QrMidiSourceDelegate& delegate) {
    std::lock_guard guard(m_mutex);
    if (std::ranges::find(*m_delegates, &delegate) != m_delegates->end())
        return;
    auto changed = std::make_shared<Delegates>(*m_delegates);
    changed->push_back(&delegate);
    m_delegates = std::move(changed);
}

void QrMidiSource::removeDelegate(QrMidiSourceDelegate& delegate) {
    {
        std::lock_guard guard(m_mutex);
        auto changed = std::make_shared<Delegates>(*m_delegates);
        std::erase(*changed, &delegate);
        m_delegates = std::move(changed);
    }
    if (told == this)
        return;
    while (m_reading.load() > 0)
        std::this_thread::yield();
}

void QrMidiSource::midiRead(const MIDIPacketList& list) {
    m_reading.fetch_add(1);
    const QrMidiSource* const before = std::exchange(told, this);
    const auto listeners = current();
    for (QrMidiSourceDelegate* delegate : *listeners)
        delegate->midiReceived(*this, list);
    told = before;
    m_reading.fetch_sub(1);
}
