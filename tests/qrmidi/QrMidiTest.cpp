#include "QrMidi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "HandMadeMidi.h"
#include "QrMidiAllSources.h"
#include "ScratchFolder.h"
#include "log/Log.h"
#include "notifications/NotificationCentre.h"
#include "runloop/Clock.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A hub over ports that are plugged by hand, on a clock that is turned by hand. Keeps what the
/// delegate, observers and listeners were told, in one list.
class QrMidiTest : public testing::Test,
                   TimeSource,
                   protected QrMidiDelegate,
                   protected QrMidiSourceDelegate {
  protected:
    QrMidiTest() {
        Clock::setSource(this);
        MidiBackends::use({[this] { return m_ports; }});
        for (const char* name : {kQrMidiSourceAdded, kQrMidiSourceRemoved, kQrMidiDestinationAdded,
                                 kQrMidiDestinationRemoved})
            m_observers.push_back(NotificationCentre::defaultCentre().addObserver(
                name, [this](const Notice& notice) { noticed(notice); }));
        begin();
    }
    ~QrMidiTest() override {
        for (const auto token : m_observers)
            NotificationCentre::defaultCentre().removeObserver(token);
        m_hub.reset();
        Clock::setSource(nullptr);
    }
    double now() noexcept override { return m_now; }

    void begin() {
        m_hub = std::make_unique<QrMidi>(m_defaults);
        m_hub->setDelegate(this);
    }
    std::vector<std::string> turn(double seconds = 0) {
        m_now += seconds;
        RunLoop::main().turn();
        return std::exchange(m_told, {});
    }
    void noticed(const Notice& notice) {
        EXPECT_EQ(notice.object, m_hub.get());
        EXPECT_EQ(notice.infoKey, "connection");
        const std::string name(notice.name.substr(6, notice.name.size() - 6 - 12));
        m_told.push_back(name + " " + static_cast<QrMidiConnection*>(notice.info)->name());
    }
    void sourceAdded(QrMidi& midi, QrMidiSource& source) override {
        EXPECT_EQ(midi.getSource(source.endpoint()), &source);
        m_told.push_back("+" + source.name());
        source.addDelegate(*this);
    }
    void sourceRemoved(QrMidi& midi, QrMidiSource& source) override {
        EXPECT_EQ(midi.getSource(source.endpoint()), nullptr);
        m_told.push_back("-" + source.name());
    }
    void destinationAdded(QrMidi&, QrMidiDestination& destination) override {
        m_told.push_back("+" + destination.name());
    }
    void destinationRemoved(QrMidi&, QrMidiDestination& destination) override {
        m_told.push_back("-" + destination.name());
    }
    void midiReceived(QrMidiSource& source, const MIDIPacketList& list) override {
        m_told.push_back(source.name() + " plays " + std::to_string(list.packet[0].data[1]));
    }
    std::vector<std::string> takeLog() {
        auto lines = Log::lines();
        Log::clear();
        return lines;
    }

    ScratchFolder m_folder;
    UserDefaults m_defaults{m_folder.file("defaults")};
    std::shared_ptr<HandMadeMidi> m_ports = std::make_shared<HandMadeMidi>();
    std::unique_ptr<QrMidi> m_hub;
    std::vector<NotificationCentre::Token> m_observers;
    std::vector<std::string> m_told;
    double m_now = 100;
};

}  // namespace

TEST_F(QrMidiTest, whatIsPluggedPlaysAtOnceAndWhatIsPulledIsGone) {
    Log::clear();
    m_ports->plug("keys");
    m_ports->plug("synth", false);
    EXPECT_THAT(m_told, IsEmpty()) << "notices are for the main run loop";
    EXPECT_THAT(turn(),
                ElementsAre("+keys", "SourceAdded keys", "+synth", "DestinationAdded synth"));
    EXPECT_EQ(m_hub->numberOfConnections(), 2u);
    m_ports->play("keys", {0x90, 61, 1});
    EXPECT_THAT(turn(), ElementsAre("keys plays 61"));
    m_ports->pull("keys");
    m_ports->pull("synth");
    EXPECT_THAT(turn(),
                ElementsAre("-keys", "SourceRemoved keys", "-synth", "DestinationRemoved synth"));
    EXPECT_EQ(m_ports->lanes(), 0u);
    m_ports->plug("keys");
    EXPECT_THAT(turn(), ElementsAre("+keys", "SourceAdded keys"));
    m_ports->play("keys", {0x90, 62, 1});
    EXPECT_THAT(turn(), ElementsAre("keys plays 62"))
        << "a source that returns is connected afresh";
    m_ports->plug("net", true, true);
    m_ports->plug("");
    turn();
    EXPECT_TRUE(m_hub->sources()[1]->isNetworkSession());
    EXPECT_FALSE(m_hub->sources()[0]->isNetworkSession());
    EXPECT_EQ(m_hub->sources()[2]->name(), "Unknown name");
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(QrMidiTest, aLookEverySecondFindsWhatNoNoticeTold) {
    m_ports->plug("keys");
    m_ports->plug("pad");
    turn();
    const MIDIEndpointRef pad = m_hub->sources()[1]->endpoint();
    m_hub->disconnectSource(pad);
    m_told.clear();
    EXPECT_THAT(turn(0.9), IsEmpty());
    EXPECT_THAT(turn(0.2), ElementsAre("+pad", "SourceAdded pad"));
    m_hub->stopScanning();
    m_hub->disconnectSource(pad);
    m_told.clear();
    EXPECT_THAT(turn(5), IsEmpty());
    m_hub->scanExistingDevices();
    m_told.clear();
    // A look that comes before the notice: no source is connected twice.
    m_ports->plug("late");
    m_hub->scanExistingDevices();
    EXPECT_THAT(turn(), ElementsAre("+late", "SourceAdded late"));
    m_ports->play("late", {0x90, 9, 1});
    EXPECT_THAT(turn(), ElementsAre("late plays 9"));
    m_ports->pull("late");
    m_hub->scanExistingDevices();
    EXPECT_THAT(turn(), ElementsAre("-late", "SourceRemoved late"));
    // What has come and gone before anyone was told is not spoken of.
    m_ports->plug("ghost");
    m_ports->pull("ghost");
    EXPECT_THAT(turn(), IsEmpty());
}

TEST_F(QrMidiTest, ourOwnEndpointsStandApartAndKeepTheirIdentity) {
    m_hub->setVirtualDestinationEnabled(true);
    m_hub->setVirtualEndpointName("Out");
    m_hub->setVirtualSourceEnabled(true);
    EXPECT_THAT(turn(2), ElementsAre("SourceAdded Ombrix Synth", "DestinationAdded Out"))
        << "the delegate is not told, now or by a look";
    EXPECT_EQ(m_hub->numberOfConnections(), 0u);
    m_hub->virtualDestinationSource()->addDelegate(*this);
    m_ports->play("Ombrix Synth", {0x90, 33, 1});
    EXPECT_THAT(turn(), ElementsAre("Ombrix Synth plays 33"));
    m_hub->virtualSourceDestination()->sendBytes(std::vector<std::uint8_t>(5));
    EXPECT_THAT(m_ports->takeSent(), ElementsAre("Out 5"));

    const auto id = m_defaults.integer("QRMIDI Saved Virtual Destination ID");
    ASSERT_TRUE(id);
    m_hub.reset();
    EXPECT_TRUE(m_ports->stopped());
    // The saved id is given again, whatever name the endpoint has; one that is taken is replaced.
    const auto idAfter = [&](std::int64_t saved, const std::string& source) {
        m_defaults.set("QRMIDI Saved Virtual Destination ID", saved);
        begin();
        if (!source.empty())
            m_ports->plug(source);
        m_hub->setVirtualEndpointName("Other");
        m_hub->setVirtualDestinationEnabled(true);
        std::int32_t given = 0;
        MIDIObjectGetIntegerProperty(m_hub->virtualDestinationEndpoint(), kMIDIPropertyUniqueID,
                                     given);
        EXPECT_EQ(m_defaults.integer("QRMIDI Saved Virtual Destination ID"), given);
        return given;
    };
    EXPECT_EQ(idAfter(*id, ""), *id);
    m_hub.reset();
    begin();
    m_ports->plug("rival");
    std::int32_t rival = 0;
    MIDIObjectGetIntegerProperty(MIDIGetSource(0), kMIDIPropertyUniqueID, rival);
    m_hub.reset();
    const std::int32_t other = idAfter(rival, "");
    EXPECT_NE(other, rival);
    EXPECT_NE(other, 0);
    turn();
    m_hub->setVirtualDestinationEnabled(false);
    EXPECT_THAT(turn(), ElementsAre("SourceRemoved Other"));
}

TEST_F(QrMidiTest, sendingReachesEveryDestinationAndFailuresAreToldAndPassed) {
    m_ports->plug("broken", false);
    m_ports->plug("whole", false);
    turn();
    Log::clear();
    m_hub->sendBytes(std::vector<std::uint8_t>(65535));
    EXPECT_THAT(m_ports->takeSent(), ElementsAre("broken 65535", "whole 65535"));
    const std::string failure =
        "Error (Sending MIDI): -10838:Error Domain=NSMachErrorDomain Code=-10838";
    EXPECT_THAT(takeLog(), ElementsAre("sendBytes(65535 bytes to core MIDI)", failure));
    m_hub->destinations()[1]->sendBytes(std::vector<std::uint8_t>(3));
    m_hub->destinations()[1]->flushOutput();
    EXPECT_THAT(m_ports->takeSent(), ElementsAre("whole 3", "whole flush"));
    m_hub->connectSource(4711);
    m_hub->disconnectSource(4711);
    EXPECT_THAT(takeLog(),
                ElementsAre(testing::HasSubstr("Error (Connecting to MIDI source): -10834:"),
                            testing::HasSubstr("Error (Disconnecting from MIDI source): -10834:")));
    EXPECT_DEATH(m_hub->sendBytes(std::vector<std::uint8_t>(65536)), "size < 65536");
}

TEST_F(QrMidiTest, allSourcesListenToThoseThatThereAreAndLeaveTheHubBefore) {
    m_ports->plug("keys");
    turn();
    m_hub->sources()[0]->removeDelegate(*this);
    QrMidiAllSources all;
    all.setDelegate(this);
    all.setMidi(m_hub.get());
    EXPECT_TRUE(m_hub->delegate() == this);
    m_hub->setDelegate(&all);
    m_ports->plug("pad");
    turn();
    m_ports->play("keys", {0x90, 1, 1});
    m_ports->play("pad", {0x90, 2, 1});
    EXPECT_THAT(turn(), ElementsAre("keys plays 1", "pad plays 2"));
    all.setMidi(nullptr);
    EXPECT_EQ(m_hub->delegate(), nullptr);
    m_ports->play("keys", {0x90, 1, 1});
    EXPECT_THAT(turn(), IsEmpty());
}

/// Under the thread sanitizer: the MIDI thread plays while listeners and whole sources come and go.
TEST_F(QrMidiTest, listenersComeAndGoWhileTheMidiThreadPlays) {
    struct Counter final : QrMidiSourceDelegate {
        void midiReceived(QrMidiSource&, const MIDIPacketList&) override { ++heard; }
        int heard = 0;  // plain: nobody may tell a listener that was removed
    };
    m_hub->setDelegate(nullptr);
    m_ports->plug("keys");
    turn();
    QrMidiSource& keys = *m_hub->sources()[0];
    std::atomic<bool> done{false};
    std::atomic<int> rounds{0};
    std::thread midi([&] {
        for (; !done; ++rounds)
            m_ports->play("keys", {0x90, 1, 1});
    });
    Counter steady;
    keys.addDelegate(steady);
    for (int i = 0; i < 2000; ++i) {
        auto counter = std::make_unique<Counter>();
        keys.addDelegate(*counter);
        keys.addDelegate(*counter);
        keys.removeDelegate(*counter);
    }
    for (const int before = rounds; rounds < before + 10;)
        std::this_thread::yield();
    // From here on the source is not read, though the thread goes on playing.
    MIDIPortDisconnectSource(m_hub->inputPort(), keys.endpoint());
    const int heard = steady.heard;
    EXPECT_GT(heard, 0);
    for (const int before = rounds; rounds < before + 10;)
        std::this_thread::yield();
    EXPECT_EQ(steady.heard, heard);
    done = true;
    midi.join();
}
