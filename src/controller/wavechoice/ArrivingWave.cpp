#include "wavechoice/ArrivingWave.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "wavechoice/WaveChoice.h"
#include "wavechoice/WaveNames.h"

namespace fs = std::filesystem;

namespace {

/// Where the file will lie, in a folder that exists if it can.
std::string placeFor(const std::string& plainName) {
    const std::string path = WaveChoice::dataFile(plainName);
    std::error_code ignored;  // writing into it will say so
    fs::create_directories(fs::path(path).parent_path(), ignored);
    return path;
}

bool sameBytes(const std::string& one, const std::string& other) {
    std::error_code failed;
    if (!fs::is_regular_file(one, failed) || !fs::is_regular_file(other, failed) ||
        fs::file_size(one, failed) != fs::file_size(other, failed))
        return false;
    std::ifstream a(one, std::ios::binary);
    std::ifstream b(other, std::ios::binary);
    using Bytes = std::istreambuf_iterator<char>;
    return a && b && std::equal(Bytes(a), Bytes(), Bytes(b), Bytes());
}

}  // namespace

ArrivingWave::ArrivingWave(const std::string& plainName)
    : m_name(plainName), m_aside(placeFor(plainName)) {}

std::string ArrivingWave::nameFor(const std::string& path) {
    const fs::path file(path);
    const std::string own = file.filename().string();
    return WaveNames::isStorable(own) ? own : "Sound.wav";
}

bool ArrivingWave::copy(const std::string& path, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    std::vector<char> part(1 << 16);
    while (file) {
        file.read(part.data(), static_cast<std::streamsize>(part.size()));
        const auto bytes = std::as_bytes(std::span(part.data(), std::size_t(file.gcount())));
        if (!write({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()})) {
            error = writeError();
            return false;
        }
    }
    if (!file.eof())
        error = path + ": cannot be read to its end";
    return error.empty();
}

bool ArrivingWave::check(std::string& error, std::string& notice) {
    if (!m_aside.sync()) {
        error = m_aside.error();
        return false;
    }
    const auto named = [&](std::string line) {
        if (line.starts_with(m_aside.path()))
            line.replace(0, m_aside.path().size(), m_name);
        return line;
    };
    const WaveChoice::Loaded loaded = WaveChoice::load(m_aside.path());
    error = named(loaded.error);
    notice = named(loaded.notice);
    return loaded.wave != nullptr;
}

bool ArrivingWave::settle() {
    const std::string own = m_name;
    for (int number = 2;; m_name = WaveNames::numbered(own, number++)) {
        if (const auto there = WaveChoice::findWavePath(m_name)) {
            if (sameBytes(m_aside.path(), *there))
                return true;
            continue;
        }
        const std::string path = WaveChoice::dataFile(m_name);
        const AsideFile::Put put = m_aside.putNew(path);
        if (put == AsideFile::Put::done)
            m_settled = path;
        if (put != AsideFile::Put::taken)
            return put == AsideFile::Put::done;
    }
}

void ArrivingWave::withdraw() {
    if (!m_settled.empty())
        ::unlink(m_settled.c_str());
    m_settled.clear();
}
