#include "midi/network/AvahiBrowse.h"

#include <algorithm>

#include "midi/network/HostAddress.h"
#include "midi/network/NetworkDirectory.h"
#include "midi/network/PlainName.h"

namespace {

NetworkAddress addressOf(const AvahiAddress& address, AvahiIfIndex interface, std::uint16_t port) {
    sockaddr_storage place{};
    if (address.proto == AVAHI_PROTO_INET) {
        auto& four = reinterpret_cast<sockaddr_in&>(place);
        four.sin_family = AF_INET;
        four.sin_addr.s_addr = address.data.ipv4.address;
    } else {
        auto& six = reinterpret_cast<sockaddr_in6&>(place);
        six.sin6_family = AF_INET6;
        six.sin6_scope_id = static_cast<std::uint32_t>(std::max(interface, 0));
        std::ranges::copy(address.data.ipv6.address, six.sin6_addr.s6_addr);
    }
    return HostAddress::fromSocket(reinterpret_cast<const sockaddr*>(&place))->at(port);
}

}  // namespace

AvahiBrowse::AvahiBrowse(const AvahiLibrary& avahi,
                         std::function<void(NetworkBoard::Peers)> changed)
    : m_avahi(avahi), m_changed(std::move(changed)) {}

bool AvahiBrowse::start(AvahiClient* client) {
    m_client = client;
    return m_avahi.avahi_service_browser_new(client, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                             NetworkDirectory::kServiceType, nullptr,
                                             AvahiLookupFlags(0), browsed, this) != nullptr;
}

void AvahiBrowse::forgetClient() {
    m_client = nullptr;
    m_places.clear();
    tell();
}

void AvahiBrowse::browsed(AvahiServiceBrowser*, AvahiIfIndex interface, AvahiProtocol protocol,
                          AvahiBrowserEvent event, const char* name, const char* type,
                          const char* domain, AvahiLookupResultFlags flags, void* self) {
    auto& browse = *static_cast<AvahiBrowse*>(self);
    if (event == AVAHI_BROWSER_REMOVE && browse.m_places.erase({name, interface, protocol}) > 0)
        browse.tell();
    if (event == AVAHI_BROWSER_NEW && !(flags & AVAHI_LOOKUP_RESULT_OUR_OWN) &&
        browse.m_places.size() < kMostPlaces)
        browse.m_avahi.avahi_service_resolver_new(browse.m_client, interface, protocol, name, type,
                                                  domain, protocol, AvahiLookupFlags(0), resolved,
                                                  self);
}

void AvahiBrowse::resolved(AvahiServiceResolver* resolver, AvahiIfIndex interface,
                           AvahiProtocol protocol, AvahiResolverEvent event, const char* name,
                           const char*, const char*, const char*, const AvahiAddress* address,
                           std::uint16_t port, AvahiStringList*, AvahiLookupResultFlags flags,
                           void* self) {
    auto& browse = *static_cast<AvahiBrowse*>(self);
    if (event == AVAHI_RESOLVER_FOUND && address && port != 0 &&
        !(flags & AVAHI_LOOKUP_RESULT_OUR_OWN)) {
        browse.m_places[{name, interface, protocol}] = addressOf(*address, interface, port);
        browse.tell();
    }
    browse.m_avahi.avahi_service_resolver_free(resolver);
}

/// Of the places of one name an IPv4 one is shown, if there is any.
void AvahiBrowse::tell() const {
    NetworkBoard::Peers peers;
    bool four = false;
    for (const auto& [place, address] : m_places) {
        const std::string name = plainName(std::get<0>(place));
        const bool again = !peers.empty() && peers.back().name == name;
        if (!again)
            peers.push_back({0, name, HostAddress::text(address)});
        else if (!four && HostAddress::isIPv4(address))
            peers.back().address = HostAddress::text(address);
        four = HostAddress::isIPv4(address) || (again && four);
    }
    m_changed(std::move(peers));
}
