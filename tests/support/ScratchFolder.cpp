#include "ScratchFolder.h"

#include <cstdlib>
#include <stdexcept>

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ombrix-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("no scratch folder");
    m_path = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}
