#pragma once

/// Where stdin, stdout or stderr is closed, opens the null device in its place: the next file to be
/// opened would take it, and our messages. First thing in `main`.
void fillStandardFiles();
