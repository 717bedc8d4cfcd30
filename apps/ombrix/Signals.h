#pragma once

/// What the outside asks of a running command. SIGINT and SIGTERM ask it to stop, SIGUSR1 to
/// silence everything. A sleeping call on the main thread is interrupted by each of them.
namespace Signals {

void listen();
bool stopWanted();
/// True once for every request.
bool takeSilenceWanted();

}  // namespace Signals
