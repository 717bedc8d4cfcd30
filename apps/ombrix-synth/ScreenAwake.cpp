#include "ScreenAwake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFileInfo>

#include "screens/OmbrixViewController.h"

namespace {

constexpr int kQuietMilliseconds = 10000;
constexpr uint kIdle = 8;  // of the portal: the session is not to become idle

const QString kReason = QStringLiteral("Music is being played");

/// Without one the library would try to start a bus of its own.
bool hasSessionBus() {
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus");
}

QDBusMessage toScreenSaver(const QString& method) {
    return QDBusMessage::createMethodCall("org.freedesktop.ScreenSaver",
                                          "/org/freedesktop/ScreenSaver",
                                          "org.freedesktop.ScreenSaver", method);
}

QDBusMessage toPortal(const QString& path, const QString& interface, const QString& method) {
    return QDBusMessage::createMethodCall("org.freedesktop.portal.Desktop", path, interface,
                                          method);
}

bool isRecorded(const PerformanceScreen& performance) {
    using State = Performance::State;
    const auto state = static_cast<State>(performance.state());
    return state == State::waiting || state == State::recording;
}

}  // namespace

ScreenAwake::ScreenAwake(OmbrixViewController& controller) : m_controller(controller) {
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(kQuietMilliseconds);
    connect(&m_quiet, &QTimer::timeout, this, &ScreenAwake::release);
    connect(controller.voices(), &VoicesState::soundingChanged, this, &ScreenAwake::look);
    connect(controller.take(), &TakeScreen::recordingChanged, this, &ScreenAwake::look);
    connect(controller.performance(), &PerformanceScreen::changed, this, &ScreenAwake::look);
}

ScreenAwake::~ScreenAwake() {
    release();
}

void ScreenAwake::look() {
    const bool busy = m_controller.voices()->sounding() || m_controller.take()->recording() ||
                      isRecorded(*m_controller.performance());
    if (!busy) {
        if (m_wanted && !m_quiet.isActive())
            m_quiet.start();
        return;
    }
    m_quiet.stop();
    if (!std::exchange(m_wanted, true))
        inhibit();
}

void ScreenAwake::inhibit() {
    if (m_asking || m_hold.isValid() || m_service == Service::none || !hasSessionBus())
        return;
    QDBusMessage request = toScreenSaver("Inhibit");
    if (m_service == Service::screenSaver)
        request << QStringLiteral("Ombrix Synth") << kReason;
    else {
        request = toPortal("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Inhibit",
                           "Inhibit");
        request << QString() << kIdle << QVariantMap{{"reason", kReason}};
    }
    m_asking =
        std::make_unique<QDBusPendingCallWatcher>(QDBusConnection::sessionBus().asyncCall(request));
    connect(m_asking.get(), &QDBusPendingCallWatcher::finished, this, &ScreenAwake::answered);
}

void ScreenAwake::answered() {
    const QDBusMessage reply = m_asking->reply();
    m_asking.release()->deleteLater();
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        m_hold = reply.arguments().first();
        if (!m_wanted)
            release();
        return;
    }
    m_service = m_service == Service::screenSaver ? Service::portal : Service::none;
    if (m_wanted)
        inhibit();
}

void ScreenAwake::release() {
    m_wanted = false;
    if (!m_hold.isValid())
        return;
    const QVariant hold = std::exchange(m_hold, QVariant());
    QDBusMessage request = toScreenSaver("UnInhibit");
    if (m_service == Service::screenSaver)
        request << hold;
    else
        request = toPortal(hold.value<QDBusObjectPath>().path(), "org.freedesktop.portal.Request",
                           "Close");
    QDBusConnection::sessionBus().send(request);
}
