#include "screens/Presentation.h"

#include "notifications/NotificationCentre.h"

namespace {

QString textOf(std::uint32_t tag) {
    QString text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += QLatin1Char(static_cast<char>(tag >> shift & 0xff));
    return text;
}

}  // namespace

bool Presentation::canPresent(std::uint32_t tag) {
    if (m_tag == textOf(tag))
        return false;
    dismiss();
    return true;
}

void Presentation::present(std::uint32_t tag, QObject* content) {
    NotificationCentre::defaultCentre().post(kPopoverNotification);
    show(textOf(tag), content, nullptr);
}

void Presentation::presentSheet(std::uint32_t tag, QObject* content, Cancelled cancelled) {
    show(textOf(tag), content, std::move(cancelled));
}

bool Presentation::dismiss() {
    const bool shown = !m_tag.isEmpty();
    if (shown)
        show({}, nullptr, nullptr);
    return shown;
}

void Presentation::finish() {
    m_cancelled = nullptr;
    dismiss();
}

void Presentation::show(const QString& tag, QObject* content, Cancelled cancelled) {
    const Cancelled replaced = std::exchange(m_cancelled, std::move(cancelled));
    m_tag = tag;
    m_content = content;
    Q_EMIT changed();
    if (replaced)
        replaced();
}
