#include <cstdio>

#include "CommandFrame.h"
#include "Commands.h"
#include "LiveLoop.h"
#include "MidiMonitor.h"
#include "NetworkLines.h"
#include "Signals.h"
#include "runloop/Clock.h"
#include "text/UnicodeText.h"

namespace {

constexpr CommandText kText{
    "ombrix midi [--monitor] [--network] [--connect HOST[:PORT]] [--seconds S]",
    "Lists where MIDI comes from and where it can be sent, or shows what comes."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows{
        {"monitor", nullptr, "show each message that comes, until stopped"},
        {"network", nullptr, "let devices nearby connect over the network, and show what comes"},
        {"connect", "HOST[:PORT]", "invite a device over the network, and show what comes"},
        {"seconds", "S", "stop showing after S seconds"},
    };
    return rows;
}

// Until the servers have answered that are there; longer while nothing has.
constexpr double kListSeconds = 1.5;
constexpr double kLongestListSeconds = 3;

struct MidiRequest {
    bool monitor = false;
    bool network = false;
    std::string host;      // empty: none is invited
    double longest = 1e9;  // seconds

    /// Answers bad use as one line, else nothing.
    [[nodiscard]] std::string read(const Arguments& arguments);
};

std::string MidiRequest::read(const Arguments& arguments) {
    if (!arguments.words().empty())
        return "midi takes no " + arguments.words()[0];
    network = arguments.has("network");
    host = arguments.value("connect").value_or("");
    if (arguments.has("connect") && host.empty())
        return "--connect: name the host to invite";
    monitor = arguments.has("monitor") || network || !host.empty();
    if (const auto text = arguments.value("seconds")) {
        const auto seconds = decimalNumber(*text);
        if (!seconds || *seconds < 0)
            return "--seconds " + *text + ": a number from 0 on is wanted";
        if (!monitor)
            return "--seconds goes with --monitor, --network or --connect";
        longest = *seconds;
    }
    return "";
}

template <typename Connections>
void printList(const char* title, const Connections& connections) {
    std::printf("%s\n", title);
    for (const auto& connection : connections)
        std::printf("  %s%s\n", UnicodeText::withoutControls(connection->name()).c_str(),
                    connection->isNetworkSession() ? " (network)" : "");
    if (connections.empty())
        std::puts("  none");
}

int list(UserDefaults& defaults) {
    QrMidi hub(defaults);
    const double started = Clock::monotonic();
    while (!Signals::stopWanted() && Clock::monotonic() < started + kLongestListSeconds &&
           (hub.numberOfConnections() == 0 || Clock::monotonic() < started + kListSeconds)) {
        LiveLoop::turn();
        LiveLoop::sleepUntil(started + kLongestListSeconds);
    }
    printList("Sources", hub.sources());
    printList("Destinations", hub.destinations());
    return kExitDone;
}

/// One line if the host was not understood, else nothing.
std::string openNetwork(const MidiRequest& request) {
    using Policy = MIDINetworkSession::ConnectionPolicy;
    MIDINetworkSession& session = MIDINetworkSession::defaultSession();
    session.setConnectionPolicy(request.network ? Policy::anyone : Policy::noOne);
    session.setEnabled(request.network || !request.host.empty());
    return request.host.empty() ? "" : session.connect(request.host);
}

int monitor(const CommandFrame& frame, UserDefaults& defaults, const MidiRequest& request) {
    MidiMonitor monitor(defaults);
    if (const std::string error = openNetwork(request); !error.empty())
        return frame.refuse(error);
    NetworkLines network(
        [&](const std::string& who, const std::string& what) { monitor.say(who, what); });
    const double end = Clock::monotonic() + request.longest;
    const bool onlyInvites = !request.network && !frame.arguments().has("monitor");
    while (!Signals::stopWanted() && Clock::monotonic() < end) {
        LiveLoop::turn();
        monitor.print();
        network.look();
        if (onlyInvites && !network.problem().empty())
            return kExitFailed;
        LiveLoop::sleepUntil(end);
    }
    return kExitDone;
}

}  // namespace

int midiCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, options());
    if (frame.exitCode())
        return *frame.exitCode();
    MidiRequest request;
    if (const std::string error = request.read(frame.arguments()); !error.empty())
        return frame.refuse(error);
    Signals::listen();
    UserDefaults defaults;
    return request.monitor ? monitor(frame, defaults, request) : list(defaults);
}
