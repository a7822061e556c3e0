// What the collection does when an instance or a sink throws, at each point where one can.

#include "tests/common/CollectionFixture.h"
#include "tests/common/Failures.h"

#include <algorithm>
#include <functional>

namespace {

struct CollectionOperation {
    const char* name;
    const char* exceptionLine;
    void (*run)(CollectionFixture&);
    std::size_t texts = 0;  ///< how often a path is asked for that a line alone wants
};

constexpr CollectionOperation collectionOperations[] = {
    {"enumInstanceNames", "enumInstanceNames() exception",
     [](CollectionFixture& test) { test.enumNames(test.thing("")); }},
    {"enumInstances", "enumInstances() exception:",
     [](CollectionFixture& test) { test.enumInstances(test.thing("")); }},
    {"getInstance",
     "getInstance() exception:", [](CollectionFixture& test) { test.get(test.thing("c")); }},
    {"associators", "associators() exception:",
     [](CollectionFixture& test) { test.associators(test.thing("a"), "PYL_Link", "PYL_Thing"); },
     4},
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
struct CollectionFailures : CollectionFixture, testing::WithParamInterface<CollectionOperation> {
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

    /// The journal of the operation when the nth point (from 1; 0 for none) throws. Without the
    /// lines that tell of what goes well, nothing is asked for a text.
    Lines runFailingAt(int n, void (*raise)(), LogLevel level = LogLevel::warning) {
        collection.setLevel(level);
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

/// The points that come with the lines alone, from 1: those of a run with lines that one without
/// them has not.
std::vector<int> pointsOfTexts(const Lines& loud, const Lines& quiet) {
    std::vector<int> texts;
    int n = 0;
    auto next = quiet.begin();
    for (const auto& event : loud) {
        if (isPoint(event)) ++n;
        if (next != quiet.end() && event == *next) {
            ++next;
        } else if (isPoint(event)) {
            texts.push_back(n);
        }
    }
    EXPECT_EQ(next, quiet.end());
    return texts;
}

// The result must not depend on how much is logged.
TEST_P(CollectionFailures, OfATextAreWrittenInItsLineAndEndNothing) {
    constexpr auto loudest = LogLevel::information;
    const auto quiet = runFailingAt(0, nullptr);
    const auto loud = runFailingAt(0, nullptr, loudest);
    const auto texts = pointsOfTexts(loud, quiet);
    EXPECT_EQ(texts.size(), GetParam().texts);
    for (const auto& failure : allFailures()) {
        for (const int n : texts) {
            auto expected = loud;
            int seen = 0;
            const auto point =
                std::find_if(expected.begin(), expected.end(),
                             [&](const auto& event) { return isPoint(event) && ++seen == n; });
            *std::next(point) = "locked information: deliver: <bad value>";
            EXPECT_EQ(runFailingAt(n, failure.raise, loudest), expected) << failure.name;
            EXPECT_EQ(outcome, "none");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Each, CollectionFailures, testing::ValuesIn(collectionOperations),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
