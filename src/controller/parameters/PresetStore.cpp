#include "parameters/PresetStore.h"

#include <array>
#include <ctime>
#include <filesystem>

#include "parameters/PresetNames.h"
#include "parameters/PresetRepair.h"
#include "propertylists/PropertyList.h"
#include "storage/AsideNames.h"
#include "storage/FileLock.h"
#include "storage/KeptFile.h"
#include "storage/WholeFile.h"
#include "text/UnicodeText.h"

namespace fs = std::filesystem;

namespace {

/// A save takes some milliseconds; who holds the lock for longer is stuck.
constexpr std::chrono::seconds kLockPatience{5};
/// Repairs that are told one by one; a store full of them is told by their number.
constexpr std::size_t kRepairsTold = 50;

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    std::array<char, 16> text;
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &parts)};
}

std::string lockFileBeside(const std::string& path) {
    return (fs::path(path).parent_path() / ".presets.lock").string();
}

std::string fileName(const std::string& path) {
    return fs::path(path).filename().string();
}

std::string faultOf(const Preset& preset) {
    if (const std::string fault = PresetNames::fault(preset.name); !fault.empty())
        return subjectOf(preset.name) + "its name is " + fault;
    const std::string fault = preset.wave ? PresetNames::waveFault(*preset.wave) : "";
    return fault.empty() ? fault : subjectOf(preset.name) + "its wave's name is " + fault;
}

std::string freeName(const PresetList& list, const std::string& name) {
    const std::string base(UnicodeText::cut(name, PresetNames::kLongest - 8));
    std::string numbered;
    int number = 2;
    do {
        numbered = base + ' ' + std::to_string(number++);
    } while (list.find(numbered));
    return numbered;
}

/// Why a user may not rename or remove what has this name; empty when it may be done.
std::string untouchable(const PresetList& list, const std::string& name) {
    const Preset* preset = list.find(name);
    if (!preset)
        return subjectOf(name) + "there is none of this name";
    return preset->isProtected ? subjectOf(preset->name) + "it is protected" : "";
}

}  // namespace

PresetStore::PresetStore(std::string path, std::string shipped, Tell tell)
    : m_path(std::move(path)), m_shipped(std::move(shipped)), m_tell(std::move(tell)) {
    open();
}

int PresetStore::hasPresetWithName(const std::string& name) const {
    const Preset* preset = find(name);
    return !preset ? 0 : preset->isProtected ? -1 : 1;
}

void PresetStore::open() {
    PresetFile file = PresetFile::read(m_path);
    if (file.state == PresetFile::State::missing)
        return openShipped();
    if (file.state == PresetFile::State::unavailable)
        return openBeside(file.error);
    if (file.state == PresetFile::State::read) {
        m_list = std::move(file.list);
        return tellRepairs(m_path, file.repairs);
    }
    // Changing nothing puts the backup in its place.
    if (const std::string error = change([](PresetList&) { return ""; }); !error.empty())
        openBeside(error.starts_with(file.error) ? error : file.error + "; " + error);
}

/// The file stays as it is: what there is instead is only shown.
void PresetStore::openBeside(const std::string& error) {
    PresetFile file = PresetFile::read(backup());
    const bool hasBackup = file.state == PresetFile::State::read;
    m_tell(error + "; until that is put right, " +
           (hasBackup ? "the presets of its backup are shown" : "no presets are shown"));
    m_list = std::move(file.list);
    tellRepairs(backup(), file.repairs);
}

void PresetStore::openShipped() {
    PresetFile file = PresetFile::read(m_shipped);
    if (file.state != PresetFile::State::read && file.state != PresetFile::State::missing)
        m_tell(file.error);
    m_list = std::move(file.list);
    tellRepairs(m_shipped, file.repairs);
}

std::string PresetStore::save(const Preset& preset) {
    Preset saved = preset;
    saved.name = PresetNames::trimmed(preset.name);
    if (const std::string fault = faultOf(preset); !fault.empty())
        return fault;
    return change([&](PresetList& list) -> std::string {
        list.put(saved);
        return "";
    });
}

std::string PresetStore::add(std::vector<Preset>& presets, bool replace) {
    for (const Preset& preset : presets) {
        if (const std::string fault = faultOf(preset); !fault.empty())
            return fault;
    }
    return change([&](PresetList& list) -> std::string {
        for (Preset& preset : presets) {
            preset.name = PresetNames::trimmed(preset.name);
            const Preset* there = list.find(preset.name);
            if (there && (there->isProtected || !replace))
                preset.name = freeName(list, preset.name);
            list.put(preset);
        }
        return "";
    });
}

std::string PresetStore::rename(const std::string& from, const std::string& to) {
    if (const std::string fault = PresetNames::fault(to); !fault.empty())
        return subjectOf(from) + "the new name is " + fault;
    return change([&](PresetList& list) {
        if (const std::string fault = untouchable(list, from); !fault.empty())
            return fault;
        const bool otherName = PresetNames::keyOf(from) != PresetNames::keyOf(to);
        if (otherName && list.find(to))
            return subjectOf(to) + "there is one of this name already";
        Preset preset = *list.find(from);
        preset.name = PresetNames::trimmed(to);
        list.presets.erase(PresetNames::keyOf(from));
        list.put(std::move(preset));
        return std::string();
    });
}

std::string PresetStore::remove(const std::string& name) {
    return change([&](PresetList& list) {
        std::string fault = untouchable(list, name);
        if (fault.empty())
            list.presets.erase(PresetNames::keyOf(name));
        return fault;
    });
}

std::string PresetStore::change(const Change& change) {
    std::error_code failed;
    fs::create_directories(fs::path(m_path).parent_path(), failed);
    if (failed)
        return m_path + ": its folder cannot be made: " + failed.message();
    const FileLock lock(lockFileBeside(m_path), kLockPatience);
    if (lock.taken())
        return m_path + ": another program has not let go of it; close it, then try again";
    if (!lock.held())
        return lockFileBeside(m_path) + ": cannot write: " + lock.reason();
    AsideNames::sweep(fs::path(m_path).parent_path().string());
    return changeUnderLock(change);
}

std::string PresetStore::changeUnderLock(const Change& change) {
    PresetFile file = PresetFile::read(m_path);
    if (file.state == PresetFile::State::unavailable)
        return file.error + "; nothing is changed until it can be read";
    const bool isRead = file.state == PresetFile::State::read;
    PresetList list = isRead ? std::move(file.list) : m_list;
    tellRepairs(m_path, file.repairs);
    std::string error;
    if (file.state == PresetFile::State::broken)
        error = recover(file.error, list);
    if (error.empty())
        error = change(list);
    if (error.empty())
        error = write(list, isRead);
    if (error.empty())
        m_list = std::move(list);
    return error;
}

std::string PresetStore::recover(const std::string& fault, PresetList& list) {
    std::string error;
    const std::string aside = KeptFile::keepAside(m_path, m_path + ".corrupt-" + today(), error);
    if (aside.empty())
        return fault + "; " + error;
    const PresetFile previous = PresetFile::read(backup());
    if (previous.state == PresetFile::State::broken)
        KeptFile::keepAside(backup(), backup() + ".corrupt-" + today(), error);
    const bool hasBackup = previous.state == PresetFile::State::read;
    std::string instead = hasBackup ? "its backup is used" : "the presets read before stay";
    list.addMissing(previous.list);
    if (list.presets.empty() && !hasBackup) {
        list = PresetFile::read(m_shipped).list;
        instead = "the shipped presets are used";
    }
    m_tell(fault + "; it was set aside as " + fileName(aside) + ", and " + instead);
    tellRepairs(backup(), previous.repairs);
    return "";
}

std::string PresetStore::write(const PresetList& list, bool keepPrevious) {
    if (list.presets.size() > kMostPresets)
        return m_path + ": no more than " + std::to_string(kMostPresets) + " presets can be kept";
    std::string error;
    const auto xml = PropertyList::toXml(list.toPropertyList(), error);
    if (!xml)
        return m_path + ": cannot write: " + error;
    if (keepPrevious && !KeptFile::keepAs(m_path, backup(), PropertyList::kMaximumBytes, error))
        return error;
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(xml->data()), xml->size());
    return writeWholeFile(m_path, bytes, error) ? "" : error;
}

void PresetStore::tellRepairs(const std::string& path, const std::vector<std::string>& repairs) {
    std::size_t fresh = 0;
    for (const std::string& repair : repairs) {
        if (m_told.insert(repair).second && ++fresh <= kRepairsTold)
            m_tell(path + ": " + repair);
    }
    if (fresh > kRepairsTold)
        m_tell(path + ": " + std::to_string(fresh - kRepairsTold) +
               " more values of presets were repaired");
}
