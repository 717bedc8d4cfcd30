#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "ScratchFolder.h"
#include "TracedChild.h"
#include "parameters/PresetStore.h"

namespace {

Preset presetOf(const std::string& name, float grainSize = 0) {
    Preset preset;
    preset.name = name;
    preset.setNumber(ParameterId::grainSize, grainSize);
    return preset;
}

/// The numbers of the stores that a file may hold: each is a list of so many presets.
int count(const std::string& path) {
    const PresetFile file = PresetFile::read(path);
    EXPECT_EQ(file.state, PresetFile::State::read) << file.error;
    EXPECT_TRUE(file.repairs.empty());
    for (const auto& [key, preset] : file.list.presets)
        EXPECT_EQ(preset.number(ParameterId::grainSize), 0.5f);
    return static_cast<int>(file.list.presets.size());
}

class PresetStoreFaults : public testing::Test {
  protected:
    PresetStore open() {
        return PresetStore(m_path, "", [this](const std::string& line) { m_told += line + '\n'; });
    }

    /// A store of two presets over a backup of one.
    void makeStore() {
        std::filesystem::remove_all(m_folder.path());
        PresetStore store = open();
        for (const char* name : {"First", "Second"})
            ASSERT_EQ(store.save(presetOf(name, 0.5f)), "");
    }

    int saveThird() { return open().save(presetOf("Third", 0.5f)).empty() ? 0 : 1; }

    /// A store, its backup and its lock, when nothing is left behind.
    long files() const {
        const std::filesystem::directory_iterator folder(m_folder.path());
        return std::distance(begin(folder), end(folder));
    }

    void expectWhole(int before) {
        const int now = count(m_path);
        EXPECT_TRUE(now == before || now == 3) << now;
        const int backup = count(m_path + ".bak");
        EXPECT_TRUE(backup == 1 || backup == 2) << backup;
        // What was left behind must not stop the next save.
        EXPECT_EQ(saveThird(), 0);
        EXPECT_EQ(count(m_path), 3);
        EXPECT_EQ(files(), 3);
        EXPECT_EQ(m_told, "");
    }

    ScratchFolder m_folder;
    std::string m_path = m_folder.file("presets.plist");
    std::string m_told;
};

}  // namespace

TEST_F(PresetStoreFaults, neverTearAStoreThatIsKilledAtAnySystemCall) {
    if (!TracedChild::isPermitted())
        GTEST_SKIP() << "this machine permits no tracing of processes";
    TracedChild child([this] { return saveThird(); });
    int points = 0;
    for (bool reached = true; reached; points += reached) {
        SCOPED_TRACE("killed at call " + std::to_string(points));
        makeStore();
        reached = child.killAt(points).reached;
        expectWhole(reached ? 2 : 3);
        if (HasFailure())
            return;
    }
    EXPECT_GT(points, 20);
    std::printf("%d kill points, 0 torn stores\n", points);
}

TEST_F(PresetStoreFaults, saySoWhenACallFailsAndKeepTheStore) {
    if (!TracedChild::isPermitted())
        GTEST_SKIP() << "this machine permits no tracing of processes";
    TracedChild child([this] { return saveThird(); });
    int points = 0;
    int refused = 0;
    for (const int failure : {EIO, ENOSPC}) {
        bool reached = true;
        for (int index = 0; reached; ++index) {
            SCOPED_TRACE("error " + std::to_string(failure) + " at " + std::to_string(index));
            makeStore();
            const TracedChild::Outcome outcome = child.failAt(index, failure);
            reached = outcome.reached;
            points += reached;
            refused += outcome.exitCode == 1;
            ASSERT_TRUE(outcome.exitCode == 0 || outcome.exitCode == 1);
            EXPECT_EQ(count(m_path), outcome.exitCode == 0 ? 3 : 2);
            expectWhole(2);
            if (HasFailure())
                return;
        }
    }
    EXPECT_GT(refused, 10);
    std::printf("%d failed calls, %d refused saves, 0 torn stores\n", points, refused);
}

TEST_F(PresetStoreFaults, loseNothingBetweenTwoProcesses) {
    constexpr int kEach = 50;
    const auto saveAll = [this](char who) {
        PresetStore store = open();
        for (int i = 0; i < kEach; ++i) {
            if (!store.save(presetOf(who + std::to_string(i), 0.5f)).empty())
                _exit(1);
        }
        _exit(0);
    };
    std::vector<pid_t> children;
    for (const char who : {'a', 'b'}) {
        children.push_back(fork());
        if (children.back() == 0)
            saveAll(who);
    }
    int status = 0;
    for (const pid_t child : children) {
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(count(m_path), 2 * kEach);
}

TEST_F(PresetStoreFaults, areToldWhereNothingCanBeWritten) {
    makeStore();
    std::filesystem::permissions(m_folder.path(), std::filesystem::perms(0555));
    const pid_t child = fork();
    if (child == 0) {
        if (getuid() == 0 && setuid(65534) != 0)
            _exit(9);
        PresetStore store = open();
        const std::string refused = store.save(presetOf("Third"));
        const bool isPlain =
            refused.find("Permission denied") != refused.npos && refused.find('\n') == refused.npos;
        _exit(store.presets().size() == 2 && isPlain && m_told.empty() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    std::filesystem::permissions(m_folder.path(), std::filesystem::perms(0755));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(count(m_path), 2);
}
