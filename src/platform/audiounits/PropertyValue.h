#pragma once

#include <cstdint>
#include <cstring>

#include "audiounits/AudioUnitTypes.h"

/// Property values cross the component interface as untyped bytes; these check the size.
namespace PropertyValue {

template <typename T>
OSStatus read(const void* data, std::uint32_t size, T& out) {
    if (size != sizeof(T))
        return kAudioUnitErr_InvalidPropertyValue;
    std::memcpy(&out, data, sizeof(T));
    return noErr;
}

template <typename T>
OSStatus write(const T& value, void* data, std::uint32_t* size) {
    if (*size < sizeof(T))
        return kAudioUnitErr_InvalidPropertyValue;
    std::memcpy(data, &value, sizeof(T));
    *size = sizeof(T);
    return noErr;
}

}  // namespace PropertyValue
