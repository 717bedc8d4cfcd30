#pragma once

/// Stops at every system call of one thread, whoever makes it and however, by way of the kernel's
/// user dispatch: a byte of the thread says whether calls go through or raise a signal. The first
/// call of a closed stretch is recorded and carried out; the stretch is open from there on.
namespace systemcalltrap {

/// Readies the calling thread; false where the kernel cannot do it. Calls the system.
bool prepareThread() noexcept;
/// Closes and opens the trap on the calling thread, once ready, without a system call.
void close() noexcept;
void open() noexcept;

}  // namespace systemcalltrap
