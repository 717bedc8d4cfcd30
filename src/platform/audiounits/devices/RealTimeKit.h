#pragma once

/// RTKit, the service that hands real-time priority to ordinary accounts:
/// org.freedesktop.RealtimeKit1 on the system's D-Bus, reached through libdbus, which is opened
/// when first needed.
namespace RealTimeKit {

/// Asks for `priority`, or what the service allows at most, for the calling thread. RTKit demands
/// that the process limits how long such a thread may compute without ever waiting; that limit is
/// set as the service states it. False without the bus, the service or its consent.
bool grant(int priority);

}  // namespace RealTimeKit
