#include "editing/EditWorker.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

#include "log/Log.h"
#include "runloop/RunLoop.h"

namespace {

constexpr auto kPatience = std::chrono::milliseconds(300);  // for work that hangs

}  // namespace

/// One piece of work, shared with its thread.
struct EditWorker::Job {
    const Work work;
    const Done done;
    EditWatch watch;
    bool started = false;

    std::mutex mutex;
    std::condition_variable changed;
    EditWorker* owner;  // null: it has gone, or has heard of the end [main]
    bool isOver = false;

    Job(EditWorker* from, Work what, Done then)
        : work(std::move(what)), done(std::move(then)), owner(from) {}

    static void run(std::shared_ptr<Job> self) {
        try {
            self->work(self->watch);
        } catch (const std::exception& failure) {  // out of memory: there is no result
            Log::line("Editing: %s", failure.what());
        }
        {
            std::lock_guard guard(self->mutex);
            self->isOver = true;
            self->changed.notify_all();
        }
        RunLoop::main().callAfter(0, [kept = std::move(self)] {
            if (kept->owner)
                kept->owner->ended(*kept);
        });
    }

    void awaitEnd() {
        std::unique_lock held(mutex);
        changed.wait(held, [this] { return isOver; });
    }

    void orphan() {
        owner = nullptr;
        std::unique_lock held(mutex);
        changed.wait_for(held, kPatience, [this] { return isOver; });
    }
};

EditWorker::~EditWorker() {
    cancel();
    for (const auto& job : m_running)
        job->orphan();
}

void EditWorker::begin(Work work, Done done) {
    cancel();
    m_wanted = std::make_shared<Job>(this, std::move(work), std::move(done));
    startWanted();
}

void EditWorker::startWanted() {
    if (!m_wanted || m_wanted->started || m_running.size() >= m_threads)
        return;
    m_wanted->started = true;
    m_running.push_back(m_wanted);
    try {
        std::thread([job = m_wanted]() mutable { Job::run(std::move(job)); }).detach();
    } catch (const std::system_error&) {
        Job::run(m_wanted);  // no thread to be had: late is better than never
    }
}

/// The report of work that was waited for is still to come, and finds nobody.
void EditWorker::ended(Job& job) {
    const auto isIt = [&](const auto& running) { return running.get() == &job; };
    const auto found = std::ranges::find_if(m_running, isIt);
    const auto kept = *found;  // the job lives to the end of this
    m_running.erase(found);
    job.owner = nullptr;
    if (m_wanted == kept) {
        m_wanted.reset();
        job.done();
    }
    startWanted();
}

void EditWorker::cancel() {
    if (m_wanted)
        m_wanted->watch.unwanted = true;
    m_wanted.reset();
}

void EditWorker::awaitRunning() {
    const auto job = m_running.front();
    job->awaitEnd();
    ended(*job);
}

void EditWorker::finish() {
    for (const auto wanted = m_wanted; wanted && m_wanted == wanted;)
        awaitRunning();
}

void EditWorker::stop() {
    cancel();
    while (!m_running.empty())
        awaitRunning();
}

float EditWorker::progress() const {
    return m_wanted ? m_wanted->watch.progress.load() : 0.f;
}
