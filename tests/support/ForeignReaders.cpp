#include "ForeignReaders.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Contents.h"
#include "SoundFiles.h"

std::vector<ForeignReaders::Reading> ForeignReaders::readAll(const std::string& path, bool floats) {
    const std::string in = "'" + path + "' ";
    const std::string raw = path + ".raw";
    std::vector<std::pair<std::string, std::string>> commands{
        {"ffmpeg", "ffmpeg -v error -xerror -y -i " + in +
                       (floats ? "-f f32le -c:a pcm_f32le '" : "-f s16le -c:a pcm_s16le '") + raw +
                       "'"},
        {"sox", "sox " + in +
                    (floats ? "-t raw -e floating-point -b 32 '" : "-D -t raw -e signed -b 16 '") +
                    raw + "'"}};
    if (!floats)
        commands.emplace_back("python",
                              "python3 -c 'import sys, wave; w = wave.open(sys.argv[1]); "
                              "open(sys.argv[2], \"wb\").write(w.readframes(w.getnframes()))' " +
                                  in + "'" + raw + "'");
    std::vector<Reading> readings;
    for (const auto& [reader, command] : commands) {
        const bool opened = SoundFiles::runs(command);
        readings.push_back({reader, opened, contentsOf(raw)});
        std::filesystem::remove(raw);
    }
    return readings;
}

std::vector<std::string> ForeignReaders::readMidi(const std::string& path) {
    const std::string text = path + ".txt";
    SoundFiles::runs("python3 " OMBRIX_SUPPORT_FOLDER "/read_midi.py '" + path + "' '" + text +
                     "'");
    std::ifstream file(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    std::filesystem::remove(text);
    return lines;
}
