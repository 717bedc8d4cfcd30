// Sequences: moving the sound files behind them into a folder.
#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "VornWave2.h"
#include "VornWaveDatabase.h"
#include "VornWaveSequence.h"
#include "log/Log.h"

namespace {

namespace fs = std::filesystem;
using Waves = std::vector<std::shared_ptr<VornWave2>>;

/// A name is taken by whatever stands there, and by a living wave whose file has gone.
bool isTaken(const fs::path& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type() != fs::file_type::not_found ||
           VornWaveDatabase::sharedInstance().lookupWaveForPath(path.string());
}

std::string freeName(const std::string& filename, const fs::path& folder) {
    const fs::path wanted(filename);
    std::string name = filename;
    for (int number = 2; isTaken(folder / name); ++number)
        name = wanted.stem().string() + " " + std::to_string(number) + wanted.extension().string();
    return name;
}

/// Never replaces a file, and leaves no half behind.
void linkOrCopy(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::create_hard_link(from, to, error);
    if (!error)
        return;
    fs::copy_file(from, to, fs::copy_options::none, error);
    if (error && error != std::errc::file_exists)
        fs::remove(to, error);
}

/// The wave of the same file in `folder`; null when it cannot be brought there.
std::shared_ptr<VornWave2> broughtInto(const std::string& folder, const VornWave2& wave) {
    const std::string name = freeName(wave.filename(), folder);
    linkOrCopy(wave.fullPath(), fs::path(folder) / name);
    auto moved = VornWave2::initWithContentsOfFile(name, folder);
    return moved->loadError().empty() ? moved : nullptr;
}

/// Waves outside `folder` in the order in which they are met.
Waves wavesOutside(const std::string& folder, const VornWaveSequence& sequence) {
    Waves waves;
    for (const auto& block : sequence.blocks()) {
        const auto& wave = block->waveOrNil();
        if (wave && !wave->fullPath().starts_with(folder) && std::ranges::count(waves, wave) == 0)
            waves.push_back(wave);
    }
    return waves;
}

}  // namespace

VornWaveSequence::Pointer VornWaveSequence::remapIntoDocumentFolder(
    const std::string& folder) const {
    std::map<std::shared_ptr<VornWave2>, std::shared_ptr<VornWave2>> moved;
    for (const auto& wave : wavesOutside(folder, *this)) {
        std::error_code ignored;
        if (!fs::exists(wave->fullPath(), ignored)) {
            Log::line("Flattening due to missing file entries");
            return sequenceWithWave(flattenInto(folder, m_myAudioDescription.mChannelsPerFrame));
        }
        // A wave that cannot be brought along plays on from where it is.
        if (auto there = broughtInto(folder, *wave))
            moved[wave] = std::move(there);
    }
    if (moved.empty())
        return std::const_pointer_cast<VornWaveSequence>(shared_from_this());
    Blocks blocks = m_blocks;
    for (auto& block : blocks)
        if (const auto found = moved.find(block->waveOrNil()); found != moved.end())
            block = VornWaveBlock::blockWithWave(found->second, block->startIndex(),
                                                 block->frameCount());
    return sequenceWithBlocks(std::move(blocks), m_myAudioDescription, m_extractType);
}
