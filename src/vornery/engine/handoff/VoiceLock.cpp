#include "handoff/VoiceLock.h"

namespace {
thread_local bool inVoiceLock = false;
}

VoiceLock::VoiceLock() noexcept {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    pthread_mutex_init(&m_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

VoiceLock::~VoiceLock() {
    pthread_mutex_destroy(&m_mutex);
}

void VoiceLock::lock() noexcept {
    inVoiceLock = true;
    pthread_mutex_lock(&m_mutex);
    inVoiceLock = false;
}

void VoiceLock::unlock() noexcept {
    inVoiceLock = true;
    pthread_mutex_unlock(&m_mutex);
    inVoiceLock = false;
}

bool VoiceLock::active() noexcept {
    return inVoiceLock;
}
