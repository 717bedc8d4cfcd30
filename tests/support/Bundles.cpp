#include "Bundles.h"

#include "SoundFiles.h"

bool Bundles::make(const std::string& folder, const std::string& names) {
    return SoundFiles::runs("python3 -B '" OMBRIX_SUPPORT_FOLDER "/make_bundles.py' '" + folder +
                            "' " + names);
}
