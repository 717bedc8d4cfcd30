#include "recording/NotesFile.h"

#include <utility>

#include "storage/AsideFile.h"

NotesFile::NotesFile(std::string path) : m_path(std::move(path)), m_writer([this] { work(); }) {}

void NotesFile::put(std::vector<std::uint8_t> version) {
    const std::lock_guard guard(m_mutex);
    m_next = std::move(version);
    m_news.notify_one();
}

std::string NotesFile::finish() {
    stop();
    return m_problem;
}

void NotesFile::stop() {
    {
        const std::lock_guard guard(m_mutex);
        m_finishing = true;
        m_news.notify_one();
    }
    if (m_writer.joinable())
        m_writer.join();
}

void NotesFile::work() {
    std::unique_lock held(m_mutex);
    for (;;) {
        m_news.wait(held, [this] { return m_finishing || !m_next.empty(); });
        if (m_next.empty())
            return;
        const auto version = std::exchange(m_next, {});
        held.unlock();
        write(version);
        held.lock();
    }
}

void NotesFile::write(const std::vector<std::uint8_t>& version) {
    if (!m_problem.empty())
        return;
    AsideFile file(m_path);
    file.write(version);
    if (m_exists) {
        if (!file.replaceTarget())
            m_problem = file.error();
        return;
    }
    const AsideFile::Put put = file.putNew(m_path);
    m_exists = put == AsideFile::Put::done;
    if (!m_exists)
        m_problem = put == AsideFile::Put::taken ? m_path + ": cannot write: it exists already"
                                                 : file.error();
}
