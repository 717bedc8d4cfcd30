#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

/// A first-in, first-out queue of shared objects between ordinary threads, which may block on it:
/// never the audio thread. [any thread] for every call.
///
/// A consumer that others wait for looks at the head, does the work, and only then takes the
/// message, so that `messagesAreAvailable` stays true meanwhile.
template <typename Object>
class ThreadSafeMessageQueue {
  public:
    using Message = std::shared_ptr<Object>;

    void addMessage(Message message) {
        std::lock_guard signalling(m_mutex);
        {
            std::lock_guard monitor(m_monitor);
            m_queue.push_back(std::move(message));
        }
        m_signaller.notify_one();
    }

    /// Takes the head; null when empty.
    Message getMessageIfAvailable() {
        std::lock_guard monitor(m_monitor);
        if (m_queue.empty())
            return nullptr;
        Message head = std::move(m_queue.front());
        m_queue.pop_front();
        return head;
    }

    /// The head, which stays; null when empty.
    Message messageAtHeadOfQueue() const {
        std::lock_guard monitor(m_monitor);
        return m_queue.empty() ? nullptr : m_queue.front();
    }

    bool messagesAreAvailable() const {
        std::lock_guard monitor(m_monitor);
        return !m_queue.empty();
    }

    /// Waits once if the queue is empty, and says whether there is a message then. Woken by
    /// `specialSignal`, or for no reason, it answers false.
    bool blockUntilMessageAvailable() {
        std::unique_lock signalling(m_mutex);
        if (!messagesAreAvailable())
            m_signaller.wait(signalling);
        return messagesAreAvailable();
    }

    /// Takes the head, waiting for it once; null if there is none then.
    Message blockUntilMessage() {
        std::unique_lock signalling(m_mutex);
        if (Message head = getMessageIfAvailable())
            return head;
        m_signaller.wait(signalling);
        return getMessageIfAvailable();
    }

    /// Wakes one waiting consumer without a message, so that it looks at what else has changed.
    void specialSignal() {
        std::lock_guard signalling(m_mutex);
        m_signaller.notify_one();
    }

    void removeAllMessages() {
        std::deque<Message> removed;  // let go of outside the monitor
        std::lock_guard monitor(m_monitor);
        removed.swap(m_queue);
    }

    /// The monitor that guards the queue, recursive: whoever holds it can make several calls as
    /// one, and must hold it to walk the queue. Never call `addMessage` or a blocking call with it
    /// held: the mutex of the condition comes first.
    std::recursive_mutex& getLock() const { return m_monitor; }
    auto begin() const { return m_queue.begin(); }
    auto end() const { return m_queue.end(); }

  private:
    std::deque<Message> m_queue;
    std::condition_variable m_signaller;
    std::mutex m_mutex;                      // of the condition
    mutable std::recursive_mutex m_monitor;  // of the queue; taken inside m_mutex, never around it
};
