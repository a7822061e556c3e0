// What is lost when the process is killed before any call that changes something, and when the
// power is cut: docs/data-store.md lists it.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/common/FileCalls.h"
#include "tests/common/StoreFixture.h"

namespace {

namespace fs = std::filesystem;
using Action = std::function<void(PYL::DataStore&)>;

constexpr auto sizes = std::to_array<std::size_t>({0, 1, 20, 1000});

bool changesSomething(FileCall const& call) {
    static std::set<std::string> const names = {"pwrite", "rename", "unlink",
                                                "chmod",  "fchmod", "fchown"};
    return names.contains(call.name) || (call.flags & (O_CREAT | O_TRUNC)) != 0;
}

/// Writes the first half of what the call would write.
void writeHalf(FileCall const& call) {
    std::fstream file(call.path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(call.offset);
    file.write(call.data.data(), static_cast<std::streamsize>(call.data.size() / 2));
}

struct DataStoreCrash : StoreFixture {
    /// Runs the action in a process that is killed in place of its changing call with this number,
    /// a write half done if wanted. The call; none when there are fewer.
    std::optional<std::string> killedBefore(std::size_t number, bool half,
                                            std::function<void()> const& action) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return std::nullopt;
        pid_t const child = fork();
        if (child == 0) {
            std::size_t current = 0;
            HookedFileCalls const hooked([&](FileCall const& call) {
                if (!changesSomething(call) || current++ != number) return made;
                if (half && call.name == "pwrite") writeHalf(call);
                auto const line = call.name + " " + fs::path(call.path).filename().string();
                [[maybe_unused]] auto const written = ::write(ends[1], line.data(), line.size());
                kill(getpid(), SIGKILL);
                return made;
            });
            action();
            _exit(0);
        }
        ::close(ends[1]);
        std::array<char, 256> line{};
        auto const length = ::read(ends[0], line.data(), line.size());
        ::close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFSIGNALED(status)) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "wait status " << status;
            return std::nullopt;
        }
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
        return std::string(line.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    }

    void start(std::string const& bytes) {
        for (auto const& file : {path, copy, unfinished}) fs::remove(file);
        write(bytes);
    }

    /// What the file holds after the undisturbed action.
    std::string done(std::string const& bytes, Action const& action) {
        start(bytes);
        action(*open());
        return content();
    }
};

TEST_F(DataStoreCrash, LeavesTheOldRecordOrTheFirstBytesOfTheNewOne) {
    for (auto const size : sizes)
        for (auto const* const value : {"w999999", "longer-than-it-was", "short"})
            for (bool const half : {false, true}) {
                auto const bytes = numberedRecords(size);
                auto const key = numberedRecord(size / 2).substr(0, 7);
                auto const record = key + " " + value + "\r\n";
                start(bytes);
                auto const store = open();
                auto const storing = [&] { store->storeString(key, value); };
                auto const call = killedBefore(0, half, storing);
                EXPECT_EQ(call, "pwrite t.txt");
                auto expected = bytes;
                auto const written = record.substr(0, half ? record.size() / 2 : 0);
                expected.replace(numberedRecord(0).size() * (size / 2), written.size(), written);
                EXPECT_EQ(content(), expected);
                open();
                EXPECT_EQ(content(), expected);
                EXPECT_FALSE(killedBefore(1, half, storing));
            }
}

TEST_F(DataStoreCrash, LosesNothingInARemoval) {
    for (auto const size : sizes) {
        auto const bytes = numberedRecords(size);
        auto const key = numberedRecord(size / 2).substr(0, 7);
        auto const removed = done(bytes, [&](auto& store) { store.remove(key); });
        std::vector<std::string> calls;
        std::size_t torn = 0;
        for (bool const half : {false, true})
            for (std::size_t number = 0;; ++number) {
                start(bytes);
                auto store = open();
                auto const call = killedBefore(number, half, [&] { store->remove(key); });
                store.reset();
                if (!call) break;
                if (!half) calls.push_back(*call);
                if (content() != bytes && content() != removed) ++torn;
                auto const next = open();
                EXPECT_TRUE(content() == bytes || content() == removed) << *call << ", " << size;
                EXPECT_EQ(next->exists(key), size > 0 && content() == bytes);
                EXPECT_FALSE(fs::exists(copy));
            }
        Lines const changes = removed.empty() ? Lines{"unlink t.txt.rewrite.new",
                                                      "open t.txt.rewrite.new",
                                                      "fchmod t.txt.rewrite.new",
                                                      "rename t.txt.rewrite.new",
                                                      "open t.txt",
                                                      "unlink t.txt.rewrite"}
                                              : Lines{"unlink t.txt.rewrite.new",
                                                      "open t.txt.rewrite.new",
                                                      "fchmod t.txt.rewrite.new",
                                                      "pwrite t.txt.rewrite.new",
                                                      "rename t.txt.rewrite.new",
                                                      "open t.txt",
                                                      "pwrite t.txt",
                                                      "unlink t.txt.rewrite"};
        EXPECT_EQ(calls, changes);
        EXPECT_EQ(torn > 0, !removed.empty()) << "the copy was never needed";
    }
}

TEST_F(DataStoreCrash, LeavesNoFileOrOneOfTheTightModeWhenItCreates) {
    fs::remove(path);
    EXPECT_EQ(killedBefore(0, false, [] { open(); }), "rename t.txt.rewrite");
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(killedBefore(1, false, [] { open(); }), "open t.txt");
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(killedBefore(2, false, [] { open(); }), "chmod t.txt");
    open();
    struct stat facts {};
    ASSERT_EQ(::stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 0600U);
}

TEST_F(DataStoreCrash, FinishesARemovalEvenWhenItIsKilledWhileItFinishesOne) {
    write("b");
    write(copy, "b 2\r\n");
    EXPECT_EQ(killedBefore(0, false, [] { open(); }), "rename t.txt.rewrite");
    EXPECT_EQ(open()->fetchString("b"), "2");
}

// Power cuts

/// A change on the disk that lasts from the next sync of its file or directory on, and may or may
/// not before.
struct Change {
    int file = 0;                          ///< 0 is the directory
    std::map<std::string, int> entries{};  ///< names that get another file; 0 for none
    bool cut = false;                      ///< the file is cut to nothing
    std::string data{};                    ///< that is written
    long offset = 0;
    std::optional<std::size_t> syncedBy{};  ///< the number of the event that makes it last
};

/// What a disk may hold after a power cut at any point of a recorded operation.
class RecordedDisk {
public:
    RecordedDisk(std::string directory, std::map<std::string, std::string> const& files)
        : _directory(std::move(directory)) {
        for (auto const& [name, bytes] : files) {
            _entries[name] = ++_lastFile;
            _startEntries[name] = _lastFile;
            _startBytes[_lastFile] = bytes;
        }
    }

    /// Notes a call that is about to be made.
    void note(FileCall const& call) {
        ++_events;
        int const file = call.path == _directory ? 0 : _entries[call.path];
        if (call.name == "open" && (call.flags & O_CREAT) != 0 && file == 0)
            change({.entries = {{call.path, ++_lastFile}}});
        else if (call.name == "open" && (call.flags & O_TRUNC) != 0)
            change({.file = file, .cut = true});
        else if (call.name == "pwrite")
            change({.file = file, .data = call.data, .offset = call.offset});
        else if (call.name == "rename" && file != 0)
            change({.entries = {{call.path, 0}, {call.target, file}}});
        else if (call.name == "unlink" && file != 0)
            change({.entries = {{call.path, 0}}});
        else if (call.name == "fsync")
            for (auto& [at, each] : _changes)
                if (each.file == file && !each.syncedBy) each.syncedBy = _events;
    }

    /// Calls with the files of every state that a cut may leave: after each event, all that is
    /// synced, and of the rest any choice, writes by half too.
    void forEachState(std::function<void(std::map<std::string, std::string> const&)> const& use) {
        for (std::size_t cut = 0; cut <= _events; ++cut) addStates(cut);
        for (auto const& state : _states) use(state);
    }

private:
    enum Share { none, half, whole };

    void change(Change change) {
        for (auto const& [name, file] : change.entries) _entries[name] = file;
        _changes.emplace_back(_events, std::move(change));
    }

    void addStates(std::size_t cut) {
        std::vector<Share> shares;
        std::function<void()> const choose = [&] {
            if (shares.size() == _changes.size() || _changes[shares.size()].first > cut) {
                _states.insert(stateOf(shares));
                return;
            }
            auto const& next = _changes[shares.size()].second;
            bool const lasts = next.syncedBy && *next.syncedBy <= cut;
            for (Share const share : {whole, half, none}) {
                if (share != whole && (lasts || (share == half && next.data.empty()))) continue;
                shares.push_back(share);
                choose();
                shares.pop_back();
            }
        };
        choose();
    }

    std::map<std::string, std::string> stateOf(std::vector<Share> const& shares) const {
        auto entries = _startEntries;
        auto bytes = _startBytes;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            auto const& each = _changes[i].second;
            if (shares[i] == none) continue;
            for (auto const& [name, file] : each.entries) entries[name] = file;
            auto& content = bytes[each.file];
            if (each.cut) content.clear();
            auto const size = shares[i] == half ? each.data.size() / 2 : each.data.size();
            auto const end = static_cast<std::size_t>(each.offset) + size;
            if (size > 0 && content.size() < end) content.resize(end);
            content.replace(static_cast<std::size_t>(each.offset), size, each.data, 0, size);
        }
        std::map<std::string, std::string> files;
        for (auto const& [name, file] : entries)
            if (file != 0) files[name] = bytes[file];
        return files;
    }

    std::string _directory;
    std::map<std::string, int> _entries, _startEntries;
    std::map<int, std::string> _startBytes;
    std::vector<std::pair<std::size_t, Change>> _changes;  // with the number of the event
    std::size_t _events = 0;
    int _lastFile = 0;
    std::set<std::map<std::string, std::string>> _states;
};

struct PowerCut : DataStoreCrash {
    std::string const directory = path.substr(0, path.rfind('/') + 1);

    RecordedDisk record(std::map<std::string, std::string> const& contents, Action const& action) {
        for (auto const& file : {path, copy, unfinished}) fs::remove(file);
        for (auto const& [name, bytes] : contents) write(name, bytes);
        auto const store = open();
        RecordedDisk disk(directory, contents);
        HookedFileCalls const hooked([&](FileCall const& call) {
            auto named = call;
            if (named.path + "/" == directory) named.path = directory;
            disk.note(named);
            return made;
        });
        action(*store);
        return disk;
    }

    std::string contentAfter(std::map<std::string, std::string> const& contents) {
        for (auto const& file : {path, copy, unfinished}) fs::remove(file);
        for (auto const& [name, bytes] : contents) write(name, bytes);
        open();
        return content();
    }
};

TEST_F(PowerCut, LosesNothingInARemoval) {
    for (auto const size : sizes) {
        auto const bytes = numberedRecords(size);
        Action const remove = [&](auto& store) {
            store.remove(numberedRecord(size / 2).substr(0, 7));
        };
        auto const removed = done(bytes, remove);
        for (bool const leftOver : {false, true}) {
            std::map<std::string, std::string> contents = {{path, bytes}};
            if (leftOver) contents[unfinished] = "half a reco";
            std::size_t torn = 0;
            std::size_t states = 0;
            record(contents, remove).forEachState([&](auto const& state) {
                auto const& raw = state.at(path);
                if (raw != bytes && raw != removed) ++torn;
                ++states;
                auto const next = contentAfter(state);
                EXPECT_TRUE(next == bytes || next == removed) << next;
            });
            EXPECT_GE(states, removed.empty() ? 3U : 8U);
            EXPECT_EQ(torn > 0, !removed.empty()) << "the copy was never needed";
        }
    }
}

TEST_F(PowerCut, LosesAtMostTheRecordThatIsStoredInPlace) {
    auto const bytes = numberedRecords(20);
    auto const before = numberedRecord(3);
    auto const key = before.substr(0, 7);
    record({{path, bytes}}, [&](auto& store) {
        store.storeString(key, "w999999");
    }).forEachState([&](auto const& state) {
        auto left = contentAfter(state);
        ASSERT_EQ(left.size(), bytes.size());
        left.replace(3 * before.size(), before.size(), before);
        EXPECT_EQ(left, bytes);
        auto const found = open()->fetchString(key);
        EXPECT_TRUE(found == "v000003" || found == "w999999") << found;
    });
}

}  // namespace
