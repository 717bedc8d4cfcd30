#include <gtest/gtest.h>

#include <algorithm>
#include <future>

#include "InstrumentWindow.h"
#include "RawPeer.h"
#include "audiounits/devices/AudioDevices.h"

// Somebody asks over a real socket while a key is held, and is let in by another finger.
TEST(RequestBarTest, whoAsksIsLetInWhileAKeyIsHeld) {
    std::string error;
    ASSERT_TRUE(AudioDevices::choose("clock", error)) << error;
    InstrumentWindow instrument;
    OmbrixViewController& controller = instrument.controller();
    NetworkSetup& network = *controller.midi()->network();
    const auto isPlayed = [&] {
        return std::ranges::any_of(controller.instrument().notes().triggeredNoteUnits(),
                                   [](int unit) { return unit >= 0; });
    };
    network.chooseMode("ask");
    ASSERT_TRUE(instrument.comesTo([&] { return !network.place().isEmpty(); })) << "it is open";
    instrument.fingers().press(1, instrument.placeOf(instrument.item("keyboard"), 0.5, 0.85));
    EXPECT_FALSE(instrument.has("requestAllowButton"));

    RawPeer peer;
    const std::uint16_t port = MIDINetworkSession::defaultSession().port();
    auto joined = std::async(std::launch::async, [&] { return peer.join(port, "<b>Ada</b> %1"); });
    ASSERT_TRUE(instrument.comesTo([&] { return instrument.has("requestAllowButton"); }));
    EXPECT_TRUE(network.question().contains("<b>Ada</b> %1"));
    const QPoint allow = instrument.placeOf(instrument.item("requestAllowButton"));
    instrument.fingers().press(2, allow);
    instrument.fingers().release(2);
    EXPECT_TRUE(instrument.comesTo([&] { return network.lamp() == NetworkSetup::Lamp::playing; }));
    EXPECT_TRUE(joined.get());
    EXPECT_FALSE(instrument.has("requestAllowButton"));
    EXPECT_TRUE(isPlayed()) << "the key was held all the time";

    network.disconnectFrom(network.connections().value(0).value<NetworkPeer>().id);
    EXPECT_TRUE(instrument.comesTo([&] { return network.lamp() == NetworkSetup::Lamp::waiting; }));
    instrument.fingers().release(1);
    EXPECT_FALSE(isPlayed());
}
