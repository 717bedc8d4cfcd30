#include "OpenInMenu.h"

#include <fcntl.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QUrl>
#include <QWindow>
#include <utility>

#include "runloop/RunLoop.h"
#include "storage/FileHandle.h"

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kObject = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kOpenUri = QStringLiteral("org.freedesktop.portal.OpenURI");
const QString kRequest = QStringLiteral("org.freedesktop.portal.Request");

QDBusConnection bus() {
    return QDBusConnection::sessionBus();
}

/// A name for the request, and where its answer will come from: both sides know the rule, so that
/// no answer is missed.
QString newToken() {
    static int count = 0;
    return QStringLiteral("ombrix%1").arg(++count);
}

QString requestPath(const QString& token) {
    QString sender = bus().baseService().mid(1);
    return kObject + "/request/" + sender.replace('.', '_') + '/' + token;
}

/// The window in the portal's words; empty where it has no name that others know.
QString parentWindow() {
    const QWindow* const window = QGuiApplication::focusWindow();
    if (!window || QGuiApplication::platformName() != "xcb")
        return {};
    return QStringLiteral("x11:%1").arg(window->winId(), 0, 16);
}

}  // namespace

OpenInMenu* OpenInMenu::present(const QString& path, Failed failed) {
    auto* const menu = new OpenInMenu(path, std::move(failed));
    menu->setParent(QCoreApplication::instance());
    menu->ask();
    return menu;
}

OpenInMenu::~OpenInMenu() {
    RunLoop::main().cancel(m_timer);
}

void OpenInMenu::ask() {
    const FileHandle file(::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC));
    if (!file || !bus().isConnected())
        return openPlainly();
    const QString token = newToken();
    listenAt(requestPath(token));
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kObject, kOpenUri, "OpenFile");
    call << parentWindow() << QVariant::fromValue(QDBusUnixFileDescriptor(file.get()))
         << QVariantMap{{"handle_token", token}, {"ask", true}};
    auto* const watcher = new QDBusPendingCallWatcher(bus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, &OpenInMenu::answered);
}

// Old portals make up a path of their own.
void OpenInMenu::answered(QDBusPendingCallWatcher* call) {
    const QDBusPendingReply<QDBusObjectPath> reply = *call;
    call->deleteLater();
    if (reply.isError())
        openPlainly();
    else if (reply.value().path() != m_request)
        listenAt(reply.value().path());
}

void OpenInMenu::listenAt(const QString& request) {
    if (!m_request.isEmpty())
        bus().disconnect(kService, m_request, kRequest, "Response", this,
                         SLOT(response(uint, QVariantMap)));
    m_request = request;
    bus().connect(kService, m_request, kRequest, "Response", this,
                  SLOT(response(uint, QVariantMap)));
}

void OpenInMenu::response(uint answer, const QVariantMap&) {
    if (answer > 1)
        openPlainly();
    else
        letGo();
}

void OpenInMenu::openPlainly() {
    if (m_ended)
        return;
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(m_path)) && m_failed)
        m_failed(
            tr("%1: no program of this device opens it; open it in a file manager.").arg(m_path));
    letGo();
}

void OpenInMenu::letGo() {
    if (std::exchange(m_ended, true))
        return;
    m_timer = RunLoop::main().callAfter(kKeptSeconds, [this] { deleteLater(); });
}
