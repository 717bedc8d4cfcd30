#include "midi/network/NetworkDirectory.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "midi/network/AvahiAnnouncement.h"
#include "midi/network/AvahiBrowse.h"

namespace {
using DirectoryClock = std::chrono::steady_clock;
constexpr std::chrono::seconds kLookForDaemonEvery{5};
constexpr std::chrono::seconds kPatienceWithDaemon{1};
}  // namespace

/// What the thread has. A client that has failed is freed and made anew.
class NetworkDirectory::Worker {
  public:
    Worker(const AvahiLibrary& avahi, std::shared_ptr<NetworkBoard> board, const std::string& name,
           std::uint16_t port)
        : m_avahi(avahi),
          m_board(std::move(board)),
          m_poll(avahi.avahi_simple_poll_new()),
          m_announcement(avahi, name, port,
                         [this](const std::string& other) {
                             unlessAbandoned([&] { m_board->setLocalName(other); });
                         }),
          m_browse(avahi, [this](NetworkBoard::Peers peers) {
              unlessAbandoned(
                  [&] { m_board->change([&](auto& state) { state.found = std::move(peers); }); });
          }) {}
    ~Worker() { m_avahi.avahi_simple_poll_free(m_poll); }

    void run() {
        while (!m_stopping) {
            const auto now = DirectoryClock::now();
            if (!m_client && now >= m_tryAgain)
                open();
            if (m_failed)
                close();
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(m_tryAgain - DirectoryClock::now());
            const int wait = m_client ? -1 : static_cast<int>(std::max<long>(left.count(), 0));
            if (m_avahi.avahi_simple_poll_iterate(m_poll, wait) < 0)
                break;
        }
        close();
        std::lock_guard guard(m_mutex);
        m_finished = true;
        m_end.notify_all();
    }

    void stop() {
        m_stopping = true;
        m_avahi.avahi_simple_poll_wakeup(m_poll);
        std::unique_lock held(m_mutex);
        m_end.wait_for(held, kPatienceWithDaemon, [this] { return m_finished; });
        m_abandoned = true;
    }

  private:
    void open() {
        m_failed = false;
        m_tryAgain = DirectoryClock::now() + kLookForDaemonEvery;
        m_client = m_avahi.avahi_client_new(m_avahi.avahi_simple_poll_get(m_poll),
                                            AVAHI_CLIENT_NO_FAIL, changed, this, nullptr);
    }

    void close() {
        m_failed = false;
        m_announcement.forgetClient();
        m_browse.forgetClient();
        m_browsing = false;
        if (m_client)
            m_avahi.avahi_client_free(m_client);
        m_client = nullptr;
        m_tryAgain = DirectoryClock::now() + kLookForDaemonEvery;
    }

    /// Also called from within avahi_client_new, when m_client is not set yet.
    static void changed(AvahiClient* client, AvahiClientState state, void* self) {
        auto& worker = *static_cast<Worker*>(self);
        if (state == AVAHI_CLIENT_FAILURE) {
            worker.m_failed = true;
            return;
        }
        worker.m_announcement.clientChanged(client, state);
        if (state == AVAHI_CLIENT_S_RUNNING && !worker.m_browsing)
            worker.m_browsing = worker.m_browse.start(client);
    }

    /// Whoever has been left behind tells nothing any more.
    template <typename What>
    void unlessAbandoned(What what) {
        std::lock_guard guard(m_mutex);
        if (!m_abandoned)
            what();
    }

    const AvahiLibrary& m_avahi;
    const std::shared_ptr<NetworkBoard> m_board;
    AvahiSimplePoll* const m_poll;
    AvahiAnnouncement m_announcement;
    AvahiBrowse m_browse;
    AvahiClient* m_client = nullptr;
    bool m_browsing = false;
    bool m_failed = false;
    DirectoryClock::time_point m_tryAgain{};
    std::atomic<bool> m_stopping{false};

    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_finished = false;
    bool m_abandoned = false;
};

NetworkDirectory::NetworkDirectory(std::shared_ptr<NetworkBoard> board, const std::string& name,
                                   std::uint16_t port) {
    const AvahiLibrary* const avahi = AvahiLibrary::get();
    if (!avahi)
        return;
    m_worker = std::make_shared<Worker>(*avahi, std::move(board), name, port);
    std::thread([worker = m_worker] { worker->run(); }).detach();
}

NetworkDirectory::~NetworkDirectory() {
    if (m_worker)
        m_worker->stop();
}
