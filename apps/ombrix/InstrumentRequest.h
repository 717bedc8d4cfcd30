#pragma once

#include <memory>
#include <span>
#include <string>

#include "Options.h"
#include "startup/Instrument.h"

/// The options that say how it sounds, for every command that plays the instrument.
std::span<const OptionRow> instrumentOptions();

/// An instrument set up from a user's words. The preset store and the data folder's sounds are only
/// read, and only for a preset that is given by its name; user defaults are not. Null after bad use
/// or bad input, with `error` one line.
std::unique_ptr<Instrument> makeInstrument(const Arguments& arguments, std::string& error);
