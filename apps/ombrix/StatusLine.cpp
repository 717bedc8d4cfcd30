#include "StatusLine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

StatusLine::StatusLine() : m_terminal(isatty(STDERR_FILENO) != 0) {}

StatusLine::~StatusLine() {
    if (m_width > 0)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(m_width), "");
}

void StatusLine::show(const std::string& text) {
    if (!m_terminal)
        return;
    m_width = std::max(m_width, text.size());
    std::fprintf(stderr, "\r%-*s", static_cast<int>(m_width), text.c_str());
}
