#include "JackServer.h"

#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "Recording.h"
#include "ScratchFolder.h"

namespace {

/// A /dev/shm that goes with this process and its children. JACK's registry lies there, which has
/// room for eight servers and keeps those that were killed. Where the system refuses, it is shared.
bool useOwnSharedMemory() {
    const auto user = std::to_string(geteuid());
    const auto group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        std::ofstream("/proc/self/uid_map") << user + ' ' + user + " 1";
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/gid_map") << group + ' ' + group + " 1";
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/dev/shm", "tmpfs", 0, nullptr) == 0;
}

}  // namespace

JackServer::JackServer() : m_name("ombrix-test-" + std::to_string(getpid())) {
    [[maybe_unused]] static const bool own = useOwnSharedMemory();
    setenv("JACK_DEFAULT_SERVER", m_name.c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
}

// A server that was killed leaves the semaphores of its clients behind.
JackServer::~JackServer() {
    if (m_process) {
        m_process->signal(SIGCONT);
        m_process->terminate();
    }
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm", ignored)) {
        if (entry.path().filename().string().find(m_name + "_") != std::string::npos)
            std::filesystem::remove(entry.path(), ignored);
    }
}

void JackServer::start(int rate, int periodFrames, int patience) {
    m_process = std::make_unique<Process>(std::vector<std::string>{
        "jackd", "-r", "--no-mlock", "-t", std::to_string(patience), "-n", m_name, "-d", "dummy",
        "-r", std::to_string(rate), "-p", std::to_string(periodFrames), "-C", "1", "-P", "2"});
    if (runProgram({"jack_wait", "-s", m_name, "-w", "-t", "20"}) != 0)
        throw std::runtime_error("the JACK server did not start");
}

std::vector<float> JackServer::record(const std::vector<std::string>& ports, int seconds) {
    ScratchFolder scratch;
    const std::string file = scratch.file("recorded.wav");
    // A server that is hard pressed may leave a new client out until its graph changes.
    std::vector<std::string> command{"timeout", std::to_string(seconds + 5), "jack_rec", "-f", file,
                                     "-d",      std::to_string(seconds),     "-b",       "32"};
    command.insert(command.end(), ports.begin(), ports.end());
    runProgram(command);
    return readRecording(file).frames;
}
