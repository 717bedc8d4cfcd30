#include "notifications/NotificationCentre.h"

#include <algorithm>
#include <thread>

namespace {
thread_local int postsOnThisThread = 0;
}

NotificationCentre& NotificationCentre::defaultCentre() {
    static NotificationCentre centre;
    return centre;
}

NotificationCentre::NotificationCentre() {
    m_lists.push_back(std::make_unique<const List>());
    m_current = m_lists.back().get();
}

NotificationCentre::~NotificationCentre() = default;

NotificationCentre::Token NotificationCentre::addObserver(std::string name, Observer observer) {
    return addObserver(std::move(name),
                       [observer = std::move(observer)](const Notice&) { observer(); });
}

NotificationCentre::Token NotificationCentre::addObserver(std::string name,
                                                          NoticeObserver observer) {
    std::lock_guard guard(m_mutex);
    auto list = std::make_unique<List>(*m_lists.back());
    list->push_back(
        std::make_shared<const Entry>(Entry{m_nextToken, std::move(name), std::move(observer)}));
    replace(std::move(list));
    return m_nextToken++;
}

void NotificationCentre::removeObserver(Token token) {
    std::lock_guard guard(m_mutex);
    auto list = std::make_unique<List>(*m_lists.back());
    std::erase_if(*list, [token](auto& entry) { return entry->token == token; });
    replace(std::move(list));
}

void NotificationCentre::replace(std::unique_ptr<const List> list) {
    m_current.store(list.get(), std::memory_order_seq_cst);
    m_lists.push_back(std::move(list));
    // Posts that began before the exchange may still walk an old list. Observers are short, so
    // they are waited for; a change made by an observer itself leaves the old lists to the next.
    if (postsOnThisThread > 0)
        return;
    while (m_posting.load(std::memory_order_seq_cst) != 0)
        std::this_thread::yield();
    m_lists.erase(m_lists.begin(), m_lists.end() - 1);
}

void NotificationCentre::post(const Notice& notice) noexcept {
    m_posting.fetch_add(1, std::memory_order_seq_cst);
    ++postsOnThisThread;
    for (const auto& entry : *m_current.load(std::memory_order_seq_cst))
        if (entry->name == notice.name)
            entry->observer(notice);
    --postsOnThisThread;
    m_posting.fetch_sub(1, std::memory_order_seq_cst);
}
