#pragma once

#include <string>

/// Hidden names, ".NAME.PROCESS.NUMBER.part", for what is to become a file and is not whole yet.
/// [any thread but render]
namespace AsideNames {

/// In the folder of `target`; no other call of this process gives the same.
std::string beside(const std::string& target);

/// A new, empty file of such a name, for writing; -1 with errno set.
int create(const std::string& target, std::string& path);

/// Removes what processes that are no longer alive have left in `folder` under such names.
void sweep(const std::string& folder);

}  // namespace AsideNames
