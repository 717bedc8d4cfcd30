#pragma once

/// Stands around every render that a device or a test asks for. While one lives on a thread,
/// denormals are flushed there, and code that must not log, allocate or wait can tell.
/// Scopes nest; the outermost one counts.
class RenderScope {
  public:
    RenderScope() noexcept;
    ~RenderScope();
    RenderScope(const RenderScope&) = delete;
    RenderScope& operator=(const RenderScope&) = delete;

    /// [any thread] Whether this thread is inside a render.
    static bool active() noexcept;

    /// A watch that is told when the outermost scope of a thread opens and closes, so that a test
    /// can trap what a render must not do. Null for none. [control] while nothing renders.
    struct Watch {
        void (*entered)();
        void (*left)();
    };
    static void setWatch(const Watch* watch) noexcept;

  private:
    unsigned long m_savedMode = 0;  // floating-point control word of the thread
};
