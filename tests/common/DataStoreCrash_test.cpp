// What is lost when the process is killed before any call that changes something, and when the
// power is cut: docs/data-store.md lists it.

#include "tests/common/FileCalls.h"
#include "tests/common/StoreFixture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Action = std::function<void(PYL::DataStore&)>;

constexpr auto sizes = std::to_array<std::size_t>({0, 1, 20, 1000});

bool changesSomething(const FileCall& call) {
    static const std::set<std::string> names = {"pwrite", "rename", "unlink",
                                                "chmod",  "fchmod", "fchown"};
    return names.contains(call.name) || (call.flags & (O_CREAT | O_TRUNC)) != 0;
}

/// Writes the first half of what the call would write.
void writeHalf(const FileCall& call) {
    std::fstream file(call.path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(call.offset);
    file.write(call.data.data(), static_cast<std::streamsize>(call.data.size() / 2));
}

struct DataStoreCrash : StoreFixture {
    /// Runs the action in a process that is killed in place of its changing call with this number,
    /// a write half done if wanted. The call; none when there are fewer.
    std::optional<std::string> killedBefore(std::size_t number, bool half,
                                            const std::function<void()>& action) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return std::nullopt;
        const pid_t child = fork();
        if (child == 0) {
            std::size_t current = 0;
            const HookedFileCalls hooked([&](const FileCall& call) {
                if (!changesSomething(call) || current++ != number) return made;
                if (half && call.name == "pwrite") writeHalf(call);
                const auto line = call.name + " " + fs::path(call.path).filename().string();
                [[maybe_unused]] const auto written = ::write(ends[1], line.data(), line.size());
                kill(getpid(), SIGKILL);
                return made;
            });
            action();
            _exit(0);
        }
        ::close(ends[1]);
        std::array<char, 256> line{};
        const auto length = ::read(ends[0], line.data(), line.size());
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

    void start(const std::string& bytes) {
        for (const auto& file : {path, copy, unfinished}) fs::remove(file);
        write(bytes);
    }

    /// What the file holds after the undisturbed action.
    std::string done(const std::string& bytes, const Action& action) {
        start(bytes);
        action(*open());
        return content();
    }
};

TEST_F(DataStoreCrash, LeavesTheOldRecordOrTheFirstBytesOfTheNewOne) {
    for (const auto size : sizes) {
        for (const auto* const value : {"w999999", "longer-than-it-was", "short"}) {
            for (const bool half : {false, true}) {
                const auto bytes = numberedRecords(size);
                const auto key = numberedRecord(size / 2).substr(0, 7);
                const auto record = key + " " + value + "\r\n";
                start(bytes);
                const auto store = open();
                const auto storing = [&] { store->storeString(key, value); };
                const auto call = killedBefore(0, half, storing);
                EXPECT_EQ(call, "pwrite t.txt");
                auto expected = bytes;
                const auto written = record.substr(0, half ? record.size() / 2 : 0);
                expected.replace(numberedRecord(0).size() * (size / 2), written.size(), written);
                EXPECT_EQ(content(), expected);
                open();
                EXPECT_EQ(content(), expected);
                EXPECT_FALSE(killedBefore(1, half, storing));
            }
        }
    }
}

TEST_F(DataStoreCrash, LosesNothingInARemoval) {
    for (const auto size : sizes) {
        const auto bytes = numberedRecords(size);
        const auto key = numberedRecord(size / 2).substr(0, 7);
        const auto removed = done(bytes, [&](auto& store) { store.remove(key); });
        std::vector<std::string> calls;
        std::size_t torn = 0;
        for (const bool half : {false, true}) {
            for (std::size_t number = 0;; ++number) {
                start(bytes);
                auto store = open();
                const auto call = killedBefore(number, half, [&] { store->remove(key); });
                store.reset();
                if (!call) break;
                if (!half) calls.push_back(*call);
                if (content() != bytes && content() != removed) ++torn;
                const auto next = open();
                EXPECT_TRUE(content() == bytes || content() == removed) << *call << ", " << size;
                EXPECT_EQ(next->exists(key), size > 0 && content() == bytes);
                EXPECT_FALSE(fs::exists(copy));
            }
        }
        const Lines changes =
            removed.empty()
                ? Lines{"open t.txt.rewrite.new", "fchmod t.txt.rewrite.new",
                        "rename t.txt.rewrite.new", "open t.txt", "unlink t.txt.rewrite"}
                : Lines{"open t.txt.rewrite.new",
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
    EXPECT_EQ(killedBefore(0, false, [] { open(); }), "open t.txt");
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(killedBefore(1, false, [] { open(); }), "chmod t.txt");
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

// Two processes

/// A removal of one of twenty keys in another process, which waits before it cuts the file, and is
/// killed before it writes it again.
struct HeldRemoval : DataStoreCrash {
    const std::string bytes = numberedRecords(20);
    const std::string key = numberedRecord(10).substr(0, 7);
    const std::string removed = done(bytes, [this](auto& store) { store.remove(key); });

    HeldRemoval() {
        start(bytes);
        if (pipe(_held.data()) != 0 || pipe(_released.data()) != 0) std::abort();
        _child = fork();
        if (_child == 0) _removeAndDie();
        ::close(_held[1]);
        ::close(_released[0]);
        char byte = 0;
        EXPECT_EQ(::read(_held[0], &byte, 1), 1);
        log.journal->take();
    }
    ~HeldRemoval() override {
        if (_child > 0) finish();
        ::close(_held[0]);
    }

    /// Lets the process go on to its end; or not, and it is killed where it waits.
    void finish(bool goOn = true) {
        if (!goOn) kill(_child, SIGKILL);
        ::close(_released[1]);
        int status = 0;
        waitpid(std::exchange(_child, -1), &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
    }

    std::size_t keysOf(PYL::DataStore& store) const {
        std::size_t found = 0;
        for (std::size_t i = 0; i < 20; ++i) {
            found += store.exists(numberedRecord(i).substr(0, 7)) ? 1 : 0;
        }
        return found;
    }

private:
    [[noreturn]] void _removeAndDie() {
        ::close(_released[1]);
        const auto store = open();
        const HookedFileCalls hooked([this](const FileCall& call) {
            if (call.path != path) return made;
            if (call.name == "pwrite") kill(getpid(), SIGKILL);
            if ((call.flags & O_TRUNC) != 0) {
                char byte = 0;
                if (::write(_held[1], &byte, 1) != 1 || ::read(_released[0], &byte, 1) < 0) {
                    _exit(1);
                }
            }
            return made;
        });
        store->remove(key);
        _exit(0);
    }

    std::array<int, 2> _held{};
    std::array<int, 2> _released{};
    pid_t _child = -1;
};

TEST_F(HeldRemoval, KeepsItsCopyFromAStoreThatIsOpenedMeanwhile) {
    const auto other = open();
    EXPECT_EQ(log.journal->take()[2],
              "information: /etc/cim/t.txt is being rewritten by a removal that is running");
    EXPECT_EQ(keysOf(*other), 20U);
    EXPECT_TRUE(fs::exists(copy));
    finish();
    EXPECT_EQ(content(), "");
    const auto next = open();
    EXPECT_EQ(keysOf(*next), 19U);
    EXPECT_EQ(content(), removed);
    EXPECT_FALSE(fs::exists(copy));
}

TEST_F(HeldRemoval, LeavesItsCopyToTheNextStoreWhenItIsKilledWhereItWaits) {
    open();
    finish(false);
    EXPECT_EQ(content(), bytes);
    EXPECT_EQ(keysOf(*open()), 19U);
    EXPECT_EQ(content(), removed);
}

TEST_F(HeldRemoval, KeepsItsCopyFromAnotherRemoval) {
    const auto other = open();
    log.journal->take();
    other->remove(numberedRecord(3).substr(0, 7));
    EXPECT_EQ(log.journal->take(), (Lines{"information: remove():",
                                          "warning: /etc/cim/t.txt is rewritten without a copy: "
                                          "Resource temporarily unavailable"}));
    EXPECT_TRUE(fs::exists(copy));
    finish();
    EXPECT_EQ(keysOf(*open()), 19U);
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
    RecordedDisk(std::string directory, const std::map<std::string, std::string>& files)
        : _directory(std::move(directory)) {
        for (const auto& [name, bytes] : files) {
            _entries[name] = ++_lastFile;
            _startEntries[name] = _lastFile;
            _startBytes[_lastFile] = bytes;
        }
    }

    /// Notes a call that is about to be made.
    void note(const FileCall& call) {
        ++_events;
        const int file = call.path == _directory ? 0 : _entries[call.path];
        if (call.name == "open" && (call.flags & O_CREAT) != 0 && file == 0) {
            _change({.entries = {{call.path, ++_lastFile}}});
        } else if (call.name == "open" && (call.flags & O_TRUNC) != 0) {
            _change({.file = file, .cut = true});
        } else if (call.name == "pwrite") {
            _change({.file = file, .data = call.data, .offset = call.offset});
        } else if (call.name == "rename" && file != 0) {
            _change({.entries = {{call.path, 0}, {call.target, file}}});
        } else if (call.name == "unlink" && file != 0) {
            _change({.entries = {{call.path, 0}}});
        } else if (call.name == "fsync") {
            for (auto& [at, each] : _changes) {
                if (each.file == file && !each.syncedBy) each.syncedBy = _events;
            }
        }
    }

    /// Calls with the files of every state that a cut may leave: after each event, all that is
    /// synced, and of the rest any choice, writes by half too.
    void forEachState(const std::function<void(const std::map<std::string, std::string>&)>& use) {
        for (std::size_t cut = 0; cut <= _events; ++cut) _addStates(cut);
        for (const auto& state : _states) use(state);
    }

private:
    enum Share { none, half, whole };

    void _change(Change change) {
        for (const auto& [name, file] : change.entries) _entries[name] = file;
        _changes.emplace_back(_events, std::move(change));
    }

    void _addStates(std::size_t cut) {
        std::vector<Share> shares;
        const std::function<void()> choose = [&] {
            if (shares.size() == _changes.size() || _changes[shares.size()].first > cut) {
                _states.insert(_stateOf(shares));
                return;
            }
            const auto& next = _changes[shares.size()].second;
            const bool lasts = next.syncedBy && *next.syncedBy <= cut;
            for (const Share share : {whole, half, none}) {
                if (share != whole && (lasts || (share == half && next.data.empty()))) continue;
                shares.push_back(share);
                choose();
                shares.pop_back();
            }
        };
        choose();
    }

    std::map<std::string, std::string> _stateOf(const std::vector<Share>& shares) const {
        auto entries = _startEntries;
        auto bytes = _startBytes;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            const auto& each = _changes[i].second;
            if (shares[i] == none) continue;
            for (const auto& [name, file] : each.entries) entries[name] = file;
            auto& content = bytes[each.file];
            if (each.cut) content.clear();
            const auto size = shares[i] == half ? each.data.size() / 2 : each.data.size();
            const auto end = static_cast<std::size_t>(each.offset) + size;
            if (size > 0 && content.size() < end) content.resize(end);
            content.replace(static_cast<std::size_t>(each.offset), size, each.data, 0, size);
        }
        std::map<std::string, std::string> files;
        for (const auto& [name, file] : entries) {
            if (file != 0) files[name] = bytes[file];
        }
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
    const std::string directory = path.substr(0, path.rfind('/') + 1);

    RecordedDisk record(const std::map<std::string, std::string>& contents, const Action& action) {
        for (const auto& file : {path, copy, unfinished}) fs::remove(file);
        for (const auto& [name, bytes] : contents) write(name, bytes);
        const auto store = open();
        RecordedDisk disk(directory, contents);
        const HookedFileCalls hooked([&](const FileCall& call) {
            auto named = call;
            if (named.path + "/" == directory) named.path = directory;
            disk.note(named);
            return made;
        });
        action(*store);
        return disk;
    }

    std::string contentAfter(const std::map<std::string, std::string>& contents) {
        for (const auto& file : {path, copy, unfinished}) fs::remove(file);
        for (const auto& [name, bytes] : contents) write(name, bytes);
        open();
        return content();
    }
};

TEST_F(PowerCut, LosesNothingInARemoval) {
    for (const auto size : sizes) {
        const auto bytes = numberedRecords(size);
        const Action remove = [&](auto& store) {
            store.remove(numberedRecord(size / 2).substr(0, 7));
        };
        const auto removed = done(bytes, remove);
        for (const bool leftOver : {false, true}) {
            std::map<std::string, std::string> contents = {{path, bytes}};
            if (leftOver) contents[unfinished] = "half a reco";
            std::size_t torn = 0;
            std::size_t states = 0;
            record(contents, remove).forEachState([&](const auto& state) {
                const auto& raw = state.at(path);
                if (raw != bytes && raw != removed) ++torn;
                ++states;
                const auto next = contentAfter(state);
                EXPECT_TRUE(next == bytes || next == removed) << next;
            });
            EXPECT_GE(states, removed.empty() ? 3U : 8U);
            EXPECT_EQ(torn > 0, !removed.empty()) << "the copy was never needed";
        }
    }
}

TEST_F(PowerCut, LosesAtMostTheRecordThatIsStoredInPlace) {
    const auto bytes = numberedRecords(20);
    const auto before = numberedRecord(3);
    const auto key = before.substr(0, 7);
    record({{path, bytes}}, [&](auto& store) {
        store.storeString(key, "w999999");
    }).forEachState([&](const auto& state) {
        auto left = contentAfter(state);
        ASSERT_EQ(left.size(), bytes.size());
        left.replace(3 * before.size(), before.size(), before);
        EXPECT_EQ(left, bytes);
        const auto found = open()->fetchString(key);
        EXPECT_TRUE(found == "v000003" || found == "w999999") << found;
    });
}

}  // namespace
