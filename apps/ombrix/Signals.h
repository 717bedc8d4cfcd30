#pragma once

/// What the outside asks of a running command. SIGINT, SIGTERM and (unless it is ignored) SIGHUP
/// ask it to stop, SIGUSR1 to silence everything. A sleeping call on the main thread is interrupted
/// by each of them.
namespace Signals {

void listen();
bool stopWanted();
/// True once for every request.
bool takeSilenceWanted();

}  // namespace Signals
