#include "midi/network/AttachedSubnets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "midi/network/HostAddress.h"

namespace {

NetworkAddress at(const std::string& text) {
    return HostAddress::read(*HostAddress::takenApart(text)).value();
}

TEST(AttachedSubnetsTest, aHostIsNearIfItSharesEveryBitOfThePrefix) {
    const Subnet home{at("192.168.4.7"), 96 + 22}, line{at("10.0.0.2"), 128};
    EXPECT_TRUE(home.contains(at("192.168.7.255")));
    EXPECT_FALSE(home.contains(at("192.168.8.0")));
    EXPECT_FALSE(home.contains(at("193.168.4.7")));
    EXPECT_TRUE(line.contains(at("10.0.0.2")));
    EXPECT_FALSE(line.contains(at("10.0.0.3")));
    Subnet link{at("fe80::1"), 64};
    link.address.scope = 2;
    NetworkAddress other = at("fe80::2");
    other.scope = 2;
    EXPECT_TRUE(link.contains(other));
    other.scope = 3;
    EXPECT_FALSE(link.contains(other)) << "the same number on another cable is another host";
}

TEST(AttachedSubnetsTest, thisMachineIsNearAndTheInternetIsNot) {
    AttachedSubnets near;
    EXPECT_TRUE(near.contains(at("127.0.0.1"), 0));
    EXPECT_TRUE(near.contains(at("127.9.9.9"), 0));
    // For documents only; a machine in a laboratory may well have one of them.
    EXPECT_FALSE(near.contains(at("192.0.2.1"), 0) && near.contains(at("198.51.100.1"), 0) &&
                 near.contains(at("203.0.113.1"), 0));
    EXPECT_FALSE(near.contains(at("2001:db8::1"), 0));
}

TEST(HostAddressTest, readsWhatPlayersWrite) {
    EXPECT_EQ(HostAddress::text(at("192.168.1.7")), "192.168.1.7:5004");
    EXPECT_EQ(HostAddress::text(at("192.168.1.7:6000")), "192.168.1.7:6000");
    EXPECT_EQ(HostAddress::text(at("2001:db8::1")), "[2001:db8::1]:5004");
    EXPECT_EQ(HostAddress::text(at("[2001:db8::1]:6000")), "[2001:db8::1]:6000");
    EXPECT_EQ(HostAddress::text(at("[fe80::1%lo]:6000")), "[fe80::1%lo]:6000");
    for (const char* wrong : {"", ":5004", "a b", "host:", "host:0", "host:65536", "host:5x",
                              "[::1", "[]:5", "[::1]5004"})
        EXPECT_FALSE(HostAddress::takenApart(wrong)) << wrong;
}

}  // namespace
