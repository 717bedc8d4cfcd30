#pragma once

#include <string>

/// Preset bundles for tests, good and hostile, by a foreign writer: the table of make_bundles.py.
namespace Bundles {

/// Writes NAME.ombrix into `folder` for these names, or for all; false when that failed.
bool make(const std::string& folder, const std::string& names = "");

}  // namespace Bundles
