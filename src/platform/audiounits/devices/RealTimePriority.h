#pragma once

/// Real-time scheduling for threads of our own that render.
namespace RealTimePriority {

/// Asks for it for the calling thread, first within the account's own limits, then from RTKit over
/// the system's D-Bus; may take some milliseconds, so it is called before the first render.
/// False where neither grants it; the thread then goes on as it was.
bool acquire();

/// Whether a thread of this program would be granted it now. [control] Asks on a passing thread.
bool available();

}  // namespace RealTimePriority
