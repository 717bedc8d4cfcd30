#include "screens/MainLoop.h"

#include <algorithm>
#include <cmath>

#include "log/Log.h"
#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

namespace {
constexpr double kLongestSleep = 1.0;  // seconds until a line of the audio thread is formatted
}

MainLoop::MainLoop() {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &MainLoop::turn);
    RunLoop::main().setWaker(
        [this] { QMetaObject::invokeMethod(this, &MainLoop::sleep, Qt::QueuedConnection); });
    sleep();
}

MainLoop::~MainLoop() {
    RunLoop::main().setWaker(nullptr);
}

void MainLoop::turn() {
    RunLoop::main().turn();
    Log::drain();
    sleep();
}

void MainLoop::sleep() {
    const double wait = RunLoop::main().nextDue() - Clock::monotonic();
    m_timer.start(static_cast<int>(std::ceil(std::clamp(wait, 0.0, kLongestSleep) * 1000)));
}
