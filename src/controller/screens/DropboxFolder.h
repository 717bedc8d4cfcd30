#pragma once

#include <string>

/// The Dropbox folder that is set up on this device. [any thread but render]
namespace DropboxFolder {

/// What Dropbox's own program says in ~/.dropbox/info.json, the personal account before that of a
/// business; empty when there is none that exists, with one line in `error`. `home` is the user's
/// home folder.
std::string find(const std::string& home, std::string& error);

}  // namespace DropboxFolder
