#include "screens/Presentation.h"

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
    m_tag = textOf(tag);
    m_content = content;
    Q_EMIT changed();
}

void Presentation::dismiss() {
    if (m_tag.isEmpty())
        return;
    m_tag.clear();
    m_content = nullptr;
    Q_EMIT changed();
}
