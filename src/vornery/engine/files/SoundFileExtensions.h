#pragma once

#include <string_view>

/// True for the extensions (without dot, as they stand) of files that lists show as sounds: "wav",
/// "wave", "caf", "caff", "aif", "aiff", "m4a", "aac". What a file holds is found out by opening
/// it.
bool isSoundFileExtension(std::string_view extension);
