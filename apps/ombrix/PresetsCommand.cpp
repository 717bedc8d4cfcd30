#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

#include "CommandFrame.h"
#include "Commands.h"
#include "PresetListing.h"
#include "log/Log.h"
#include "parameters/PresetBundle.h"
#include "parameters/PresetImport.h"
#include "parameters/PresetNames.h"
#include "text/CNumber.h"
#include "wavechoice/WaveChoice.h"

namespace {

constexpr CommandText kText{
    "ombrix presets [list | show NAME | rename OLD NEW | delete NAME |\n"
    "                       import FILE... | export NAME] [options]",
    "Lists the presets, or works on them. A star marks those that the program came with, which\n"
    "stay as they are.\n\n"
    "  list              every preset and its sound (--json)\n"
    "  show NAME         all settings of one (--json)\n"
    "  rename OLD NEW    give one another name\n"
    "  delete NAME       remove one; its sound stays in the data folder\n"
    "  import FILE...    take in .ombrix bundles, presets and whole stores in .plist files; one\n"
    "                    whose name is taken gets another, or with --force replaces yours\n"
    "  export NAME       write one, with the sound if it is yours, to NAME.ombrix (--output,\n"
    "                    --force)"};

const std::vector<OptionRow> kOptions{
    {"json", nullptr, "print JSON"},
    {"output", "FILE.ombrix", "the file to export to"},
    {"force", nullptr, "replace a file, or a preset of the same name, if there is one"},
};

void tell(const std::string& line) {
    tellUser("%s", line.c_str());
}

/// One run of the command, on the store.
class PresetsRun {
  public:
    explicit PresetsRun(const CommandFrame& frame)
        : m_frame(frame),
          m_store(WaveChoice::presetFilename(),
                  WaveChoice::resource("default-presets.plist").value_or(""), tell) {}

    int list() {
        PresetListing::printAll(m_store, has("json"));
        return kExitDone;
    }

    int show() {
        const Preset* const preset = m_store.find(word(1));
        if (!preset)
            return refuseUnknown();
        PresetListing::printOne(*preset, has("json"));
        return kExitDone;
    }

    int rename() {
        if (!m_store.find(word(1)))
            return refuseUnknown();
        if (const std::string fault = PresetNames::fault(word(2)); !fault.empty())
            return m_frame.refuse("the new name is " + fault + "; give another one");
        return answer(m_store.rename(word(1), word(2)));
    }

    int remove() {
        if (!m_store.find(word(1)))
            return refuseUnknown();
        return answer(m_store.remove(word(1)));
    }

    int import() {
        PresetImport importing(m_store, has("force"), tell);
        int code = kExitDone;
        for (std::size_t i = 1; i < m_frame.arguments().words().size(); ++i) {
            const auto result = importing.take(word(i));
            for (const std::string& name : result.names)
                std::printf("%s\n", name.c_str());
            if (!result.error.empty())
                code =
                    result.inputAtFault ? m_frame.refuse(result.error) : m_frame.fail(result.error);
        }
        return code;
    }

    int exportOne() {
        const Preset* const preset = m_store.find(word(1));
        if (!preset)
            return refuseUnknown();
        const std::string path =
            m_frame.arguments().value("output").value_or(PresetBundle::filenameFor(preset->name));
        const std::string error = refusalOf(path);
        if (!error.empty())
            return m_frame.refuse(error);
        const int code = answer(PresetBundle::write(*preset, path, has("force")));
        if (code == kExitDone)
            std::printf("%s\n", path.c_str());
        return code;
    }

  private:
    const std::string& word(std::size_t i) const { return m_frame.arguments().words()[i]; }
    bool has(const char* option) const { return m_frame.arguments().has(option); }
    int answer(const std::string& error) { return error.empty() ? kExitDone : m_frame.fail(error); }

    int refuseUnknown() {
        return m_frame.refuse("there is no preset " + inQuotes(word(1)) +
                              "; ombrix presets lists them");
    }

    std::string refusalOf(const std::string& path) const {
        std::error_code ignored;
        const auto status = std::filesystem::status(path, ignored);
        if (!std::filesystem::exists(status))
            return path.empty() ? "--output needs the name of a file" : "";
        if (!std::filesystem::is_regular_file(status))
            return path + " is no regular file; give another --output";
        return has("force") ? "" : path + " exists already; --force replaces it";
    }

    const CommandFrame& m_frame;
    PresetStore m_store;
};

struct SubCommand {
    const char* name;
    std::size_t fewest;  // words behind the name
    std::size_t most;
    std::array<const char*, 2> options;
    int (PresetsRun::*run)();
};

constexpr std::array kSubCommands{
    SubCommand{"list", 0, 0, {"json"}, &PresetsRun::list},
    SubCommand{"show", 1, 1, {"json"}, &PresetsRun::show},
    SubCommand{"rename", 2, 2, {}, &PresetsRun::rename},
    SubCommand{"delete", 1, 1, {}, &PresetsRun::remove},
    SubCommand{"import", 1, 100000, {"force"}, &PresetsRun::import},
    SubCommand{"export", 1, 1, {"output", "force"}, &PresetsRun::exportOne},
};

std::string misuse(const SubCommand& sub, const Arguments& arguments) {
    const std::size_t count = std::max<std::size_t>(arguments.words().size(), 1) - 1;
    if (count < sub.fewest || count > sub.most)
        return std::string("presets ") + sub.name + " takes " +
               (sub.most == 0   ? "nothing more"
                : sub.most == 2 ? "an old and a new name"
                : sub.most == 1 ? "one name"
                                : "at least one file");
    for (const OptionRow& option : kOptions) {
        const auto isIt = [&](const char* own) {
            return own && std::string_view(own) == option.name;
        };
        if (arguments.has(option.name) && std::ranges::none_of(sub.options, isIt))
            return std::string("presets ") + sub.name + " takes no --" + option.name;
    }
    return "";
}

}  // namespace

int presetsCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, kOptions);
    if (frame.exitCode())
        return *frame.exitCode();
    const auto& given = frame.arguments().words();
    const std::string name = given.empty() ? "list" : given[0];
    for (const SubCommand& sub : kSubCommands) {
        if (name != sub.name)
            continue;
        if (const std::string error = misuse(sub, frame.arguments()); !error.empty())
            return frame.refuse(error + "; see ombrix presets --help");
        PresetsRun run(frame);
        return (run.*sub.run)();
    }
    return frame.refuse("presets cannot " + inQuotes(name) + "; see ombrix presets --help");
}
