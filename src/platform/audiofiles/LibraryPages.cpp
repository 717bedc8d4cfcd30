#include "audiofiles/LibraryPages.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using Known = std::set<std::uintptr_t>;

int remember(dl_phdr_info* object, std::size_t, void* known) {
    static_cast<Known*>(known)->insert(object->dlpi_addr);
    return 0;
}

void release(std::uintptr_t address, std::size_t bytes) {
    static const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t begin = (address + page - 1) / page * page;
    const std::uintptr_t end = (address + bytes) / page * page;
    if (begin < end)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
}

int releaseIfNew(dl_phdr_info* object, std::size_t, void* known) {
    if (static_cast<const Known*>(known)->contains(object->dlpi_addr))
        return 0;
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const auto& segment = object->dlpi_phdr[i];
        // Only what was never writable is sure to be in the file as it is in memory.
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0)
            release(object->dlpi_addr + segment.p_vaddr, segment.p_filesz);
    }
    return 0;
}

}  // namespace

LibraryPages::LibraryPages() {
    dl_iterate_phdr(remember, &m_before);
}

void LibraryPages::releaseNew() const {
    dl_iterate_phdr(releaseIfNew, const_cast<Known*>(&m_before));
}
