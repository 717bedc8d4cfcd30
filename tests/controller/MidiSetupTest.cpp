#include "screens/MidiSetup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "midi/network/NetworkBoard.h"
#include "screens/AudioOption.h"
#include "screens/OmbrixViewController.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Kind = NetworkBoard::Order::Kind;

QString chosen(const QVariantList& options) {
    for (const QVariant& option : options) {
        if (option.value<AudioOption>().chosen)
            return option.value<AudioOption>().title;
    }
    return "nothing";
}

/// A session that nothing serves but the test.
class NetworkSetupTest : public testing::Test {
  protected:
    using State = NetworkBoard::State;

    void happens(const std::function<void(State&)>& how) {
        m_session.board()->change(how);
        RunLoop::main().turn();
    }
    static void answers(const NetworkBoard::Order& order, std::uint32_t request, bool allowed) {
        EXPECT_EQ(order.kind, Kind::answer);
        EXPECT_EQ(order.peer, request);
        EXPECT_EQ(order.allowed, allowed);
    }

    ScratchFolder m_folder;
    UserDefaults m_defaults{m_folder.file("defaults")};
    QrMidi m_hub{m_defaults};
    MIDINetworkSession m_session{std::make_shared<NetworkBoard>("here")};
    NetworkSetup m_network{m_hub, m_defaults, m_session};
};

/// The instrument without its window.
class ControllerSetupTest : public testing::Test {
  protected:
    ControllerSetupTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        setenv("XDG_CONFIG_HOME", m_folder.file("config").c_str(), 1);
        AudioDevices::use(std::make_shared<ManualDevice>());
        start();
    }
    void start() {
        m_controller.reset();
        m_controller = std::make_unique<OmbrixViewController>();
        m_controller->viewDidLoad();
    }
    ControllerSetup& setup() { return *m_controller->midi()->controllers(); }
    ScratchFolder m_folder;
    std::unique_ptr<OmbrixViewController> m_controller;
};

}  // namespace

TEST_F(NetworkSetupTest, theModeIsUsedAtOnceAndAtTheNextStart) {
    using Policy = MIDINetworkSession::ConnectionPolicy;
    auto& system = MIDINetworkSession::defaultSession();
    const auto isUsed = [&](bool enabled, Policy policy) {
        return m_hub.networkEnabled() == enabled && system.connectionPolicy() == policy;
    };
    EXPECT_TRUE(isUsed(true, Policy::anyone));
    const struct {
        const char* name;
        bool enabled;
        Policy policy;
        const char* title;
    } rows[] = {{"ask", true, Policy::hostsInContactsList, "Ask"},
                {"off", false, Policy::anyone, "Off"},
                {"nearby", true, Policy::anyone, "Nearby"}};
    for (const auto& [name, enabled, policy, title] : rows) {
        m_network.chooseMode(name);
        EXPECT_EQ(chosen(m_network.modes()), title);
        EXPECT_TRUE(isUsed(enabled, policy)) << name;
        system.setEnabled(!enabled);
        EXPECT_EQ(chosen(NetworkSetup(m_hub, m_defaults).modes()), title);
        EXPECT_TRUE(isUsed(enabled, policy)) << name;
    }
    m_defaults.set("midi-network", std::string("everywhere"));
    EXPECT_EQ(keptNetworkMode(m_defaults), NetworkMode::nearby);
}

TEST_F(NetworkSetupTest, whoAsksIsAskedAboutInTurnAndInPlainText) {
    happens([](State& state) {
        state.requests = {{7, "<b>Evil</b> %2\u202e\n", "10.0.0.7:5004"}, {8, "", "10.0.0.8:5004"}};
    });
    EXPECT_EQ(m_network.question(),
              "Let \u201c<b>Evil</b> %2\u201d (10.0.0.7:5004) play over the network?");
    m_network.answerFirst(true);
    happens([](State& state) { state.requests.erase(state.requests.begin()); });
    EXPECT_THAT(m_network.question().toStdString(), HasSubstr("\u201c10.0.0.8:5004\u201d"));
    m_network.answerFirst(false);
    happens([](State& state) { state.requests.clear(); });
    EXPECT_EQ(m_network.question(), "");
    m_network.answerFirst(true);
    const auto orders = m_session.board()->takeOrders();
    ASSERT_EQ(orders.size(), 2u) << "nobody is left to answer";
    answers(orders[0], 7, true);
    answers(orders[1], 8, false);

    happens([](State& state) { state.requests = {{9, "Late", "10.0.0.9:5004"}}; });
    m_network.chooseMode("nearby");
    const auto welcome = m_session.board()->takeOrders();
    ASSERT_EQ(welcome.size(), 1u);
    answers(welcome[0], 9, true);
}

TEST_F(NetworkSetupTest, lampAndWordsFollowTheSession) {
    using Lamp = NetworkSetup::Lamp;
    EXPECT_EQ(m_network.lamp(), Lamp::off);
    m_session.setEnabled(true);
    happens([](State& state) { state.problem = "Port 5004 is taken."; });
    EXPECT_EQ(m_network.lamp(), Lamp::problem);
    EXPECT_EQ(m_network.problem(), "Port 5004 is taken.");
    EXPECT_EQ(m_network.place(), "");
    happens([](State& state) {
        state.problem.clear();
        state.port = 5004;
    });
    EXPECT_EQ(m_network.lamp(), Lamp::waiting);
    EXPECT_EQ(m_network.place(), "Others see \u201chere\u201d, port 5004.");
    happens([](State& state) { state.connections = {{3, "Tablet", "10.0.0.3:5004"}}; });
    EXPECT_EQ(m_network.lamp(), Lamp::playing);
    EXPECT_EQ(m_network.state(), "Tablet takes part");
    m_network.disconnectFrom(3);
    m_network.connectTo("10.0.0.4:5006");
    const auto orders = m_session.board()->takeOrders();
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_EQ(orders[0].kind, Kind::disconnect);
    EXPECT_EQ(orders[0].peer, 3u);
    EXPECT_EQ(orders[1].kind, Kind::connect);
    EXPECT_FALSE(m_network.connectTo("no address:"));
    EXPECT_THAT(m_network.problem().toStdString(), HasSubstr("no address:"));
    EXPECT_TRUE(m_network.connectTo("10.0.0.4"));
    EXPECT_EQ(m_network.problem(), "");
}

TEST_F(ControllerSetupTest, choicesAreUsedAndKept) {
    for (const bool enabled : {false, true}) {
        EXPECT_EQ(setup().enabled(), enabled);
        for (const DialState* dial : m_controller->dials()->all())
            EXPECT_EQ(dial->learnable(), enabled) << qPrintable(dial->key());
        setup().setEnabled(true);
    }
    setup().chooseChannel("16");
    setup().chooseCurve(QString::number(int(VelocityCurve::hard)));
    setup().chooseBendRange("24");
    setup().chooseWheelDial("filterResonance");
    start();
    const MidiControlSettings& settings = m_controller->midiControls().settings();
    EXPECT_EQ(settings.channel, 16);
    EXPECT_EQ(settings.curve, VelocityCurve::hard);
    EXPECT_EQ(settings.bendSemitones, 24);
    EXPECT_EQ(settings.modulation, ParameterId::filterResonance);
    EXPECT_EQ(chosen(setup().channels()), "16");
    EXPECT_EQ(chosen(setup().bendRanges()), "24 semitones");
    EXPECT_EQ(chosen(setup().wheelDials()), "Resonance");
    setup().chooseWheelDial("");
    EXPECT_EQ(chosen(setup().wheelDials()), "None");
}
