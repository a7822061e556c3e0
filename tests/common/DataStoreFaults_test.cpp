// Every file call of a store fails in turn. What is then so and what the store reports may differ:
// exactly where the table of docs/data-store.md says so.

#include "tests/common/FileCalls.h"
#include "tests/common/StoreFixture.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr auto faults =
    std::to_array<Verdict>({EIO, ENOSPC, EDQUOT, EROFS, EACCES, EMFILE, EINTR, halved});
constexpr auto keyCounts = std::to_array<std::size_t>({0, 1, 20, 1000});

std::string keyNumber(std::size_t number) { return numberedRecord(number).substr(0, 7); }

/// What can be done with a store of so many records, its middle one in particular.
struct Operation {
    const char* name;  ///< in the page's table
    bool opens;        ///< the operation is the making of the store
    std::function<void(StoreFixture&, std::size_t)> prepare;
    std::function<std::string(PYL::DataStore&, const std::string&)> run;
};

std::string told(bool result) { return result ? "true" : "false"; }

void writeRecords(StoreFixture& fixture, std::size_t count) {
    fixture.write(numberedRecords(count));
}

const std::vector<Operation>& operations() {
    static const auto nothing = [](PYL::DataStore&, const std::string&) { return "opens"; };
    static const std::vector<Operation> all = {
        {"open", true, writeRecords, nothing},
        {"create", true, [](StoreFixture&, std::size_t) {}, nothing},
        {"open after an interrupted removal", true,
         [](StoreFixture& fixture, std::size_t count) {
             fixture.write(numberedRecords(count).substr(0, count * 9));
             fixture.write(fixture.copy, numberedRecords(count));
         },
         nothing},
        {"fetch", false, writeRecords,
         [](PYL::DataStore& store, const std::string& key) {
             return store.fetchString(key).empty() ? "no value" : "the value";
         }},
        {"store", false, writeRecords,
         [](PYL::DataStore& store, const std::string&) {
             return told(store.storeString("new", "value"));
         }},
        {"store", false, writeRecords,
         [](PYL::DataStore& store, const std::string& key) {
             return told(store.storeString(key, "w999999"));
         }},
        {"store", false, writeRecords,
         [](PYL::DataStore& store, const std::string& key) {
             return told(store.storeString(key, "longer-than-it-was"));
         }},
        {"remove", false, writeRecords,
         [](PYL::DataStore& store, const std::string& key) { return told(store.remove(key)); }},
    };
    return all;
}

struct Outcome {
    std::string report;
    std::string before;
    std::string after;  ///< what the file holds
    std::string next;   ///< what it holds when one more key was stored and the next store was made
    bool stored = false;  ///< whether that one more key was reported as stored
    unsigned mode = 0;    ///< of the file
    bool logged = false;  ///< an error line was written
};

struct DataStoreFaults : StoreFixture {
    int points = 0;

    DataStoreFaults() { log.logger.setLevel(LogLevel::error); }

    Outcome run(const Operation& operation, std::size_t size, const FileCallHook& hook) {
        for (const auto& file : {path, copy, unfinished}) fs::remove(file);
        operation.prepare(*this, size);
        const auto descriptors = openDescriptors();
        Outcome outcome;
        outcome.before = content();
        {
            auto store = operation.opens ? nullptr : open();
            log.journal->take();
            {
                const HookedFileCalls hooked(hook);
                try {
                    if (!store) store = open();
                    outcome.report = operation.run(*store, keyNumber(size / 2));
                } catch (const PYL::DataStoreError& error) {
                    outcome.report = "exception";
                    EXPECT_NE(error.message(), "Success");
                }
            }
            outcome.logged = !log.journal->take().empty();
            outcome.after = content();
            outcome.mode = modeOf(path);
            outcome.stored = store && store->storeString("later", "1");
        }
        open();
        outcome.next = content();
        EXPECT_EQ(openDescriptors(), descriptors) << operation.name;
        ++points;
        return outcome;
    }

    std::vector<FileCall> callsOf(const Operation& operation, std::size_t size, Outcome& outcome) {
        std::vector<FileCall> calls;
        outcome = run(operation, size, [&](const FileCall& call) {
            calls.push_back(call);
            return made;
        });
        return calls;
    }

    std::string label(const FileCall& call) const {
        std::string label = call.name;
        if (call.flags & O_TRUNC) label += " and truncate";
        if (call.path == path) return label + " the file";
        if (call.path == copy) return label + " the copy";
        if (call.path == unfinished) return label + " the new copy";
        return label + " the directory";
    }
};

std::string octal(unsigned mode) {
    std::array<char, 8> digits{};
    std::to_chars(digits.data(), digits.data() + digits.size() - 1, mode, 8);
    return digits.data();
}

/// What is so where it is not what was reported; empty where it is.
std::string difference(const Outcome& good, const Outcome& outcome) {
    if (outcome.stored && outcome.next != outcome.after + "later 1\r\n") {
        return "the next store finishes the removal and undoes what was stored meanwhile";
    }
    if (outcome.report != good.report && good.report == "the value") return "the key is there";
    const bool done = outcome.after == good.after;
    const bool untouched = outcome.after == outcome.before;
    const bool refused = good.report == "true" && outcome.report == "false";
    const bool failed = good.report == "opens" && outcome.report == "exception";
    if (done && !refused) {
        return failed || outcome.mode == good.mode ? "" : "the mode is " + octal(outcome.mode);
    }
    if (untouched && (refused || failed)) return "";
    if (untouched) return "the file is as before";
    if (outcome.after.empty()) return "the file is empty";
    return "a part is written";
}

using Row = std::array<std::string, 5>;  // operation, call, how often it fails, report, what is so

std::set<Row> rowsOfThePage() {
    std::set<Row> rows;
    std::ifstream page(PYL_DATA_STORE_PAGE);
    for (std::string line; std::getline(page, line);) {
        Row row;
        std::size_t cells = 0;
        for (std::size_t at = 0; cells < row.size() && line.compare(at, 2, "| ") == 0; ++cells) {
            const auto end = line.find(" |", at + 1);
            if (end == std::string::npos) break;
            row[cells] = line.substr(at + 2, end - at - 2);
            at = end + 1;
        }
        const auto named = [&](const Operation& each) { return row[0] == each.name; };
        if (cells == row.size() && std::ranges::any_of(operations(), named)) rows.insert(row);
    }
    return rows;
}

struct FaultRows : DataStoreFaults {
    std::set<Row> found;

    /// Each file call of the operation fails with each fault: this call alone, or it and all later
    /// ones by its name.
    void failInTurn(const Operation& operation, std::size_t size) {
        Outcome good;
        const auto calls = callsOf(operation, size, good);
        ASSERT_FALSE(calls.empty());
        ASSERT_EQ(difference(good, good), "") << operation.name << ", " << size;
        for (std::size_t failing = 0; failing < calls.size(); ++failing) {
            for (const auto fault : faults) {
                std::size_t number = 0;
                const auto once = [&](const FileCall&) {
                    return number++ == failing ? fault : made;
                };
                note(operation, calls[failing], "once", good, run(operation, size, once));
                if (fault == EINTR) continue;  // what is always interrupted never ends
                number = 0;
                const auto onwards = [&](const FileCall& call) {
                    return number++ >= failing && call.name == calls[failing].name ? fault : made;
                };
                note(operation, calls[failing], "from then on", good,
                     run(operation, size, onwards));
            }
        }
    }

    /// Two calls fail, the first of them once with EIO and once by doing half of its work.
    void failTwice(const Operation& operation, std::size_t size) {
        Outcome good;
        const auto calls = callsOf(operation, size, good).size() + extraCalls;
        for (std::size_t second = 1; second < calls; ++second) {
            for (std::size_t first = 0; first < second; ++first) {
                for (const auto fault : {EIO, halved}) {
                    std::size_t number = 0;
                    const auto outcome = run(operation, size, [&](const FileCall&) {
                        const auto current = number++;
                        return current == first ? fault : current == second ? ENOSPC : made;
                    });
                    noteTwo(operation, good, outcome);
                }
            }
        }
    }

    void note(const Operation& operation, const FileCall& call, const char* often,
              const Outcome& good, const Outcome& outcome) {
        const auto truth = difference(good, outcome);
        Row row{operation.name, label(call), "once", outcome.report, truth};
        if (truth.empty()) return;
        EXPECT_TRUE(outcome.logged || call.name == "stat") << row[0] << ", " << row[1];
        if (found.contains(row)) return;
        row[2] = often;
        found.insert(row);
    }

    /// Notes an end that no failure of one kind has.
    void noteTwo(const Operation& operation, const Outcome& good, const Outcome& outcome) {
        const auto truth = difference(good, outcome);
        const auto isSo = [&](const Row& row) {
            return row[0] == operation.name && row[3] == outcome.report && row[4] == truth;
        };
        if (!truth.empty() && std::ranges::none_of(found, isSo)) {
            found.insert({operation.name, "two calls", "at once", outcome.report, truth});
        }
    }

    static constexpr std::size_t extraCalls = 4;  // that a first failure may bring about
};

TEST_F(FaultRows, AreThoseOfThePageAndNoOthers) {
    for (const auto& operation : operations()) {
        for (const auto size : keyCounts) failInTurn(operation, size);
    }
    for (const auto& operation : operations()) failTwice(operation, 20);
    EXPECT_EQ(found, rowsOfThePage());
    EXPECT_GT(points, 4000);
    RecordProperty("points", points);
}

}  // namespace
