#pragma once

#include <cstdint>

#include "audiounits/AudioUnit.h"
#include "log/Log.h"

/// Typed access to a platform unit's properties. Failures are logged and nothing else happens: no
/// engine operation reports failure to its caller. [control]
namespace PlatformProperty {

/// Passes the value's own size: 1 for a byte, 4 for a number, 40 for a stream description.
template <typename T>
void set(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
         AudioUnitElement element, const T& value) {
    Log::status(AudioUnitSetProperty(unit, property, scope, element, &value, sizeof(T)));
}

/// Asks for the size first, then reads; `value` stays as it was where the read fails.
template <typename T>
T get(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
      T value) {
    std::uint32_t size = 0;
    Log::status(AudioUnitGetPropertyInfo(unit, property, scope, element, &size));
    if (size <= sizeof(T))
        Log::status(AudioUnitGetProperty(unit, property, scope, element, &value, &size));
    return value;
}

}  // namespace PlatformProperty
