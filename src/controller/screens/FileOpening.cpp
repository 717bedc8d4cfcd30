#include "screens/FileOpening.h"

#include <QUrl>
#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "parameters/PresetBundle.h"
#include "parameters/PresetImport.h"

namespace {

std::string pathOf(const QString& file) {
    const QUrl address(file);
    return (address.isLocalFile() ? address.toLocalFile() : file).toStdString();
}

/// By its first bytes. Presets have been checked to be a regular file.
bool isPropertyList(const std::string& path) {
    std::array<char, 64> bytes{};
    std::ifstream(path, std::ios::binary).read(bytes.data(), bytes.size());
    std::string_view first(bytes.data(), bytes.size());
    if (first.starts_with("\xef\xbb\xbf"))
        first.remove_prefix(3);
    first.remove_prefix(std::min(first.find_first_not_of(" \t\r\n"), first.size()));
    for (const char* begin : {"<?xml", "<!DOCTYPE", "<!--", "<plist", "bplist"}) {
        if (first.starts_with(begin))
            return true;
    }
    return false;
}

}  // namespace

FileOpening::FileOpening(Settings& settings, PresetStore& store, Tell tell)
    : m_settings(settings), m_store(store), m_tell(std::move(tell)) {}

FileOpening::~FileOpening() {
    RunLoop::main().cancel(m_next);
}

void FileOpening::open(const QStringList& files) {
    for (const QString& file : files)
        m_files.push_back(pathOf(file));
    if (!m_next && !m_files.empty())
        m_next = RunLoop::main().callAfter(0, [this] { openNext(); });
}

void FileOpening::openNext() {
    const std::string path = m_files.front();
    m_files.pop_front();
    std::error_code failed;
    const auto status = std::filesystem::status(path, failed);
    if (!std::filesystem::exists(status))
        refuse(tr("%1: there is no such file.").arg(QString::fromStdString(path)).toStdString());
    else if (!std::filesystem::is_regular_file(status))
        refuse(tr("%1 is no file that can be opened; give a sound or a preset.")
                   .arg(QString::fromStdString(path))
                   .toStdString());
    else if (PresetBundle::isBundle(path) || isPropertyList(path))
        importPresets(path);
    else {
        m_sound = path;
        m_soundIsLast = true;
    }
    m_next = m_files.empty() ? 0 : RunLoop::main().callAfter(0, [this] { openNext(); });
    if (!m_next)
        finish();
}

void FileOpening::importPresets(const std::string& path) {
    const auto result = PresetImport(m_store, false, m_tell).take(path);
    if (!result.error.empty())
        return refuse(result.error);
    m_preset = result.names.back();
    m_soundIsLast = false;
}

void FileOpening::refuse(const std::string& line) {
    if (m_refusals++ == 0)
        m_refused = line;
}

// A preset after the sound may name none; so both are chosen, in their order.
void FileOpening::finish() {
    const std::string sound = std::exchange(m_sound, "");
    const Preset* const preset = m_store.find(std::exchange(m_preset, ""));
    if (!sound.empty() && !m_soundIsLast)
        m_settings.openSound(sound);
    if (preset)
        m_settings.pick(*preset);
    if (!sound.empty() && m_soundIsLast)
        m_settings.openSound(sound);
    tellRefused();
}

void FileOpening::tellRefused() {
    const int more = std::exchange(m_refusals, 0) - 1;
    if (more == 0)
        m_tell(m_refused);
    else if (more > 0)
        m_tell(tr("%1 (and %2 more files could not be opened)")
                   .arg(QString::fromStdString(m_refused))
                   .arg(more)
                   .toStdString());
}
