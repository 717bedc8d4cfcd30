#include "Program.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

namespace {

constexpr unsigned kLongestSeconds = 60;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentOf(const Program::Surroundings& surroundings) {
    std::vector<std::string> texts;
    for (const auto& [name, value] : surroundings.environment)
        texts.push_back(name + "=" + value);
    for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char* value = std::getenv(name))
            texts.push_back(std::string(name) + "=" + value);
    }
    return texts;
}

std::string allOf(int file) {
    std::string text;
    std::array<char, 4096> piece;
    off_t at = 0;
    for (ssize_t got; (got = pread(file, piece.data(), piece.size(), at)) > 0; at += got)
        text.append(piece.data(), std::size_t(got));
    return text;
}

// In the child, between fork and exec.
void settle(const Program::Surroundings& surroundings, int out, int err) {
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (surroundings.largestFile) {
        const rlimit limit{*surroundings.largestFile, *surroundings.largestFile};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);  // writing then answers an error, as on a full disk
    }
    if (chdir(surroundings.folder.c_str()) != 0)
        _exit(127);
    alarm(kLongestSeconds);
}

}  // namespace

Program::Program(const Words& arguments, const Surroundings& surroundings)
    : m_out(memfd_create("out", MFD_CLOEXEC)), m_err(memfd_create("err", MFD_CLOEXEC)) {
    Words words{OMBRIX_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    Words environment = environmentOf(surroundings);
    const auto wordPointers = pointersTo(words);
    const auto environmentPointers = pointersTo(environment);
    m_process = fork();
    if (m_process != 0)
        return;
    settle(surroundings, m_out, m_err);
    execve(OMBRIX_PROGRAM, wordPointers.data(), environmentPointers.data());
    _exit(127);
}

Program::~Program() {
    if (!m_outcome && m_process > 0) {
        signal(SIGKILL);
        wait();
    }
    close(m_out);
    close(m_err);
}

void Program::signal(int number) const {
    kill(m_process, number);
}

bool Program::running() {
    int status = 0;
    if (!m_outcome && waitpid(m_process, &status, WNOHANG) == m_process)
        collect(status);
    return !m_outcome;
}

const Outcome& Program::wait() {
    int status = 0;
    if (!m_outcome && waitpid(m_process, &status, 0) == m_process)
        collect(status);
    return *m_outcome;
}

void Program::collect(int status) {
    m_outcome.emplace();
    m_outcome->exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    m_outcome->signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    m_outcome->out = allOf(m_out);
    m_outcome->err = allOf(m_err);
}
