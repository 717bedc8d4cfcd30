#pragma once

#include <string>
#include <vector>

#include "parameters/PresetFile.h"

/// Finds one preset by its name without changing anything: no lock is taken, nothing is written or
/// set aside. [main]
namespace PresetLookup {

/// Looks in the user's store, in its backup if the store cannot be read, then among the shipped
/// presets. Paths may be empty. `told` receives lines for the user: why a store was not read, and
/// the repairs of the preset that was found.
std::optional<Preset> find(const std::string& name, const std::string& store,
                           const std::string& shipped, std::vector<std::string>& told);

}  // namespace PresetLookup
