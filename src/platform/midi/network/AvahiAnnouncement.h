#pragma once

#include <functional>
#include <string>

#include "midi/network/AvahiLibrary.h"

/// Our service as others find it. On the thread of the client's poll.
class AvahiAnnouncement {
  public:
    /// `renamed` is told the name that is announced in the end, if another one was taken because
    /// somebody had ours.
    AvahiAnnouncement(const AvahiLibrary& avahi, std::string name, std::uint16_t port,
                      std::function<void(const std::string&)> renamed);

    void clientChanged(AvahiClient* client, AvahiClientState state);
    /// Before the client is freed, which takes what it announced back.
    void forgetClient() { m_group = nullptr; }

  private:
    static void groupChanged(AvahiEntryGroup* group, AvahiEntryGroupState state, void* self);
    void announce(AvahiClient* client);
    int add();
    void takeOtherName();

    const AvahiLibrary& m_avahi;
    std::string m_name;
    const std::uint16_t m_port;
    const std::function<void(const std::string&)> m_renamed;
    AvahiEntryGroup* m_group = nullptr;
};
