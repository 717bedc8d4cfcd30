#include "RenderWatch.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "RenderWatchRecord.h"
#include "SystemCallTrap.h"
#include "audiounits/RenderScope.h"
#include "handoff/VoiceLock.h"

namespace {

struct Violation {
    const char* what = nullptr;
    long number = -1;  // of a system call
    std::array<void*, 24> frames{};
    int depth = 0;
};

// Filled by any rendering thread, read when none renders.
std::array<Violation, 32> kept;
std::atomic<std::size_t> seen{0};
std::atomic<std::size_t> watchedRenders{0};

thread_local bool inRender = false;

void entered() {
    systemcalltrap::prepareThread();
    watchedRenders.fetch_add(1, std::memory_order_relaxed);
    inRender = true;
    systemcalltrap::close();
}

void left() {
    systemcalltrap::open();
    inRender = false;
}

constexpr RenderScope::Watch kWatch{entered, left};

std::string nameOf(void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || !info.dli_sname)
        return info.dli_fname ? info.dli_fname : "?";
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> readable(
        abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), std::free);
    return status == 0 ? readable.get() : info.dli_sname;
}

std::string describe(const Violation& violation) {
    std::string text = violation.what;
    if (violation.number >= 0)
        text.append(1, ' ').append(std::to_string(violation.number));
    for (int i = 1; i < violation.depth; ++i) {
        std::array<char, 32> address;
        std::snprintf(address.data(), address.size(), "\n    %p ",
                      violation.frames[std::size_t(i)]);
        text += address.data() + nameOf(violation.frames[std::size_t(i)]);
    }
    return text;
}

}  // namespace

bool renderwatch::watching() noexcept {
    return inRender && !VoiceLock::active();
}

void renderwatch::record(const char* what, long number) noexcept {
    inRender = false;  // what the backtrace does itself is not the render's fault
    const std::size_t index = seen.fetch_add(1);
    if (index < kept.size()) {
        Violation& violation = kept[index];
        violation.what = what;
        violation.number = number;
        violation.depth = backtrace(violation.frames.data(), int(violation.frames.size()));
    }
    inRender = true;
}

RenderWatch::RenderWatch() {
    std::array<void*, 4> frames;
    backtrace(frames.data(), int(frames.size()));  // it allocates when first used
    seen = 0;
    watchedRenders = 0;
    if (working())
        RenderScope::setWatch(&kWatch);
}

RenderWatch::~RenderWatch() {
    RenderScope::setWatch(nullptr);
}

std::vector<std::string> RenderWatch::violations() const {
    std::vector<std::string> texts;
    const std::size_t count = std::min(seen.load(), kept.size());
    std::transform(kept.begin(), kept.begin() + std::ptrdiff_t(count), std::back_inserter(texts),
                   describe);
    return texts;
}

std::size_t RenderWatch::renders() const {
    return watchedRenders;
}

bool RenderWatch::working() {
    return OMBRIX_RENDER_WATCH != 0;
}

bool RenderWatch::trapsSystemCalls() {
    return working() && systemcalltrap::prepareThread();
}
