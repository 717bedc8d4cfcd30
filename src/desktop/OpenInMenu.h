#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>
#include <functional>

class QDBusPendingCallWatcher;

/// The desktop's own menu of programs that open a file: org.freedesktop.portal.OpenURI of the
/// XDG desktop portal (version 1.16), asked without waiting. Where no portal answers, the file
/// opens in the program that is set for its kind. It deletes itself 2 s after the menu has gone.
/// [main]
class OpenInMenu : public QObject {
    Q_OBJECT

  public:
    static constexpr double kKeptSeconds = 2.0;
    using Failed = std::function<void(const QString& line)>;

    /// Shows the menu, on the session's bus. `failed` hears one line when nothing could open it.
    static OpenInMenu* present(const QString& path, Failed failed);
    ~OpenInMenu() override;

  private Q_SLOTS:
    /// The portal's answer: 0 opened, 1 the user chose nothing, 2 it went wrong.
    void response(uint answer, const QVariantMap& results);

  private:
    OpenInMenu(const QString& path, Failed failed) : m_path(path), m_failed(std::move(failed)) {}
    void ask();
    void answered(QDBusPendingCallWatcher* call);
    void listenAt(const QString& request);
    void openPlainly();
    void letGo();

    QString m_path;
    Failed m_failed;
    QString m_request;  // object path that the answer comes from
    bool m_ended = false;
    quint64 m_timer = 0;  // of the main run loop; 0: none
};
