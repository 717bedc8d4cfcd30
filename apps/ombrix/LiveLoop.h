#pragma once

/// The main thread of a command that plays or records in real time. [main]
namespace LiveLoop {

/// Calls what is due, and formats what the audio thread had to say.
void turn();

/// Sleeps until `moment` on Clock::monotonic, but no longer than a signal or a log line may wait
/// (1/20 s) and than until the next call is due. Ends early when a signal arrives.
void sleepUntil(double moment);

}  // namespace LiveLoop
