#include "audiounits/devices/RealTimeKit.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <optional>

#include "audiounits/devices/DbusLibrary.h"

namespace {

constexpr const char* kService = "org.freedesktop.RealtimeKit1";
constexpr const char* kPath = "/org/freedesktop/RealtimeKit1";
constexpr int kPatience = 500;  // milliseconds for an answer

// One short conversation with the service on a connection of its own.
class Conversation {
  public:
    explicit Conversation(const DbusLibrary& dbus) : m_dbus(dbus) {
        DBusError error;
        m_dbus.dbus_error_init(&error);
        m_connection = m_dbus.dbus_bus_get_private(DBUS_BUS_SYSTEM, &error);
        m_dbus.dbus_error_free(&error);
        if (m_connection)
            m_dbus.dbus_connection_set_exit_on_disconnect(m_connection, false);
    }
    ~Conversation() {
        if (!m_connection)
            return;
        m_dbus.dbus_connection_close(m_connection);
        m_dbus.dbus_connection_unref(m_connection);
    }
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    bool open() const { return m_connection != nullptr; }

    std::optional<std::int64_t> property(const char* name) {
        DBusMessage* call = message("org.freedesktop.DBus.Properties", "Get");
        m_dbus.dbus_message_append_args(call, DBUS_TYPE_STRING, &kService, DBUS_TYPE_STRING, &name,
                                        DBUS_TYPE_INVALID);
        DBusMessage* answer = ask(call);
        const auto value = answer ? number(answer) : std::nullopt;
        if (answer)
            m_dbus.dbus_message_unref(answer);
        return value;
    }

    bool makeRealTime(std::uint64_t thread, std::uint32_t priority) {
        DBusMessage* call = message(kService, "MakeThreadRealtime");
        m_dbus.dbus_message_append_args(call, DBUS_TYPE_UINT64, &thread, DBUS_TYPE_UINT32,
                                        &priority, DBUS_TYPE_INVALID);
        DBusMessage* answer = ask(call);
        if (answer)
            m_dbus.dbus_message_unref(answer);
        return answer != nullptr;
    }

  private:
    DBusMessage* message(const char* interface, const char* method) {
        return m_dbus.dbus_message_new_method_call(kService, kPath, interface, method);
    }

    // Null for an error, be it the bus's or the service's.
    DBusMessage* ask(DBusMessage* call) {
        DBusError error;
        m_dbus.dbus_error_init(&error);
        DBusMessage* const answer =
            m_dbus.dbus_connection_send_with_reply_and_block(m_connection, call, kPatience, &error);
        m_dbus.dbus_error_free(&error);
        m_dbus.dbus_message_unref(call);
        return answer;
    }

    std::optional<std::int64_t> number(DBusMessage* answer) {
        DBusMessageIter outer, inner;
        if (!m_dbus.dbus_message_iter_init(answer, &outer) ||
            m_dbus.dbus_message_iter_get_arg_type(&outer) != DBUS_TYPE_VARIANT)
            return std::nullopt;
        m_dbus.dbus_message_iter_recurse(&outer, &inner);
        DBusBasicValue value{};
        const int type = m_dbus.dbus_message_iter_get_arg_type(&inner);
        if (type != DBUS_TYPE_INT32 && type != DBUS_TYPE_INT64)
            return std::nullopt;
        m_dbus.dbus_message_iter_get_basic(&inner, &value);
        return type == DBUS_TYPE_INT32 ? value.i32 : value.i64;
    }

    const DbusLibrary& m_dbus;
    DBusConnection* m_connection = nullptr;
};

// A thread that computes longer than this, in microseconds, without waiting once is ended with its
// process. Never raises a limit that is lower already.
void limitComputing(std::int64_t microseconds) {
    rlimit limit{};
    getrlimit(RLIMIT_RTTIME, &limit);
    limit.rlim_max = std::min(limit.rlim_max, static_cast<rlim_t>(microseconds));
    limit.rlim_cur = std::min(limit.rlim_cur, limit.rlim_max);
    setrlimit(RLIMIT_RTTIME, &limit);
}

}  // namespace

bool RealTimeKit::grant(int priority) {
    const DbusLibrary* const dbus = DbusLibrary::get();
    if (!dbus)
        return false;
    Conversation service(*dbus);
    if (!service.open())
        return false;
    const auto highest = service.property("MaxRealtimePriority");
    const auto longest = service.property("RTTimeUSecMax");
    if (!highest || !longest)
        return false;
    limitComputing(*longest);
    const auto thread = static_cast<std::uint64_t>(syscall(SYS_gettid));
    return service.makeRealTime(
        thread, static_cast<std::uint32_t>(std::min<std::int64_t>(priority, *highest)));
}
