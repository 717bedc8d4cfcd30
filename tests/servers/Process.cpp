#include "Process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <stdexcept>

extern char** environ;

Process::Process(const std::vector<std::string>& arguments, const std::string& log) {
    // A test that crashes takes its programs with it.
    std::vector<std::string> guarded{"setpriv", "--pdeathsig", "KILL"};
    guarded.insert(guarded.end(), arguments.begin(), arguments.end());
    std::vector<char*> words;
    for (const std::string& argument : guarded)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    const int failed = posix_spawnp(&m_pid, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed)
        throw std::runtime_error("cannot run " + arguments[0]);
}

Process::~Process() {
    kill();
}

void Process::signal(int number) {
    if (m_pid > 0)
        ::kill(m_pid, number);
}

bool Process::running() {
    int status = 0;
    if (m_pid > 0 && waitpid(m_pid, &status, WNOHANG) == m_pid)
        m_pid = -1;
    return m_pid > 0;
}

void Process::terminate() {
    signal(SIGTERM);
    wait();
}

void Process::kill() {
    signal(SIGKILL);
    wait();
}

int Process::wait() {
    if (m_pid <= 0)
        return -1;
    int status = 0;
    waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int runProgram(const std::vector<std::string>& arguments) {
    return Process(arguments).wait();
}
