#pragma once

/// The main thread of a command that plays, records or listens in real time. [main]
namespace LiveLoop {

/// Calls what is due, and formats what the audio thread had to say.
void turn();

/// Sleeps until `moment` on Clock::monotonic, but no longer than a signal or a log line may wait
/// (1/20 s) and than until the next call is due. Ends at once when another thread adds a call, such
/// as a note that was heard, and early when a signal arrives.
void sleepUntil(double moment);

}  // namespace LiveLoop
