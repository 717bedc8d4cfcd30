#pragma once

/// A library that is opened when it is first needed and then stays. [control]
class SharedLibrary {
  public:
    /// `soname` as the dynamic linker knows it, e.g. "libjack.so.0".
    explicit SharedLibrary(const char* soname);

    /// Fills `function`, whose type comes from the library's own header.
    template <typename Function>
    void bind(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(symbol(name));
    }

    /// Whether the library is installed and had every name asked for.
    bool complete() const { return m_complete; }

  private:
    void* symbol(const char* name);

    void* m_handle;
    bool m_complete;
};

/// A table of a library's functions is one list, `#define LIST(FUNCTION) FUNCTION(name) ...`, of
/// which these make the members and fill them.
#define OMBRIX_LIBRARY_MEMBER(name) decltype(&::name) name = nullptr;
#define OMBRIX_LIBRARY_BIND(name) library.bind(table.name, #name);
