// Any bytes as a recovery journal; and any messages as what a journal is written of, which then
// reads as it was meant.
#include <cstdlib>
#include <vector>

#include "midi/network/JournalWriter.h"
#include "midi/network/MidiMessageSplitter.h"
#include "midi/network/RecoveryJournal.h"

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void readAnything(std::span<const std::uint8_t> bytes) {
    RecoveryJournal journal;
    journal.read(bytes);
    for (std::size_t channel = 0; channel < 16; ++channel) {
        check((journal.on[channel] & journal.off[channel]).none());
        check((journal.playable[channel] & ~journal.on[channel]).none());
        for (std::size_t note = 0; note < 128; ++note)
            check(journal.on[channel][note] == (journal.velocity[channel][note] != 0) &&
                  journal.velocity[channel][note] < 128);
    }
}

/// Each message is a packet of its own; the receiver's state is rebuilt from each journal.
void writeAndRead(std::span<const std::uint8_t> messages) {
    std::uint32_t packet = 0xFFFA;
    JournalWriter writer(packet);
    ChannelNotes told{}, on{};
    while (true) {
        const auto message = takeMidiMessage(messages);
        std::vector<std::uint8_t> bytes;
        writer.write(bytes, packet);
        check(bytes.size() <= JournalWriter::kMostBytes);
        RecoveryJournal journal;
        check(journal.read(bytes));
        std::size_t notes = 0;
        for (std::size_t channel = 0; channel < 16; ++channel) {
            check(journal.off[channel] == (told[channel] & ~on[channel]));
            check((journal.on[channel] & ~on[channel]).none());
            notes += on[channel].count();
        }
        for (std::size_t channel = 0; notes < 250 && channel < 16; ++channel)
            check(journal.on[channel] == on[channel]);
        if (message.empty())
            return;
        const std::size_t channel = message[0] & 15;
        const int kind = message[0] >> 4;
        if (kind == 8 || kind == 9) {
            told[channel].set(message[1]);
            on[channel][message[1]] = kind == 9 && message[2] != 0;
        } else if (kind == 11 && (message[1] == 120 || message[1] >= 123)) {
            on[channel].reset();
        }
        writer.follow(message, packet);
        if (message[0] == 0xF6) {  // the receiver has heard it all
            writer.forgetThrough(packet);
            told = on = {};
        }
        ++packet;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readAnything({data, size});
    writeAndRead({data, size});
    return 0;
}
