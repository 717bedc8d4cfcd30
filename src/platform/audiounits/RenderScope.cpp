#include "audiounits/RenderScope.h"

#include <atomic>

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace {

thread_local int depth = 0;
std::atomic<const RenderScope::Watch*> currentWatch{nullptr};

#if defined(__x86_64__)
constexpr unsigned long kFlushBits = 0x8040;  // flush to zero, denormals are zero
unsigned long floatingPointMode() {
    return _mm_getcsr();
}
void setFloatingPointMode(unsigned long mode) {
    _mm_setcsr(static_cast<unsigned int>(mode));
}
#elif defined(__aarch64__)
constexpr unsigned long kFlushBits = 1ul << 24;  // FPCR.FZ
unsigned long floatingPointMode() {
    unsigned long mode;
    asm volatile("mrs %0, fpcr" : "=r"(mode));
    return mode;
}
void setFloatingPointMode(unsigned long mode) {
    asm volatile("msr fpcr, %0" : : "r"(mode));
}
#else
constexpr unsigned long kFlushBits = 0;
unsigned long floatingPointMode() {
    return 0;
}
void setFloatingPointMode(unsigned long) {}
#endif

}  // namespace

RenderScope::RenderScope() noexcept {
    if (depth++ > 0)
        return;
    m_savedMode = floatingPointMode();
    setFloatingPointMode(m_savedMode | kFlushBits);
    if (const Watch* watch = currentWatch.load(std::memory_order_acquire))
        watch->entered();
}

RenderScope::~RenderScope() {
    if (--depth > 0)
        return;
    if (const Watch* watch = currentWatch.load(std::memory_order_acquire))
        watch->left();
    setFloatingPointMode(m_savedMode);
}

bool RenderScope::active() noexcept {
    return depth > 0;
}

void RenderScope::setWatch(const Watch* watch) noexcept {
    currentWatch.store(watch, std::memory_order_release);
}
