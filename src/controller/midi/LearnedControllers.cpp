#include "midi/LearnedControllers.h"

#include <algorithm>
#include <set>

#include "text/UnicodeText.h"

namespace {

constexpr const char* kMidiLearned = "midi-learned";  // in the user defaults
constexpr std::size_t kLongestDeviceName = 200;       // bytes

/// As it can be stored: a device may call itself anything.
std::string storableName(const std::string& device) {
    std::string name = UnicodeText::withoutControls(device);
    for (const char* const noCharacter : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (std::size_t at = 0; (at = name.find(noCharacter, at)) != std::string::npos;)
            name.erase(at, 3);
    }
    return std::string(UnicodeText::cut(name, kLongestDeviceName));
}

const PropertyListValue* valueAt(const PropertyListValue& value, const char* key) {
    const auto* const dictionary = value.dictionary();
    if (!dictionary)
        return nullptr;
    const auto found = dictionary->find(key);
    return found == dictionary->end() ? nullptr : &found->second;
}

const PropertyListValue::Array* arrayAt(const PropertyListValue& value, const char* key) {
    const PropertyListValue* const found = valueAt(value, key);
    return found ? found->array() : nullptr;
}

/// Nothing unless it is there and within the range.
std::optional<int> numberAt(const PropertyListValue& value, const char* key, int low, int high) {
    const PropertyListValue* const found = valueAt(value, key);
    const std::int64_t* const number = found ? found->integer() : nullptr;
    return number && *number >= low && *number <= high ? std::optional(int(*number)) : std::nullopt;
}

std::optional<ParameterId> dialAt(const PropertyListValue& value) {
    const PropertyListValue* const found = valueAt(value, "dial");
    const std::string* const key = found ? found->string() : nullptr;
    const Parameter* const row = key ? parameterWithKey(*key) : nullptr;
    return row && !row->dialName.empty() ? std::optional(row->id) : std::nullopt;
}

}  // namespace

bool LearnedControllers::canLearn(int number) {
    return number >= 0 && number < 120 && number != 64 && number != 66;
}

LearnedControllers::Device* LearnedControllers::deviceOf(const std::string& name) {
    const auto found = std::ranges::find(m_devices, storableName(name), &Device::name);
    return found == m_devices.end() ? nullptr : &*found;
}

void LearnedControllers::learn(const std::string& device, const Controller& controller) {
    Device learned{storableName(device), {}};
    if (Device* const known = deviceOf(device)) {
        std::swap(learned, *known);
        m_devices.erase(m_devices.begin() + (known - m_devices.data()));
    }
    std::erase_if(learned.controllers, [&](const Controller& other) {
        return other.dial == controller.dial ||
               (other.channel == controller.channel && other.number == controller.number);
    });
    learned.controllers.push_back(controller);
    m_devices.push_back(std::move(learned));
    if (m_devices.size() > kMostDevices)
        m_devices.erase(m_devices.begin());
}

LearnedControllers::Controller* LearnedControllers::find(const std::string& device, int channel,
                                                         int number) {
    Device* const known = m_devices.empty() ? nullptr : deviceOf(device);
    if (!known)
        return nullptr;
    const auto found = std::ranges::find_if(known->controllers, [&](const Controller& controller) {
        return controller.channel == channel && controller.number == number;
    });
    return found == known->controllers.end() ? nullptr : &*found;
}

bool LearnedControllers::forget(ParameterId dial) {
    std::size_t forgotten = 0;
    for (Device& device : m_devices)
        forgotten += std::erase_if(device.controllers,
                                   [dial](const Controller& other) { return other.dial == dial; });
    std::erase_if(m_devices, [](const Device& device) { return device.controllers.empty(); });
    return forgotten > 0;
}

std::string LearnedControllers::turning(ParameterId dial) const {
    std::set<int> numbers;
    for (const Device& device : m_devices) {
        for (const Controller& controller : device.controllers) {
            if (controller.dial == dial)
                numbers.insert(controller.number);
        }
    }
    std::string text;
    for (const int number : numbers)
        text.append(text.empty() ? "CC " : ", CC ").append(std::to_string(number));
    return text;
}

LearnedControllers LearnedControllers::load(const UserDefaults& defaults) {
    LearnedControllers learned;
    const auto stored = defaults.dictionary(kMidiLearned);
    const PropertyListValue all = stored.value_or(PropertyListValue::Dictionary());
    if (const PropertyListValue::Array* const devices = arrayAt(all, "devices"))
        std::ranges::for_each(*devices, [&](const auto& device) { learned.load(device); });
    return learned;
}

void LearnedControllers::load(const PropertyListValue& device) {
    const PropertyListValue* const name = valueAt(device, "name");
    const PropertyListValue::Array* const controllers = arrayAt(device, "controllers");
    if (!name || !name->string() || !controllers)
        return;
    for (const PropertyListValue& stored : *controllers) {
        const auto channel = numberAt(stored, "channel", 1, 16);
        const auto number = numberAt(stored, "controller", 0, 119);
        const auto dial = dialAt(stored);
        if (channel && number && dial && canLearn(*number))
            learn(*name->string(), {*channel - 1, *number, *dial, {}});
    }
}

void LearnedControllers::keep(UserDefaults& defaults) const {
    PropertyListValue::Array devices;
    for (const Device& device : m_devices)
        devices.emplace_back(asStored(device));
    PropertyListValue::Dictionary all;
    all.emplace("devices", std::move(devices));
    defaults.set(kMidiLearned, std::move(all));
}

PropertyListValue::Dictionary LearnedControllers::asStored(const Device& device) {
    PropertyListValue::Array controllers;
    for (const Controller& controller : device.controllers) {
        PropertyListValue::Dictionary row;
        row.emplace("channel", controller.channel + 1);
        row.emplace("controller", controller.number);
        row.emplace("dial", std::string(parameter(controller.dial).key));
        controllers.emplace_back(std::move(row));
    }
    PropertyListValue::Dictionary learned;
    learned.emplace("name", device.name);
    learned.emplace("controllers", std::move(controllers));
    return learned;
}
