#pragma once

/// How the hooks tell the watch what they saw. Safe anywhere, signal handlers included: nothing
/// here allocates, waits or calls the system.
namespace renderwatch {

/// Whether the calling thread is inside a watched render, and not in a voice's lock, which may do
/// what it needs to.
bool watching() noexcept;

/// Notes that `what` (a literal) was called; `number` is a system call's, or -1.
void record(const char* what, long number = -1) noexcept;

}  // namespace renderwatch
