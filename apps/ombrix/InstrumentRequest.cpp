#include "InstrumentRequest.h"

#include <array>

#include "PresetArgument.h"
#include "RandomSource.h"
#include "SoundArgument.h"
#include "log/Log.h"

namespace {

constexpr std::array kInstrumentOptions{
    OptionRow{"sound", "NAME|FILE", "the sound that is played: its name or a sound file"},
    OptionRow{"preset", "NAME|FILE", "all settings from a preset: its name, or a property list"},
    OptionRow{"set", "KEY=VALUE", "one setting, as a preset stores it; may be given again"},
    OptionRow{"seed", "N", "start of the random sequence, 0 to 4294967295 (1)"},
    OptionRow{"no-auto-gain", nullptr, "leave the level as it is"},
};

std::string seedRandom(const Arguments& arguments) {
    const auto text = arguments.value("seed");
    if (!text)
        return "";
    const auto seed = wholeNumber(*text, 0, 0xffffffffu);
    if (!seed)
        return "--seed " + *text + ": a whole number from 0 to 4294967295 is wanted";
    RandomSource::seed(static_cast<std::uint32_t>(*seed));
    return "";
}

std::string applySetting(Preset& preset, const std::string& setting) {
    const auto equals = setting.find('=');
    if (equals == std::string::npos)
        return "--set " + setting + ": write it as KEY=VALUE";
    std::string error;
    if (!preset.set(setting.substr(0, equals), setting.substr(equals + 1), error))
        return "--set " + error;
    return "";
}

std::string loadFile(Instrument& instrument, const std::string& path) {
    const WaveChoice::Loaded loaded = WaveChoice::load(path);
    if (!loaded.wave)
        return loaded.error;
    if (!loaded.notice.empty())
        tellUser("%s", loaded.notice.c_str());
    instrument.waves().use(loaded);
    return "";
}

std::string loadSound(Instrument& instrument, const std::optional<std::string>& sound) {
    const auto path = sound ? soundPath(*sound) : WaveChoice::defaultSoundFile();
    if (!path)
        return noSuchSound(*sound);
    return loadFile(instrument, *path);
}

std::string settle(Instrument& instrument, const Arguments& arguments) {
    std::string error;
    PresetArgument chosen{instrument.makePresetFromSettings()};
    if (const auto choice = arguments.value("preset"))
        chosen = PresetArgument::find(*choice, error);
    if (!chosen.preset)
        return error;
    Preset preset = *chosen.preset;
    for (const std::string& setting : arguments.values("set")) {
        if (error = applySetting(preset, setting); !error.empty())
            return error;
    }
    const auto sound = arguments.has("sound") ? arguments.value("sound") : preset.wave;
    if (chosen.isStored && sound && sound == chosen.preset->wave)
        error = loadFile(instrument, storedSoundPath(preset));
    else
        error = loadSound(instrument, sound);
    if (!error.empty())
        return error;
    preset.wave.reset();  // loaded already
    instrument.updateSettingsFromPreset(preset);
    return "";
}

}  // namespace

std::span<const OptionRow> instrumentOptions() {
    return kInstrumentOptions;
}

std::unique_ptr<Instrument> makeInstrument(const Arguments& arguments, std::string& error) {
    error = seedRandom(arguments);
    if (!error.empty())
        return nullptr;
    auto instrument = std::make_unique<Instrument>(!arguments.has("no-auto-gain"));
    error = settle(*instrument, arguments);
    return error.empty() ? std::move(instrument) : nullptr;
}
