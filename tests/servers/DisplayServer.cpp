#include "DisplayServer.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

/// The whole line that is a number; complaints may stand around it.
std::string numberIn(const std::string& path) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line) && !file.eof();) {
        if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos)
            return line;
    }
    return "";
}

}  // namespace

DisplayServer::DisplayServer(int width, int height) {
    const std::string said = m_folder.file("display");  // its number, as soon as it answers
    const std::string screen = std::to_string(width) + 'x' + std::to_string(height) + "x24";
    m_process = std::make_unique<Process>(
        std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-nolisten",
                                 "tcp", "-noreset"},
        said);
    for (int i = 0; i < 200; ++i) {
        if (const std::string number = numberIn(said); !number.empty()) {
            setenv("DISPLAY", (':' + number).c_str(), 1);
            setenv("QT_QPA_PLATFORM", "xcb", 1);
            return;
        }
        usleep(50000);
    }
    throw std::runtime_error("the X server did not start");
}
