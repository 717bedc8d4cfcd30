#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

/// Tells observers of a name that something has happened. Posting reads an immutable list without
/// locks and calls each observer on the posting thread, so that the audio thread may post: what
/// observes a notice of the audio thread must do no more than set an atomic flag.
class NotificationCentre {
  public:
    using Observer = std::function<void()>;
    using Token = std::uint64_t;

    /// The program's one centre.
    static NotificationCentre& defaultCentre();

    NotificationCentre();
    ~NotificationCentre();
    NotificationCentre(const NotificationCentre&) = delete;
    NotificationCentre& operator=(const NotificationCentre&) = delete;

    /// [control] The observer is called for every later notice of that name, until it is removed.
    Token addObserver(std::string name, Observer observer);

    /// [control] When this returns the observer is not being called by any other thread, and will
    /// not be again. An observer may remove itself.
    void removeObserver(Token token);

    /// [any thread]
    void post(std::string_view name) noexcept;

  private:
    struct Entry {
        Token token;
        std::string name;
        Observer observer;
    };
    using List = std::vector<std::shared_ptr<const Entry>>;

    void replace(std::unique_ptr<const List> list);

    std::mutex m_mutex;                  // changes of the list; never taken by a poster
    std::atomic<const List*> m_current;  // owned by m_lists
    std::atomic<int> m_posting{0};       // posts under way
    std::vector<std::unique_ptr<const List>> m_lists;  // the current one last, retired ones before
    Token m_nextToken = 1;
};
