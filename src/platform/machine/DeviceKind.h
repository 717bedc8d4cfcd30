#pragma once

#include <string>

/// What people call the machine that this runs on.
enum class DeviceKind { computer, tablet, phone };

/// From what the administrator wrote ("CHASSIS=" in /etc/machine-info), else what the firmware says
/// (the chassis type of the SMBIOS specification, 3.6, section 7.4.1, or of the device tree).
/// Anything unknown is a computer. `root` stands before these paths. [any thread but render]
DeviceKind deviceKind(const std::string& root = "");
