#include "audiounits/devices/SharedLibrary.h"

#include <dlfcn.h>

#include "log/Log.h"

SharedLibrary::SharedLibrary(const char* soname)
    : m_handle(dlopen(soname, RTLD_NOW | RTLD_LOCAL)), m_complete(m_handle != nullptr) {
    if (!m_handle)
        Log::line("%s is not installed", soname);
}

void* SharedLibrary::symbol(const char* name) {
    void* const found = m_handle ? dlsym(m_handle, name) : nullptr;
    if (m_handle && !found) {
        Log::line("the installed library has no %s", name);
        m_complete = false;
    }
    return found;
}
