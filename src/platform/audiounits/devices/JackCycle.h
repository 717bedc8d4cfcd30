#pragma once

#include <pthread.h>

/// Runs what a client does in a cycle. JACK ends a client's thread by cancelling it wherever it is;
/// this lets it come only when the work is done, since nothing can be unwound from there. [audio];
/// no system call.
template <typename Work>
void runJackCycle(Work work) {
    int before = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
    work();
    pthread_setcancelstate(before, nullptr);
}
