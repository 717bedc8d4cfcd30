#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "audiounits/devices/AudioDevice.h"
#include "runloop/RunLoop.h"

/// Tells the player, in one line each, that no sound device answers, that the one in use was lost,
/// and that one plays again. Looks once a second. [main]
class DeviceNews : public QObject {
    Q_OBJECT

  public:
    using Tell = std::function<void(const std::string& line)>;

    explicit DeviceNews(Tell tell);
    ~DeviceNews() override;

    /// The line for what has changed since; empty when nothing is worth one.
    static QString news(const AudioDeviceState& before, const AudioDeviceState& now);

  private:
    void look();

    Tell m_tell;
    AudioDeviceState m_seen;
    RunLoop::Token m_looking;
};
