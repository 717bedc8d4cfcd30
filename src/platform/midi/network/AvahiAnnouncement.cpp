#include "midi/network/AvahiAnnouncement.h"

#include "log/Log.h"
#include "midi/network/NetworkDirectory.h"

namespace {
constexpr int kMostNames = 100;
}

AvahiAnnouncement::AvahiAnnouncement(const AvahiLibrary& avahi, std::string name,
                                     std::uint16_t port,
                                     std::function<void(const std::string&)> renamed)
    : m_avahi(avahi), m_name(std::move(name)), m_port(port), m_renamed(std::move(renamed)) {}

/// While the daemon settles what the machine itself is called, nothing is announced.
void AvahiAnnouncement::clientChanged(AvahiClient* client, AvahiClientState state) {
    if (state == AVAHI_CLIENT_S_RUNNING)
        announce(client);
    else if (state != AVAHI_CLIENT_FAILURE && m_group)
        m_avahi.avahi_entry_group_reset(m_group);
}

void AvahiAnnouncement::announce(AvahiClient* client) {
    if (!m_group)
        m_group = m_avahi.avahi_entry_group_new(client, groupChanged, this);
    if (!m_group)
        return;
    m_avahi.avahi_entry_group_reset(m_group);
    int status = add();
    for (int i = 0; i < kMostNames && status == AVAHI_ERR_COLLISION; ++i) {
        takeOtherName();
        status = add();
    }
    if (status == AVAHI_OK)
        status = m_avahi.avahi_entry_group_commit(m_group);
    if (status != AVAHI_OK)
        Log::line("MIDI over the network is not announced: %s", m_avahi.avahi_strerror(status));
}

int AvahiAnnouncement::add() {
    return m_avahi.avahi_entry_group_add_service(
        m_group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, AvahiPublishFlags(0), m_name.c_str(),
        NetworkDirectory::kServiceType, nullptr, nullptr, m_port, static_cast<char*>(nullptr));
}

void AvahiAnnouncement::takeOtherName() {
    char* const other = m_avahi.avahi_alternative_service_name(m_name.c_str());
    m_name = other;
    m_avahi.avahi_free(other);
    m_renamed(m_name);
}

/// Called from within avahi_entry_group_new as well, when m_group is not set yet: never for a
/// collision.
void AvahiAnnouncement::groupChanged(AvahiEntryGroup* group, AvahiEntryGroupState state,
                                     void* self) {
    auto& announcement = *static_cast<AvahiAnnouncement*>(self);
    if (state != AVAHI_ENTRY_GROUP_COLLISION)
        return;
    announcement.takeOtherName();
    announcement.announce(announcement.m_avahi.avahi_entry_group_get_client(group));
}
