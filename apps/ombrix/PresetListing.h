#pragma once

#include <string>

#include "parameters/PresetStore.h"

/// Presets as text and as JSON, on stdout.
namespace PresetListing {

void printAll(const PresetStore& store, bool json);
/// Every key, with what a dial would show.
void printOne(const Preset& preset, bool json);

}  // namespace PresetListing
