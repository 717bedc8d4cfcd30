// Functions of the C library that a render must not call, put in front of the real ones in every
// test program: each tells the watch when it is called in a watched render, then does its work.
// Operator new and delete end in malloc and free.

#if OMBRIX_RENDER_WATCH

#include <dlfcn.h>
#include <errno.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "RenderWatch.h"
#include "RenderWatchRecord.h"

namespace {

void tell(const char* what) noexcept {
    if (renderwatch::watching())
        renderwatch::record(what);
}

// For functions that do nothing but call the system: the trap reports them where there is one.
void tellUnlessTrapped(const char* what) noexcept {
    if (renderwatch::watching() && !RenderWatch::trapsSystemCalls())
        renderwatch::record(what);
}

// The real function behind one of ours, looked up once.
template <typename Function>
Function* following(std::atomic<Function*>& known, const char* name) noexcept {
    Function* function = known.load(std::memory_order_acquire);
    if (!function) {
        function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
        known.store(function, std::memory_order_release);
    }
    return function;
}

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void __libc_free(void* memory);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) noexcept {
    tell("malloc");
    return __libc_malloc(size);
}

void free(void* memory) noexcept {
    if (memory)
        tell("free");
    __libc_free(memory);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    tell("calloc");
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
    tell("realloc");
    return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    tell("aligned_alloc");
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** into, std::size_t alignment, std::size_t size) noexcept {
    tell("posix_memalign");
    *into = __libc_memalign(alignment, size);
    return *into ? 0 : ENOMEM;
}

// HOOK(how it is told, result, name, parameters, arguments, exception specification)
#define HOOK(how, result, name, parameters, arguments, specification) \
    result name parameters specification {                            \
        static std::atomic<result(*) parameters> known{nullptr};      \
        how(#name);                                                   \
        return following(known, #name) arguments;                     \
    }

HOOK(tell, int, pthread_mutex_lock, (pthread_mutex_t * m), (m), noexcept)
HOOK(tell, int, pthread_mutex_trylock, (pthread_mutex_t * m), (m), noexcept)
HOOK(tell, int, pthread_mutex_timedlock, (pthread_mutex_t * m, const timespec* t), (m, t), noexcept)
HOOK(tell, int, pthread_mutex_clocklock, (pthread_mutex_t * m, clockid_t c, const timespec* t),
     (m, c, t), noexcept)
HOOK(tell, int, pthread_rwlock_rdlock, (pthread_rwlock_t * l), (l), noexcept)
HOOK(tell, int, pthread_rwlock_wrlock, (pthread_rwlock_t * l), (l), noexcept)
HOOK(tell, int, pthread_rwlock_tryrdlock, (pthread_rwlock_t * l), (l), noexcept)
HOOK(tell, int, pthread_rwlock_trywrlock, (pthread_rwlock_t * l), (l), noexcept)
HOOK(tell, int, pthread_spin_lock, (pthread_spinlock_t * l), (l), noexcept)
HOOK(tell, int, pthread_cond_wait, (pthread_cond_t * c, pthread_mutex_t* m), (c, m), )
HOOK(tell, int, pthread_cond_timedwait, (pthread_cond_t * c, pthread_mutex_t* m, const timespec* t),
     (c, m, t), )
HOOK(tell, int, pthread_cond_clockwait,
     (pthread_cond_t * c, pthread_mutex_t* m, clockid_t k, const timespec* t), (c, m, k, t), )
HOOK(tell, int, pthread_cond_signal, (pthread_cond_t * c), (c), noexcept)
HOOK(tell, int, pthread_cond_broadcast, (pthread_cond_t * c), (c), noexcept)
HOOK(tell, int, sem_wait, (sem_t * s), (s), )
HOOK(tell, int, sem_timedwait, (sem_t * s, const timespec* t), (s, t), )
HOOK(tell, int, sem_post, (sem_t * s), (s), noexcept)
HOOK(tellUnlessTrapped, ssize_t, read, (int f, void* d, size_t n), (f, d, n), )
HOOK(tellUnlessTrapped, ssize_t, write, (int f, const void* d, size_t n), (f, d, n), )
HOOK(tellUnlessTrapped, int, poll, (pollfd * f, nfds_t n, int t), (f, n, t), )
HOOK(tellUnlessTrapped, int, nanosleep, (const timespec* t, timespec* r), (t, r), )
HOOK(tellUnlessTrapped, int, clock_nanosleep, (clockid_t c, int f, const timespec* t, timespec* r),
     (c, f, t, r), )
HOOK(tellUnlessTrapped, int, usleep, (useconds_t t), (t), )
HOOK(tellUnlessTrapped, int, sched_yield, (), (), noexcept)

#undef HOOK

}  // extern "C"

#endif
