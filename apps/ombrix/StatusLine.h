#pragma once

#include <string>

/// One line on stderr that is written again and again, and erased at the end. On a terminal, and
/// only there.
class StatusLine {
  public:
    StatusLine();
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    void show(const std::string& text);

  private:
    bool m_terminal;
    std::size_t m_width = 0;  // of what stands there
};
