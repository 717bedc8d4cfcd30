#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>

#include "midi/network/AvahiLibrary.h"
#include "midi/network/NetworkBoard.h"

/// The services of other sessions nearby. On the thread of the client's poll.
class AvahiBrowse {
  public:
    /// `changed` is told all of them, in the order of their names, after each change.
    AvahiBrowse(const AvahiLibrary& avahi, std::function<void(NetworkBoard::Peers)> changed);

    /// Begins to look. False if that could not be.
    bool start(AvahiClient* client);
    /// Before the client is freed, which frees what looks; forgets all services.
    void forgetClient();

  private:
    /// A service may be there on several interfaces, by IPv4 and by IPv6.
    using Place = std::tuple<std::string, AvahiIfIndex, AvahiProtocol>;
    static constexpr std::size_t kMostPlaces = 256;

    static void browsed(AvahiServiceBrowser* browser, AvahiIfIndex interface,
                        AvahiProtocol protocol, AvahiBrowserEvent event, const char* name,
                        const char* type, const char* domain, AvahiLookupResultFlags flags,
                        void* self);
    static void resolved(AvahiServiceResolver* resolver, AvahiIfIndex interface,
                         AvahiProtocol protocol, AvahiResolverEvent event, const char* name,
                         const char* type, const char* domain, const char* host,
                         const AvahiAddress* address, std::uint16_t port, AvahiStringList* text,
                         AvahiLookupResultFlags flags, void* self);
    void tell() const;

    const AvahiLibrary& m_avahi;
    const std::function<void(NetworkBoard::Peers)> m_changed;
    AvahiClient* m_client = nullptr;
    std::map<Place, NetworkAddress> m_places;
};
