#pragma once

#include <string>
#include <vector>

#include "defaults/UserDefaults.h"
#include "midi/SoftTakeover.h"
#include "parameters/Parameters.h"

/// Which controller of which device turns which dial. Of each device a controller turns one dial,
/// and a dial has one controller; the device that has learned longest ago is forgotten when there
/// are too many. Kept in the user defaults. [main]
class LearnedControllers {
  public:
    static constexpr std::size_t kMostDevices = 64;

    struct Controller {
        int channel;  // 0 to 15
        int number;   // 0 to 119
        ParameterId dial;
        SoftTakeover takeover;
    };

    /// Whether a controller of that number can be learned: the pedals and the messages to the whole
    /// channel have work of their own.
    static bool canLearn(int number);

    void learn(const std::string& device, const Controller& controller);
    /// Null when it was not learned; valid until the next change.
    Controller* find(const std::string& device, int channel, int number);
    /// Whether any turned it.
    bool forget(ParameterId dial);
    /// "CC 74", or "CC 1, CC 74" where devices differ; empty for none.
    std::string turning(ParameterId dial) const;

    /// What cannot be used is left out.
    static LearnedControllers load(const UserDefaults& defaults);
    void keep(UserDefaults& defaults) const;

  private:
    struct Device {
        std::string name;
        std::vector<Controller> controllers;
    };
    Device* deviceOf(const std::string& name);
    void load(const PropertyListValue& device);
    static PropertyListValue::Dictionary asStored(const Device& device);

    std::vector<Device> m_devices;  // the one that has learned last is the last
};
