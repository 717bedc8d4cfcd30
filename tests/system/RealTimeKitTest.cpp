#include "audiounits/devices/RealTimeKit.h"

#include <dbus/dbus.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <thread>

#include "ScratchFolder.h"
#include "SystemBus.h"

namespace {

// One path for the whole process, because libdbus asks for it once.
const std::string& busPath() {
    static const ScratchFolder scratch;
    static const std::string path = scratch.file("bus");
    return path;
}

// A bus of our own with a service on it that answers as RTKit does: an account's right to real-time
// priority cannot be had on a machine that builds programs.
class FakeRealTimeKit {
  public:
    ~FakeRealTimeKit() {
        m_serving = false;
        if (m_thread.joinable())
            m_thread.join();
    }

    void startBus() { m_bus.start(); }

    void startService(bool consents) {
        m_consents = consents;
        DBusConnection* const connection = dbus_bus_get_private(DBUS_BUS_SYSTEM, nullptr);
        ASSERT_TRUE(connection);
        dbus_connection_set_exit_on_disconnect(connection, false);
        dbus_bus_request_name(connection, "org.freedesktop.RealtimeKit1", 0, nullptr);
        m_serving = true;
        m_thread = std::thread([this, connection] { serve(connection); });
    }

    std::atomic<std::uint64_t> thread{0};
    std::atomic<std::uint32_t> priority{0};

  private:
    void serve(DBusConnection* connection) {
        while (m_serving) {
            dbus_connection_read_write(connection, 10);
            while (DBusMessage* const call = dbus_connection_pop_message(connection)) {
                if (dbus_message_get_type(call) == DBUS_MESSAGE_TYPE_METHOD_CALL)
                    answer(connection, call);
                dbus_message_unref(call);
            }
        }
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }

    void answer(DBusConnection* connection, DBusMessage* call) {
        DBusMessage* reply = dbus_message_new_method_return(call);
        if (dbus_message_is_method_call(call, "org.freedesktop.DBus.Properties", "Get"))
            tell(call, reply);
        else if (dbus_message_is_method_call(call, "org.freedesktop.RealtimeKit1",
                                             "MakeThreadRealtime"))
            grant(call, reply);
        dbus_connection_send(connection, reply, nullptr);
        dbus_connection_flush(connection);
        dbus_message_unref(reply);
    }

    static void tell(DBusMessage* call, DBusMessage* reply) {
        const char *interface = "", *name = "";
        dbus_message_get_args(call, nullptr, DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &name,
                              DBUS_TYPE_INVALID);
        const bool longest = std::strcmp(name, "RTTimeUSecMax") == 0;
        const dbus_int64_t microseconds = 200000;
        const dbus_int32_t highest = 5;
        DBusMessageIter outer, inner;
        dbus_message_iter_init_append(reply, &outer);
        dbus_message_iter_open_container(&outer, DBUS_TYPE_VARIANT, longest ? "x" : "i", &inner);
        if (longest)
            dbus_message_iter_append_basic(&inner, DBUS_TYPE_INT64, &microseconds);
        else
            dbus_message_iter_append_basic(&inner, DBUS_TYPE_INT32, &highest);
        dbus_message_iter_close_container(&outer, &inner);
    }

    void grant(DBusMessage* call, DBusMessage*& reply) {
        dbus_uint64_t wantedThread = 0;
        dbus_uint32_t wantedPriority = 0;
        dbus_message_get_args(call, nullptr, DBUS_TYPE_UINT64, &wantedThread, DBUS_TYPE_UINT32,
                              &wantedPriority, DBUS_TYPE_INVALID);
        thread = wantedThread;
        priority = wantedPriority;
        if (m_consents)
            return;
        dbus_message_unref(reply);
        reply = dbus_message_new_error(call, DBUS_ERROR_ACCESS_DENIED, "no");
    }

    SystemBus m_bus{busPath()};
    std::atomic<bool> m_serving{false};
    bool m_consents = false;
    std::thread m_thread;
};

TEST(RealTimeKit, theServiceIsAskedAsItWishes) {
    FakeRealTimeKit service;
    service.startBus();
    service.startService(true);
    ASSERT_TRUE(RealTimeKit::grant(10));
    EXPECT_EQ(service.thread, static_cast<std::uint64_t>(syscall(SYS_gettid)));
    EXPECT_EQ(service.priority, 5u) << "no more than it allows";
    rlimit limit{};
    getrlimit(RLIMIT_RTTIME, &limit);
    EXPECT_LE(limit.rlim_max, 200000u);
}

TEST(RealTimeKit, withoutConsentServiceOrBusNothingIsGranted) {
    FakeRealTimeKit service;
    EXPECT_FALSE(RealTimeKit::grant(10)) << "no bus";
    service.startBus();
    EXPECT_FALSE(RealTimeKit::grant(10)) << "no service";
    service.startService(false);
    EXPECT_FALSE(RealTimeKit::grant(10)) << "no consent";
}

}  // namespace
