#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A file that is written again and again while it grows, on a thread of its own: a slow disk
/// delays nobody who plays. At every moment it is whole on the disk, as one of its versions.
/// [main]
class NotesFile {
  public:
    /// Nothing is written before the first version, which takes the name unless it is taken; later
    /// ones replace it.
    explicit NotesFile(std::string path);
    ~NotesFile() { stop(); }
    NotesFile(const NotesFile&) = delete;
    NotesFile& operator=(const NotesFile&) = delete;

    const std::string& path() const { return m_path; }
    /// The next version; never waits. One that the disk was too slow for is left out. After a
    /// failure nothing more is written.
    void put(std::vector<std::uint8_t> version);
    /// Returns when the last version is on the disk. Answers one line if that failed, else nothing.
    [[nodiscard]] std::string finish();
    /// Whether there is a file of ours. After `finish`.
    bool exists() const { return m_exists; }

  private:
    void stop();
    void work();
    void write(const std::vector<std::uint8_t>& version);

    const std::string m_path;
    std::mutex m_mutex;
    std::condition_variable m_news;
    std::vector<std::uint8_t> m_next;  // empty: none
    bool m_finishing = false;
    std::string m_problem;  // [writer], as is m_exists, until it has ended
    bool m_exists = false;
    std::thread m_writer;
};
