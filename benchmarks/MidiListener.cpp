#include "MidiListener.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

using namespace std::chrono_literals;

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](timeval time) {
        return double(time.tv_sec) + double(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

long residentKilobytes() {
    std::ifstream status("/proc/self/statm");
    long pages = 0;
    status >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

void NoteTimes::print(const char* what) {
    if (m_milliseconds.empty())
        return;
    std::ranges::sort(m_milliseconds);
    const auto at = [&](double share) {
        return m_milliseconds[std::size_t(share * double(m_milliseconds.size() - 1))];
    };
    std::printf("%zu notes: %s %.2f ms median, %.2f ms 99.9 %%, %.2f ms most\n",
                m_milliseconds.size(), what, at(0.5), at(0.999), at(1));
}

MidiListener::MidiListener(NotesDelegate& delegate) {
    for (unsigned i = 0; i < kVoiceCount; ++i) {
        m_voices.voiceSynths[i] = std::make_unique<GrainSynthesiser>(nullptr);
        m_voices.voiceEnvelopes[i] = std::make_unique<ADSRShaper>();
    }
    m_notes.addDelegate(delegate);
    m_midi.setNotes(&m_notes);
    RunLoop::main().setWaker([this] {
        {
            std::lock_guard guard(m_mutex);
            m_woken = true;
        }
        m_added.notify_one();
    });
}

long MidiListener::notesLeft() const {
    return std::ranges::count_if(m_notes.triggeredNoteUnits(), [](auto unit) { return unit >= 0; });
}

void MidiListener::turn() {
    RunLoop::main().turn();
    std::unique_lock held(m_mutex);
    m_added.wait_for(held, 100ms, [this] { return m_woken; });
    m_woken = false;
}

void MidiListener::turnFor(double seconds) {
    const auto begin = Steady::now();
    turnUntil([&] { return Steady::now() - begin > std::chrono::duration<double>(seconds); });
}
