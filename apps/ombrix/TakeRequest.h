#pragma once

#include <string>

#include "Options.h"
#include "storage/FileNames.h"

/// What `ombrix take` is asked for.
struct TakeRequest {
    std::string path;    // of the sound, in the data folder
    std::string device;  // empty: the first there is
    double seconds = 0;
    FileNames::Existing existing = FileNames::Existing::keep;

    /// Reads the words and chooses the device. Answers one line for bad use, else nothing.
    [[nodiscard]] std::string read(const Arguments& arguments);

  private:
    std::string readName(const Arguments& arguments);
    std::string readSeconds(const Arguments& arguments);
    std::string refusalOfPath() const;
};
