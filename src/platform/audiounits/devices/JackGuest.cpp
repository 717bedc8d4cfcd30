#include "audiounits/devices/JackGuest.h"

#include <mutex>

namespace {

struct Place {
    std::mutex mutex;
    std::shared_ptr<JackGuest> guest;
};

// Never destroyed: a device that hangs may outlive main.
Place& place() {
    static auto* const place = new Place;
    return *place;
}

}  // namespace

std::shared_ptr<JackGuest> JackGuest::current() {
    std::lock_guard guard(place().mutex);
    return place().guest;
}

void JackGuest::setCurrent(std::shared_ptr<JackGuest> guest) {
    std::lock_guard guard(place().mutex);
    place().guest = std::move(guest);
}
