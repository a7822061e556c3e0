// What the collection does when an instance or a sink throws, at each point where one can.

#include "tests/common/CollectionFixture.h"
#include "tests/common/Failures.h"

#include <algorithm>
#include <functional>

namespace {

struct Operation {
    const char* name;
    const char* exceptionLine;
    void (*run)(CollectionFixture&);
};

constexpr Operation operations[] = {
    {"enumInstanceNames", "enumInstanceNames() exception",
     [](CollectionFixture& test) { test.enumNames(test.thing("")); }},
    {"enumInstances", "enumInstances() exception:",
     [](CollectionFixture& test) { test.enumInstances(test.thing("")); }},
    {"getInstance",
     "getInstance() exception:", [](CollectionFixture& test) { test.get(test.thing("c")); }},
    {"associators", "associators() exception:",
     [](CollectionFixture& test) { test.associators(test.thing("a"), "PYL_Link", "PYL_Thing"); }},
    {"associatorNames", "associatorNames() exception:",
     [](CollectionFixture& test) {
         test.associatorNames(test.thing("a"), "PYL_Link", "PYL_Thing");
     }},
    {"references", "references exception:",
     [](CollectionFixture& test) { test.references(test.thing("a"), "PYL_Link"); }},
    {"referenceNames", "referenceNames exception:",
     [](CollectionFixture& test) { test.referenceNames(test.thing("a"), "PYL_Link"); }},
};

/// Three things and three links from the first one, and a journal of every call.
struct CollectionFailures : CollectionFixture, testing::WithParamInterface<Operation> {
    CollectionFailures() {
        for (const auto* key : {"a", "b", "c"}) add(key);
        link("ab", "a", "b");
        multiLink(linkPath("acb"), thing("a"), {thing("c"), thing("b")});
        link("ca", "c", "a");
    }

    void at(const std::string& point) {
        journal.note(point);
        if (--_pointsLeft == 0) _raise();
    }

    /// The journal of the operation when the nth point (from 1; 0 for none) throws.
    Lines runFailingAt(int n, void (*raise)()) {
        _pointsLeft = n;
        _raise = raise;
        calls.onCall = [this](const std::string& call) { at(call); };
        paths.onDeliver = instances.onDeliver = [this] { at("sink"); };
        outcome = outcomeOf([this] { GetParam().run(*this); });
        return journal.take();
    }

    std::string outcome;

private:
    int _pointsLeft = 0;
    void (*_raise)() = nullptr;
};

bool isPoint(const std::string& event) {
    return event == "locked sink" || event.starts_with("locked get");
}

TEST_P(CollectionFailures, EndTheWalkWhereverTheyHappenWithItsLineAndTheLockFree) {
    const auto clean = runFailingAt(0, nullptr);
    ASSERT_EQ(outcome, "none");
    const auto points = static_cast<int>(std::count_if(clean.begin(), clean.end(), isPoint));
    ASSERT_GE(points, 4);
    for (const auto& failure : allFailures()) {
        auto end = clean.begin();
        for (int n = 1; n <= points; ++n) {
            end = std::next(std::find_if(end, clean.end(), isPoint));
            // All that went before stands, and nothing but the operation's line comes after.
            Lines expected(clean.begin(), end);
            expected.push_back(std::string("locked error: ") + GetParam().exceptionLine);
            EXPECT_EQ(runFailingAt(n, failure.raise), expected) << failure.name << " at " << n;
            EXPECT_EQ(outcome, failure.name);
            EXPECT_FALSE(collection.isLocked());
        }
    }
    EXPECT_EQ(runFailingAt(0, nullptr), clean);
    EXPECT_EQ(outcome, "none");
}

INSTANTIATE_TEST_SUITE_P(Each, CollectionFailures, testing::ValuesIn(operations),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
