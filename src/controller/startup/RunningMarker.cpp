#include "startup/RunningMarker.h"

#include <filesystem>

#include "log/Log.h"
#include "propertylists/PropertyList.h"
#include "runloop/Clock.h"

namespace fs = std::filesystem;

RunningMarker::RunningMarker(const std::string& folder, const InstanceLock& place)
    : m_path((fs::path(folder) / ".running.marker").string()), m_place(place) {}

bool RunningMarker::previousRunCrashed() const {
    std::error_code unknown;
    return isOurs() && fs::exists(m_path, unknown);
}

void RunningMarker::markRunning(bool running) {
    if (!isOurs())
        return;
    std::error_code ignored;
    if (!running) {
        fs::remove(m_path, ignored);
        return;
    }
    const PropertyListValue::Dictionary marker{{"last-opened-at", PropertyListDate{Clock::now()}}};
    std::string error;
    if (!PropertyList::writeFile(m_path, marker, error))
        Log::line("No running marker: %s", error.c_str());
}
