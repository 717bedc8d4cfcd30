#include "files/SoundFileExtensions.h"

#include <set>

bool isSoundFileExtension(std::string_view extension) {
    static const std::set<std::string_view> known{"wav", "wave", "caf", "caff",
                                                  "aif", "aiff", "m4a", "aac"};
    return known.contains(extension);
}
