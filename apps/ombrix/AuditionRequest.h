#pragma once

#include <string>
#include <vector>

#include "Listening.h"
#include "Options.h"

/// What `ombrix audition` is told. Bad use is answered as one line, good use as nothing.
const std::vector<OptionRow>& auditionOptions();
/// What does not go together.
[[nodiscard]] std::string auditionContradiction(const Arguments& arguments);
/// What is to be heard of a sound; places must lie in it.
[[nodiscard]] std::string readAuditionWish(const Arguments& arguments, const WaveAccess& sound,
                                           Listening::Wish& wish);
