#include "log/Log.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>

#include "audiounits/RenderScope.h"

namespace {

constexpr std::size_t kKeptLines = 10000;
constexpr std::uint32_t kRenderSlots = 256;

struct Diary {
    std::mutex mutex;
    std::deque<std::string> lines;
    bool verbose = false;
};

// Never destroyed: a sound that loads in the background may log after main has returned.
Diary& diary() {
    static auto* const diary = new Diary;
    return *diary;
}

// Statuses said by renders: a slot is empty while it holds 0, so any thread may claim one.
std::array<std::atomic<std::int32_t>, kRenderSlots> renderSlots;
std::atomic<std::uint32_t> nextRenderSlot{0};
std::atomic<std::uint32_t> droppedStatuses{0};
std::atomic<std::uint32_t> renderStatuses{0};  // all of them, counted once they can be read

std::string formatted(const char* format, va_list arguments) {
    std::array<char, 2048> text;
    std::vsnprintf(text.data(), text.size(), format, arguments);
    return text.data();
}

void keep(std::string text) {
    Diary& d = diary();
    std::lock_guard guard(d.mutex);
    if (d.verbose)
        std::fprintf(stderr, "%s\n", text.c_str());
    d.lines.push_back(std::move(text));
    if (d.lines.size() > kKeptLines)
        d.lines.pop_front();
}

}  // namespace

void Log::line(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    keep(formatted(format, arguments));
    va_end(arguments);
}

void Log::status(std::int32_t status) noexcept {
    if (status == 0)
        return;
    if (!RenderScope::active()) {
        line("AU Error %d / %x", status, static_cast<unsigned>(status));
        return;
    }
    std::int32_t empty = 0;
    auto& slot = renderSlots[nextRenderSlot.fetch_add(1, std::memory_order_relaxed) % kRenderSlots];
    if (!slot.compare_exchange_strong(empty, status, std::memory_order_relaxed))
        droppedStatuses.fetch_add(1, std::memory_order_relaxed);
    renderStatuses.fetch_add(1, std::memory_order_release);
}

void Log::drain() {
    // Called after every buffer, which as a rule had nothing to say.
    static std::atomic<std::uint32_t> heard{0};
    const std::uint32_t said = renderStatuses.load(std::memory_order_acquire);
    if (heard.exchange(said, std::memory_order_relaxed) == said)
        return;
    for (auto& slot : renderSlots) {
        if (const std::int32_t status = slot.exchange(0, std::memory_order_relaxed))
            line("AU Error %d / %x", status, static_cast<unsigned>(status));
    }
    if (const std::uint32_t dropped = droppedStatuses.exchange(0, std::memory_order_relaxed))
        line("%u more errors while rendering", dropped);
}

void Log::setVerbose(bool verbose) {
    std::lock_guard guard(diary().mutex);
    diary().verbose = verbose;
}

std::vector<std::string> Log::lines() {
    std::lock_guard guard(diary().mutex);
    return {diary().lines.begin(), diary().lines.end()};
}

void Log::clear() {
    std::lock_guard guard(diary().mutex);
    diary().lines.clear();
}

void tellUser(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::fprintf(stderr, "ombrix: %s\n", formatted(format, arguments).c_str());
    va_end(arguments);
}

void stopProgram(const char* text, const char* function, const char* source, int line) {
    std::fprintf(stderr, "%s (%s, %s:%d)\n", text, function, source, line);
    std::abort();
}
