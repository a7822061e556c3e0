// Every file call of a store fails in turn. What is then so and what the store reports may differ:
// exactly where the table of docs/data-store.md says so.

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

#include "tests/common/FileCalls.h"
#include "tests/common/StoreFixture.h"

namespace {

namespace fs = std::filesystem;

constexpr auto faults =
    std::to_array<Verdict>({EIO, ENOSPC, EDQUOT, EROFS, EACCES, EMFILE, EINTR, halved});
constexpr auto sizes = std::to_array<std::size_t>({0, 1, 20, 1000});

std::string keyNumber(std::size_t number) {
    return numberedRecord(number).substr(0, 7);
}

/// What can be done with a store of so many records, its middle one in particular.
struct Operation {
    char const* name;  ///< in the page's table
    bool opens;        ///< the operation is the making of the store
    std::function<void(StoreFixture&, std::size_t)> prepare;
    std::function<std::string(PYL::DataStore&, std::string const&)> run;
};

std::string told(bool result) {
    return result ? "true" : "false";
}

void writeRecords(StoreFixture& fixture, std::size_t count) {
    fixture.write(numberedRecords(count));
}

std::vector<Operation> const& operations() {
    static auto const nothing = [](PYL::DataStore&, std::string const&) { return "opens"; };
    static std::vector<Operation> const all = {
        {"open", true, writeRecords, nothing},
        {"create", true, [](StoreFixture&, std::size_t) {}, nothing},
        {"open after an interrupted removal", true,
         [](StoreFixture& fixture, std::size_t count) {
             fixture.write(numberedRecords(count).substr(0, count * 9));
             fixture.write(fixture.copy, numberedRecords(count));
         },
         nothing},
        {"fetch", false, writeRecords,
         [](PYL::DataStore& store, std::string const& key) {
             return store.fetchString(key).empty() ? "no value" : "the value";
         }},
        {"store", false, writeRecords,
         [](PYL::DataStore& store, std::string const&) {
             return told(store.storeString("new", "value"));
         }},
        {"store", false, writeRecords,
         [](PYL::DataStore& store, std::string const& key) {
             return told(store.storeString(key, "w999999"));
         }},
        {"store", false, writeRecords,
         [](PYL::DataStore& store, std::string const& key) {
             return told(store.storeString(key, "longer-than-it-was"));
         }},
        {"remove", false, writeRecords,
         [](PYL::DataStore& store, std::string const& key) { return told(store.remove(key)); }},
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

    Outcome run(Operation const& operation, std::size_t size, FileCallHook const& hook) {
        for (auto const& file : {path, copy, unfinished}) fs::remove(file);
        operation.prepare(*this, size);
        auto const descriptors = openDescriptors();
        Outcome outcome;
        outcome.before = content();
        {
            auto store = operation.opens ? nullptr : open();
            log.journal->take();
            {
                HookedFileCalls const hooked(hook);
                try {
                    if (!store) store = open();
                    outcome.report = operation.run(*store, keyNumber(size / 2));
                } catch (PYL::DataStoreError const& error) {
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

    std::vector<FileCall> callsOf(Operation const& operation, std::size_t size, Outcome& outcome) {
        std::vector<FileCall> calls;
        outcome = run(operation, size, [&](FileCall const& call) {
            calls.push_back(call);
            return made;
        });
        return calls;
    }

    std::string label(FileCall const& call) const {
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
std::string difference(Outcome const& good, Outcome const& outcome) {
    if (outcome.stored && outcome.next != outcome.after + "later 1\r\n")
        return "the next store finishes the removal and undoes what was stored meanwhile";
    if (outcome.report != good.report && good.report == "the value") return "the key is there";
    bool const done = outcome.after == good.after;
    bool const untouched = outcome.after == outcome.before;
    bool const refused = good.report == "true" && outcome.report == "false";
    bool const failed = good.report == "opens" && outcome.report == "exception";
    if (done && !refused)
        return failed || outcome.mode == good.mode ? "" : "the mode is " + octal(outcome.mode);
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
            auto const end = line.find(" |", at + 1);
            if (end == std::string::npos) break;
            row[cells] = line.substr(at + 2, end - at - 2);
            at = end + 1;
        }
        auto const named = [&](Operation const& each) { return row[0] == each.name; };
        if (cells == row.size() && std::ranges::any_of(operations(), named)) rows.insert(row);
    }
    return rows;
}

struct FaultRows : DataStoreFaults {
    std::set<Row> found;

    /// Each file call of the operation fails with each fault: this call alone, or it and all later
    /// ones by its name.
    void failInTurn(Operation const& operation, std::size_t size) {
        Outcome good;
        auto const calls = callsOf(operation, size, good);
        ASSERT_FALSE(calls.empty());
        ASSERT_EQ(difference(good, good), "") << operation.name << ", " << size;
        for (std::size_t failing = 0; failing < calls.size(); ++failing)
            for (auto const fault : faults) {
                std::size_t number = 0;
                auto const once = [&](FileCall const&) {
                    return number++ == failing ? fault : made;
                };
                note(operation, calls[failing], "once", good, run(operation, size, once));
                if (fault == EINTR) continue;  // what is always interrupted never ends
                number = 0;
                auto const onwards = [&](FileCall const& call) {
                    return number++ >= failing && call.name == calls[failing].name ? fault : made;
                };
                note(operation, calls[failing], "from then on", good,
                     run(operation, size, onwards));
            }
    }

    /// Two calls fail, the first of them once with EIO and once by doing half of its work.
    void failTwice(Operation const& operation, std::size_t size) {
        Outcome good;
        auto const calls = callsOf(operation, size, good).size() + extraCalls;
        for (std::size_t second = 1; second < calls; ++second)
            for (std::size_t first = 0; first < second; ++first)
                for (auto const fault : {EIO, halved}) {
                    std::size_t number = 0;
                    auto const outcome = run(operation, size, [&](FileCall const&) {
                        auto const current = number++;
                        return current == first ? fault : current == second ? ENOSPC : made;
                    });
                    noteTwo(operation, good, outcome);
                }
    }

    void note(Operation const& operation, FileCall const& call, char const* often,
              Outcome const& good, Outcome const& outcome) {
        auto const truth = difference(good, outcome);
        Row row{operation.name, label(call), "once", outcome.report, truth};
        if (truth.empty()) return;
        EXPECT_TRUE(outcome.logged || call.name == "stat") << row[0] << ", " << row[1];
        if (found.contains(row)) return;
        row[2] = often;
        found.insert(row);
    }

    /// Notes an end that no failure of one kind has.
    void noteTwo(Operation const& operation, Outcome const& good, Outcome const& outcome) {
        auto const truth = difference(good, outcome);
        auto const isSo = [&](Row const& row) {
            return row[0] == operation.name && row[3] == outcome.report && row[4] == truth;
        };
        if (!truth.empty() && std::ranges::none_of(found, isSo))
            found.insert({operation.name, "two calls", "at once", outcome.report, truth});
    }

    static constexpr std::size_t extraCalls = 4;  // that a first failure may bring about
};

TEST_F(FaultRows, AreThoseOfThePageAndNoOthers) {
    for (auto const& operation : operations())
        for (auto const size : sizes) failInTurn(operation, size);
    for (auto const& operation : operations()) failTwice(operation, 20);
    EXPECT_EQ(found, rowsOfThePage());
    EXPECT_GT(points, 4000);
    RecordProperty("points", points);
}

}  // namespace
