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

/// What the messages since the checkpoint have told.
struct Told {
    ChannelNotes told{}, on{};

    void follow(std::span<const std::uint8_t> message) {
        const std::size_t channel = message[0] & 15;
        const int kind = message[0] >> 4;
        if (kind == 8 || kind == 9) {
            told[channel].set(message[1]);
            on[channel][message[1]] = kind == 9 && message[2] != 0;
        } else if (kind == 11 && (message[1] == 120 || message[1] >= 123)) {
            on[channel].reset();
        }
    }
};

void compare(const JournalWriter& writer, std::uint32_t packet, const Told& told) {
    std::vector<std::uint8_t> bytes;
    writer.write(bytes, packet);
    check(bytes.size() <= JournalWriter::kMostBytes);
    RecoveryJournal journal;
    check(journal.read(bytes));
    std::size_t notes = 0;
    for (std::size_t channel = 0; channel < 16; ++channel)
        notes += told.on[channel].count();
    for (std::size_t channel = 0; channel < 16; ++channel) {
        check(journal.off[channel] == (told.told[channel] & ~told.on[channel]));
        check(notes < 250 ? journal.on[channel] == told.on[channel]
                          : (journal.on[channel] & ~told.on[channel]).none());
    }
}

/// Each message is a packet of its own. A tune request stands for the receiver's feedback.
void writeAndRead(std::span<const std::uint8_t> messages) {
    std::uint32_t packet = 0xFFFA;
    JournalWriter writer(packet);
    Told told;
    for (auto message = takeMidiMessage(messages); !message.empty();
         message = takeMidiMessage(messages)) {
        told.follow(message);
        writer.follow(message, packet++);
        if (message[0] == 0xF6) {
            compare(writer, packet, told);
            writer.forgetThrough(packet - 1);
            told = {};
        }
    }
    compare(writer, packet, told);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    readAnything({data, size});
    writeAndRead({data, size});
    return 0;
}
