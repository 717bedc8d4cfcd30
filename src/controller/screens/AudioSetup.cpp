#include "screens/AudioSetup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "audiounits/devices/AudioDevices.h"
#include "devices/AudioSwitch.h"
#include "devices/AudioWords.h"

namespace {

constexpr double kTick = 0.05;       // seconds between looks at the meter
constexpr int kTicksToRefresh = 10;  // between looks at the device
constexpr float kFall = 0.8f;        // of the meter, at each tick
constexpr float kMeterDecibels = 60;
constexpr float kUnseen = 1.f / 32768.f;  // below this it stands at 0
constexpr std::array<std::uint32_t, 6> kBufferFrames{64, 128, 256, 512, 1024, 2048};

QVariant option(const std::string& name, const QString& title, const QString& detail, bool chosen) {
    return QVariant::fromValue(AudioOption{QString::fromStdString(name), title, detail, chosen});
}

bool isOf(const AudioDeviceInfo& device, const char* backEnd) {
    return device.name.starts_with(backEnd);
}

}  // namespace

std::string AudioSetup::useKept(const UserDefaults& defaults) {
    return AudioChoice::kept(defaults).use();
}

AudioSetup::~AudioSetup() {
    RunLoop::main().cancel(m_timer);
}

void AudioSetup::setHost(std::function<void()> silence, std::function<bool()> takeRuns) {
    m_silence = std::move(silence);
    m_takeRuns = std::move(takeRuns);
}

void AudioSetup::setShown(bool shown) {
    if (shown == (m_timer != 0))
        return;
    RunLoop::main().cancel(m_timer);
    m_timer = 0;
    m_problem.clear();
    m_deviceWanted = false;
    if (shown) {
        m_survey.begin();
        m_timer = RunLoop::main().callEvery(kTick, [this] { tick(); });
        listen();
    } else if (m_takeRuns()) {
        m_meter.giveUp();
    } else {
        m_meter.close();
    }
    refresh();
}

void AudioSetup::tick() {
    listen();
    updateLevel();
    if (auto found = m_survey.take()) {
        m_found = std::move(*found);
        if (std::exchange(m_deviceWanted, false))
            switchWanted();
        refresh();
    } else if (++m_ticks % kTicksToRefresh == 0) {
        refresh();
    }
}

// A take has the input for itself; afterwards it is listened to again.
void AudioSetup::listen() {
    if (m_takeRuns())
        m_meter.giveUp();
    else
        m_meter.open();
}

void AudioSetup::updateLevel() {
    const float level = std::max(m_meter.takePeak(), m_level * kFall);
    const float shown = level < kUnseen ? 0 : level;
    if (std::exchange(m_level, shown) != shown)
        Q_EMIT inputLevelChanged();
}

void AudioSetup::refresh() {
    m_playing = AudioDevices::current()->info();
    Offer offer{deviceRows(), bufferRows(), inputRows()};
    if (std::exchange(m_offer, offer) != offer)
        Q_EMIT offerChanged();
    Q_EMIT changed();
}

float AudioSetup::meter() const {
    return m_level > 0 ? std::max(0.f, 1.f + 20.f * std::log10(m_level) / kMeterDecibels) : 0;
}

QString AudioSetup::state() const {
    return AudioWords::state(m_playing, AudioDevices::state(), AudioDevices::chosen());
}

QString AudioSetup::health() const {
    return AudioWords::health(m_playing);
}

QVariantList AudioSetup::deviceRows() const {
    const std::string chosen = AudioDevices::chosen();
    QVariantList rows{option("", tr("Automatic"), tr("the first that answers"), chosen.empty())};
    for (const AudioDeviceInfo& device : m_found.devices)
        rows +=
            option(device.name, AudioWords::deviceTitle(device),
                   device.name == "clock" ? QString()
                                          : AudioWords::period(device.periodFrames, device.rate),
                   device.name == chosen);
    if (!chosen.empty() && !answers(chosen))
        rows += option(chosen, QString::fromStdString(chosen),
                       isOf(m_playing, "clock") ? tr("does not answer") : QString(), true);
    return rows;
}

bool AudioSetup::answers(const std::string& device) const {
    return std::ranges::find(m_found.devices, device, &AudioDeviceInfo::name) !=
           m_found.devices.end();
}

QVariantList AudioSetup::bufferRows() const {
    if (isOf(m_playing, "jack"))
        return {};
    const std::uint32_t chosen = AudioDevices::preferredPeriod();
    QVariantList rows{option("0", tr("As the Device Likes"), {}, chosen == 0)};
    for (const std::uint32_t frames : kBufferFrames)
        rows += option(std::to_string(frames), AudioWords::period(frames, m_playing.rate), {},
                       frames == chosen);
    return rows;
}

QString AudioSetup::bufferNote() const {
    if (isOf(m_playing, "jack"))
        return tr("JACK sets the buffer for all its programs.");
    return tr("Short buffers answer keys sooner, long ones never crackle.");
}

QVariantList AudioSetup::inputRows() const {
    if (!isOf(m_playing, "pulse:"))
        return {};
    const std::string chosen = AudioDevices::input();
    QVariantList rows{option("", tr("As the System Has It"), {}, chosen.empty())};
    for (const AudioDeviceInfo& input : m_found.inputs)
        rows +=
            option(input.name, QString::fromStdString(input.description), {}, input.name == chosen);
    return rows;
}

QString AudioSetup::inputNote() const {
    if (isOf(m_playing, "jack"))
        return tr("The first microphone of JACK is heard; other programs may connect another.");
    if (isOf(m_playing, "alsa:"))
        return tr("The microphone of the same device is heard.");
    return isOf(m_playing, "pulse:") ? QString() : tr("There is no microphone without a device.");
}

// What is offered has answered before; whether it still does is asked first, aside, so that neither
// sound nor screen stand still for a server that hangs.
void AudioSetup::chooseDevice(const QString& name) {
    m_problem.clear();
    m_wantedDevice = name;
    m_deviceWanted = true;
    if (name.isEmpty() || m_timer == 0) {
        m_deviceWanted = false;
        switchWanted();
    } else {
        m_survey.begin();
    }
    refresh();
}

void AudioSetup::switchWanted() {
    AudioChoice wanted = AudioChoice::current();
    wanted.device = m_wantedDevice.toStdString();
    if (!wanted.device.empty() && m_timer != 0 && !answers(wanted.device))
        return refuse(tr("The device %1 does not answer.").arg(m_wantedDevice));
    change(wanted);
}

void AudioSetup::chooseBufferSize(const QString& frames) {
    AudioChoice wanted = AudioChoice::current();
    wanted.bufferFrames = frames.toUInt();
    change(wanted);
}

void AudioSetup::chooseInput(const QString& name) {
    AudioChoice wanted = AudioChoice::current();
    wanted.input = name.toStdString();
    change(wanted);
}

void AudioSetup::change(const AudioChoice& wanted) {
    m_problem.clear();
    if (m_takeRuns())
        return refuse(tr("The microphone is recording; choose again when it is done."));
    m_silence();
    const std::string error = AudioSwitch::to(wanted);
    if (error.empty())
        AudioChoice::current().keep(m_defaults);
    refresh();
    if (!error.empty())
        refuse(tr("Going on as before: %1.").arg(QString::fromStdString(error)));
}

void AudioSetup::refuse(const QString& why) {
    m_problem = why;
    Q_EMIT changed();
    Q_EMIT told(why);
}
