#include "screens/Notices.h"

Notices::~Notices() {
    RunLoop::main().cancel(m_timer);
}

void Notices::tell(const std::string& line) {
    RunLoop::main().cancel(m_timer);
    m_timer = RunLoop::main().callAfter(kShownSeconds, [this] { close(); });
    m_text = QString::fromStdString(line);
    Q_EMIT changed();
}

void Notices::close() {
    RunLoop::main().cancel(m_timer);
    m_timer = 0;
    m_text.clear();
    Q_EMIT changed();
}
