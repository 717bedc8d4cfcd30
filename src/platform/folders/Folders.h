#pragma once

#include <filesystem>
#include <optional>

/// Where the program's files lie. [control]
namespace Folders {

/// The user's data: $OMBRIX_DATA, else "Ombrix Synth" in the documents folder, else in the
/// account's home. None where the account has no home.
std::optional<std::filesystem::path> data();

/// What the program ships with: "Ombrix.app" in the build tree or in the installed share folder.
/// It need not exist.
std::filesystem::path resources();

/// What the program is called where other programs can see it.
const char* applicationName();

}  // namespace Folders
