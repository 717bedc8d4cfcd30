#include "wavechoice/WaveLoading.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>

#include "folders/Folders.h"
#include "runloop/RunLoop.h"
#include "wavechoice/ArrivingWave.h"

namespace fs = std::filesystem;

namespace {

WaveLoadingDelegate nobody;

constexpr std::size_t kMostThreads = 4;
constexpr auto kPatience = std::chrono::milliseconds(300);  // for a file that may hang

bool liesIn(const fs::path& folder, const std::string& path) {
    std::error_code unknown;
    return fs::equivalent(folder, fs::path(path).parent_path(), unknown);
}

/// Whether presets would find it under its plain name.
bool isAtHome(const std::string& path) {
    const auto data = Folders::data();
    return (data && liesIn(*data, path)) || liesIn(Folders::resources(), path);
}

}  // namespace

/// One file on its way, shared with the thread that reads it.
struct WaveLoading::Job {
    const std::string path;
    const bool isForeign;
    const std::uint64_t choices;  // made when this one began

    // Of the main thread.
    Then then;
    bool started = false;

    // Of its own thread until it is over.
    WaveChoice::Loaded loaded;
    std::unique_ptr<ArrivingWave> copy;
    std::string copyError;

    std::mutex mutex;
    std::condition_variable changed;
    WaveLoading* owner;               // null: it has gone
    std::shared_ptr<VornWave2> wave;  // null until its file is open
    bool isUnwanted = false;
    bool isOver = false;

    Job(WaveLoading* from, std::string file, bool foreign, std::uint64_t made, Then whenSettled)
        : path(std::move(file)),
          isForeign(foreign),
          choices(made),
          then(std::move(whenSettled)),
          owner(from) {}

    void run(const std::shared_ptr<Job>& self) {
        try {
            read();
        } catch (const std::exception& failure) {  // out of memory, in practice
            loaded = {nullptr, "", path + ": " + failure.what(), "", path};
        }
        std::lock_guard guard(mutex);
        isOver = true;
        changed.notify_all();
        if (owner)
            RunLoop::main().callAfter(0, [self] {
                if (self->owner)
                    self->owner->ended(*self);
            });
    }

    void read() {
        const auto opened = WaveChoice::waveOf(path);
        {
            std::lock_guard guard(mutex);
            if (isUnwanted)
                return;
            wave = opened;
        }
        loaded = WaveChoice::read(opened, path);
        if (loaded.wave && isForeign && !isAtHome(path) && wanted())
            takeIn();
    }

    void takeIn() {
        copy = std::make_unique<ArrivingWave>(ArrivingWave::nameFor(path));
        if (copy->copy(path, copyError) && !copy->settle())
            copyError = copy->writeError();
        if (copyError.empty()) {
            loaded.filename = copy->name();
            loaded.path = WaveChoice::findWavePath(loaded.filename).value_or(path);
        }
    }

    bool wanted() {
        std::lock_guard guard(mutex);
        return !isUnwanted;
    }

    void giveUp() {
        std::lock_guard guard(mutex);
        isUnwanted = true;
        if (wave && !isOver)
            wave->abandon();
    }

    /// Its thread says nothing any more, and has ended unless its file hangs.
    void orphan() {
        giveUp();
        std::unique_lock held(mutex);
        owner = nullptr;
        changed.wait_for(held, kPatience, [this] { return isOver; });
    }
};

WaveLoading::WaveLoading(WaveChoice& waves) : m_waves(waves), m_delegate(&nobody) {}

WaveLoading::~WaveLoading() {
    for (const auto& job : m_running)
        job->giveUp();
    for (const auto& job : m_running)
        job->orphan();
}

void WaveLoading::setDelegate(WaveLoadingDelegate* delegate) {
    m_delegate = delegate ? delegate : &nobody;
}

void WaveLoading::setWaveTo(const std::string& path, Then then) {
    begin(path, false, std::move(then));
}

void WaveLoading::takeIn(const std::string& path, Then then) {
    begin(path, true, std::move(then));
}

void WaveLoading::begin(const std::string& path, bool isForeign, Then then) {
    std::error_code unknown;
    if (!fs::exists(path, unknown)) {
        const std::string fallback = WaveChoice::defaultSoundFile();
        if (path != fallback)
            return setWaveTo(fallback, std::move(then));
    }
    giveUp();
    m_wanted = std::make_shared<Job>(this, path, isForeign, m_waves.choices(), std::move(then));
    if (auto inUse = m_waves.inUse(path)) {
        m_wanted->loaded = std::move(*inUse);
        return ended(*m_wanted);
    }
    startWanted();
    m_delegate->loadingBeganOrEnded();
}

/// Files that are given up end soon, but a storm of choices must not pile up threads.
void WaveLoading::startWanted() {
    if (!m_wanted || m_wanted->started || m_running.size() >= kMostThreads)
        return;
    m_wanted->started = true;
    m_running.push_back(m_wanted);
    const auto run = [job = m_wanted] { job->run(job); };
    try {
        std::thread(run).detach();
    } catch (const std::system_error&) {
        run();  // no thread to be had: late is better than never
    }
}

void WaveLoading::ended(Job& job) {
    const auto kept = m_wanted;  // the job lives to the end of this
    std::erase_if(m_running, [&](const auto& running) { return running.get() == &job; });
    const bool isWanted = m_wanted.get() == &job;
    if (isWanted)
        m_wanted.reset();
    const bool arrived = isWanted && job.choices == m_waves.choices() && use(job);
    if (!arrived && job.copy)
        job.copy->withdraw();
    if (!isWanted)
        return startWanted();
    settle(job, arrived);
    m_delegate->loadingBeganOrEnded();
}

/// False, and the user is told, when there is nothing to use.
bool WaveLoading::use(Job& job) {
    for (const std::string& line : {job.loaded.error, job.loaded.notice}) {
        if (!line.empty())
            m_delegate->loadingTold(line);
    }
    if (!job.loaded.wave)
        return false;
    WaveChoice::generate(job.loaded);
    m_waves.use(job.loaded);
    if (job.copyError.empty())
        return true;
    m_waves.setCurrentWaveFilename(std::nullopt);
    m_delegate->loadingTold(job.copyError + "; the sound plays, but is not kept");
    return true;
}

void WaveLoading::settle(Job& job, bool arrived) {
    if (job.then)
        job.then(arrived);
    if (arrived)
        m_delegate->waveArrived();
    else
        fallBack(job.path);
}

/// At the start there is nothing else to play.
void WaveLoading::fallBack(const std::string& failed) {
    const std::string fallback = WaveChoice::defaultSoundFile();
    if (!m_waves.currentWave() && !m_wanted && failed != fallback)
        setWaveTo(fallback, nullptr);
}

void WaveLoading::cancel() {
    const auto given = m_wanted;
    if (!given)
        return;
    giveUp();
    settle(*given, false);
    m_delegate->loadingBeganOrEnded();
}

void WaveLoading::giveUp() {
    if (m_wanted)
        m_wanted->giveUp();
    m_wanted.reset();
}

std::string WaveLoading::filename() const {
    return m_wanted ? fs::path(m_wanted->path).filename().string() : "";
}

float WaveLoading::progress() const {
    if (!m_wanted)
        return 0.f;
    std::lock_guard guard(m_wanted->mutex);
    return m_wanted->wave ? m_wanted->wave->progress() : 0.f;
}
