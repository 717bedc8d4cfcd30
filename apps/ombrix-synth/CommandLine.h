#pragma once

#include <QStringList>
#include <optional>
#include <span>
#include <string>

/// What the user asked for behind the program's name. Read before anything of Qt is made, so that
/// help and refusals need no display.
struct CommandLine {
    QStringList files;
    std::optional<std::string> device;  // as AudioDevices::choose has it

    /// Sets what is asked for; an exit code when there is nothing to run: 0 after help, 2 after bad
    /// use, about which one line was said.
    std::optional<int> read(std::span<char*> words);
};
