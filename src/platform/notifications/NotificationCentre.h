#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

/// What is posted: a name, who posts it, and what it is about. Observers of a name know the types.
struct Notice {
    std::string_view name;
    void* object = nullptr;
    std::string_view infoKey = {};
    void* info = nullptr;  // under infoKey
};

/// Tells observers of a name that something has happened. Posting reads an immutable list without
/// locks and calls each observer on the posting thread, so that the audio thread may post: what
/// observes a notice of the audio thread must do no more than set an atomic flag.
class NotificationCentre {
  public:
    using Observer = std::function<void()>;
    using NoticeObserver = std::function<void(const Notice&)>;
    using Token = std::uint64_t;

    /// The program's one centre.
    static NotificationCentre& defaultCentre();

    NotificationCentre();
    ~NotificationCentre();
    NotificationCentre(const NotificationCentre&) = delete;
    NotificationCentre& operator=(const NotificationCentre&) = delete;

    /// [control] The observer is called for every later notice of that name, until it is removed.
    Token addObserver(std::string name, Observer observer);
    Token addObserver(std::string name, NoticeObserver observer);

    /// [control] When this returns the observer is not being called by any other thread, and will
    /// not be again. An observer may remove itself.
    void removeObserver(Token token);

    /// [any thread]
    void post(std::string_view name) noexcept { post(Notice{name}); }
    void post(const Notice& notice) noexcept;

  private:
    struct Entry {
        Token token;
        std::string name;
        NoticeObserver observer;
    };
    using List = std::vector<std::shared_ptr<const Entry>>;

    void replace(std::unique_ptr<const List> list);

    std::mutex m_mutex;                  // changes of the list; never taken by a poster
    std::atomic<const List*> m_current;  // owned by m_lists
    std::atomic<int> m_posting{0};       // posts under way
    std::vector<std::unique_ptr<const List>> m_lists;  // the current one last, retired ones before
    Token m_nextToken = 1;
};
