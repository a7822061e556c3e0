#include "common/CmpiManagedInstanceCollection.h"

#include "cmpicpp/CmpiStatus.h"
#include "tests/common/CollectionFixture.h"
#include "tests/common/Failures.h"

#include <limits>

namespace {

using CmpiCpp::CmpiObjectPath;

struct CollectionTest : CollectionFixture {};

TEST(CollectionLife, LogsUnderItsOwnSourceName) {
    JournalLog log;
    struct Sources : LogSink {
        Lines sources;
        void write(LogLevel, std::string_view source, std::string_view) noexcept override {
            sources.emplace_back(source);
        }
    };
    const auto sink = std::make_shared<Sources>();
    Logger logger("provider", sink);
    { const PYL::CmpiManagedInstanceCollection collection(logger); }
    EXPECT_EQ(sink->sources, Lines(2, "provider:CmpiManagedInstanceCollection"));
    EXPECT_EQ(logger.logSource(), "provider");
}

TEST(CollectionLife, LogsItsBeginAndItsEndAndDeletesInOrder) {
    TestBroker host;
    JournalLog log;
    Calls calls;
    {
        PYL::CmpiManagedInstanceCollection collection(log.logger);
        EXPECT_EQ(log.journal->take(), Lines{"information: cxtor()"});
        collection.createInstance(new Thing(host, calls, host.path("PYL_Thing", "a")));
        collection.createInstance(nullptr);
        collection.createInstance(new Thing(host, calls, host.path("PYL_Thing", "b")));
        EXPECT_EQ(log.journal->take(), Lines{});
    }
    EXPECT_EQ(log.journal->take(), Lines{"information: dxtor()"});
    EXPECT_EQ(calls.deletions, (Lines{"a", "b"}));
}

TEST_F(CollectionTest, AppendsWithoutLookingAtWhatIsThere) {
    EXPECT_EQ(collection.size(), 0U);
    auto* const first = new Thing(host, calls, thing("a"));
    auto* const second = new Thing(host, calls, thing("a"));
    EXPECT_TRUE(collection.createInstance(first));
    EXPECT_TRUE(collection.createInstance(second));
    EXPECT_TRUE(collection.createInstance(nullptr));
    EXPECT_EQ(collection.size(), 3U);
    EXPECT_EQ(collection.getManagedInstance(0U), first);
    EXPECT_EQ(collection.getManagedInstance(1U), second);
    EXPECT_EQ(collection.getManagedInstance(2U), nullptr);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionTest, AnswersNullForASlotThatDoesNotExist) {
    EXPECT_EQ(collection.getManagedInstance(0U), nullptr);
    add("a");
    EXPECT_NE(collection.getManagedInstance(0U), nullptr);
    EXPECT_EQ(collection.getManagedInstance(1U), nullptr);
    EXPECT_EQ(collection.getManagedInstance(std::numeric_limits<unsigned int>::max() - 1), nullptr);
    // One more than this is 0, which no bound excludes.
    EXPECT_EQ(collection.getManagedInstance(std::numeric_limits<unsigned int>::max()), nullptr);
}

TEST_F(CollectionTest, EnumeratesNamesInTheOrderOfInsertion) {
    add("b");
    add("a");
    EXPECT_EQ(enumNames(thing("")), 2);
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: enumInstanceNames() for class: PYL_Thing",
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + text("b"),
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + text("a"),
                                  "information: enumInstanceNames() delivered: 2",
                              }));
}

TEST_F(CollectionTest, EnumeratesInstancesInTheOrderOfInsertion) {
    add("b");
    add("a");
    EXPECT_EQ(enumInstances(thing("")), 2);
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: enumInstances() for class:PYL_Thing",
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + instanceText("b"),
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + instanceText("a"),
                                  "information: enumInstances() delivered: 2",
                              }));
}

TEST_F(CollectionTest, SaysThatThereIsNothingToDeliver) {
    EXPECT_EQ(enumNames(thing("")), 0);
    EXPECT_EQ(enumInstances(thing("")), 0);
    EXPECT_FALSE(get(thing("a")));
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: enumInstanceNames() for class: PYL_Thing",
                                  "information: enumInstanceNames() nothing to deliver",
                                  "information: enumInstances() for class:PYL_Thing",
                                  "information: enumInstances() nothing to deliver",
                                  "information: getInstance() for path: " + text("a"),
                                  "locked warning: instance not found",
                              }));
}

TEST_F(CollectionTest, LeavesOutWhatIsHiddenOrNullOrOfAnotherClassOrNamespace) {
    add("hidden")->setVisible(false);
    collection.createInstance(nullptr);
    add(host.path("PYL_SpecialThing", "subclass"));
    add(host.path("root/other", "PYL_Thing", "elsewhere", cimtest::testHostName));
    add("a");
    EXPECT_EQ(enumNames(thing("")), 1);
    EXPECT_EQ(enumInstances(thing("")), 1);
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: enumInstanceNames() for class: PYL_Thing",
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + text("a"),
                                  "information: enumInstanceNames() delivered: 1",
                                  "information: enumInstances() for class:PYL_Thing",
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + instanceText("a"),
                                  "information: enumInstances() delivered: 1",
                              }));
    EXPECT_EQ(enumNames(host.path("root/other", "PYL_Thing", "", "")), 1);
    EXPECT_EQ(enumNames(host.path("root/none", "PYL_Thing", "", "")), 0);
}

TEST_F(CollectionTest, ComparesClassAndNamespaceWithoutCaseAndHostNotAtAll) {
    add("a");
    EXPECT_EQ(enumNames(host.path("ROOT/Ktq", "pyl_THING", "", "another-host")), 1);
    EXPECT_EQ(journal.take().at(2), "locked delivered " + text("a"));
}

TEST_F(CollectionTest, AsksAnInstanceInTheOrderOfTheTestsAndNoFurtherThanNeeded) {
    Lines asked;
    add("hidden")->setVisible(false);
    add(host.path("PYL_SpecialThing", "subclass"));
    add(host.path("root/other", "PYL_Thing", "elsewhere", cimtest::testHostName));
    add("a");
    calls.onCall = [&](const std::string& call) { asked.push_back(call); };
    enumNames(thing(""));
    EXPECT_EQ(asked, (Lines{"getClassName subclass", "getClassName elsewhere", "getPath elsewhere",
                            "getClassName a", "getPath a", "getPath a"}));
    asked.clear();
    enumInstances(thing(""));
    EXPECT_EQ(asked, (Lines{"getClassName subclass", "getClassName elsewhere", "getPath elsewhere",
                            "getClassName a", "getPath a", "getInstance a"}));
    asked.clear();
    get(thing("a"));
    EXPECT_EQ(asked,
              (Lines{"getPath subclass", "getPath elsewhere", "getPath a", "getInstance a"}));
}

TEST_F(CollectionTest, DeliversThePathOfASecondCall) {
    // An instance may build its path anew; the line tells the first one, the sink gets the second.
    struct Counting : PYL::CmpiManagedInstance {
        explicit Counting(TestBroker& broker) : host(broker) {}
        CmpiObjectPath getPath() override {
            return host.path("PYL_Thing", std::to_string(++calls));
        }
        CmpiCpp::CmpiInstance getInstance() override { return {}; }
        CmpiCpp::CmpiName getClassName() override { return "PYL_Thing"; }
        TestBroker& host;
        int calls = 0;
    };
    collection.createInstance(new Counting(host));
    EXPECT_EQ(enumNames(thing("")), 1);
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: enumInstanceNames() for class: PYL_Thing",
                                  "locked information: deliver: " + text("1"),
                                  "locked delivered " + text("2"),
                                  "information: enumInstanceNames() delivered: 1",
                              }));
}

TEST_F(CollectionTest, IgnoresAPropertyListWithAWarning) {
    const char* properties[] = {"Id", nullptr};
    add("a");
    EXPECT_EQ(enumInstances(thing(""), properties), 1);
    EXPECT_TRUE(get(thing("a"), properties));
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: enumInstances() for class:PYL_Thing",
                                  "warning: property filters not supported! No exception.",
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + instanceText("a"),
                                  "information: enumInstances() delivered: 1",
                                  "information: getInstance() for path: " + text("a"),
                                  "warning: property filters not supported! No exception.",
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + instanceText("a"),
                              }));
}

TEST_F(CollectionTest, WarnsOfAnEmptyPropertyListToo) {
    const char* nothing[] = {nullptr};
    EXPECT_EQ(enumInstances(thing(""), nothing), 0);
    EXPECT_EQ(journal.take().at(1), "warning: property filters not supported! No exception.");
}

TEST_F(CollectionTest, GetsAnInstanceWhateverHostTheRequestNames) {
    add("other");
    add("a");
    for (const auto* name : {"elsewhere", "", "server-1"}) {
        const auto request = host.path("root/ktq", "PYL_Thing", "a", name);
        EXPECT_TRUE(get(request));
        EXPECT_EQ(journal.take(), (Lines{
                                      "information: getInstance() for path: " + request.str(),
                                      "locked information: deliver: " + text("a"),
                                      "locked delivered " + instanceText("a"),
                                  }));
        EXPECT_FALSE(collection.isLocked());
    }
}

TEST_F(CollectionTest, DoesNotGetAnInstanceThatNamesAnotherHostThanThisOne) {
    add(host.path("root/ktq", "PYL_Thing", "a", "elsewhere"));
    EXPECT_FALSE(get(host.path("root/ktq", "PYL_Thing", "a", "elsewhere")));
    EXPECT_EQ(journal.take().back(), "locked warning: instance not found");
}

TEST_F(CollectionTest, DoesNotGetAnInstanceOfASubclassOrAnotherNamespace) {
    add(host.path("PYL_SpecialThing", "a"));
    add(host.path("root/other", "PYL_Thing", "a", cimtest::testHostName));
    EXPECT_FALSE(get(thing("a")));
}

TEST_F(CollectionTest, GetsTheFirstOfDuplicatesAndDeletesOneAtATime) {
    auto* const first = add("a");
    auto* const second = add("a");
    EXPECT_EQ(enumNames(thing("")), 2);
    Lines asked;
    calls.onCall = [&](const std::string& call) { asked.push_back(call); };
    EXPECT_TRUE(get(thing("a")));
    EXPECT_EQ(asked, (Lines{"getPath a", "getInstance a"}));
    EXPECT_EQ(collection.getManagedInstance(thing("a")), first);
    EXPECT_TRUE(collection.deleteInstance(thing("a")));
    EXPECT_EQ(collection.getManagedInstance(thing("a")), second);
    EXPECT_TRUE(collection.deleteInstance(thing("a")));
    EXPECT_FALSE(collection.deleteInstance(thing("a")));
    EXPECT_EQ(collection.size(), 0U);
}

TEST_F(CollectionTest, SkipsHiddenAndNullInstancesWhenItGetsOne) {
    collection.createInstance(nullptr);
    add("a")->setVisible(false);
    EXPECT_FALSE(get(thing("a")));
    add("a");
    EXPECT_TRUE(get(thing("a")));
}

TEST_F(CollectionTest, FindsAHiddenInstanceByItsExactPath) {
    collection.createInstance(nullptr);
    auto* const hidden = add("a");
    hidden->setVisible(false);
    EXPECT_EQ(collection.size(), 2U);
    EXPECT_EQ(collection.getManagedInstance(1U), hidden);
    EXPECT_EQ(collection.getManagedInstance(thing("a")), hidden);
    EXPECT_EQ(collection.getManagedInstance(host.path("root/ktq", "PYL_Thing", "a", "")), nullptr);
    EXPECT_EQ(collection.getManagedInstance(thing("b")), nullptr);
    EXPECT_EQ(collection._findIndex(thing("a")), 1);
    EXPECT_EQ(collection._findIndex(thing("b")), -1);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionTest, DeletesByTheExactPathAndMovesTheOthersUp) {
    add("a");
    add("b")->setVisible(false);
    auto* const last = add("c");
    EXPECT_FALSE(collection.deleteInstance(host.path("root/ktq", "PYL_Thing", "b", "elsewhere")));
    EXPECT_TRUE(collection.deleteInstance(thing("b")));
    EXPECT_EQ(calls.deletions, Lines{"b"});
    EXPECT_EQ(collection.size(), 2U);
    EXPECT_EQ(collection.getManagedInstance(1U), last);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionTest, ClearsAwayEverything) {
    add("a");
    collection.createInstance(nullptr);
    add("b")->setVisible(false);
    collection.clear();
    EXPECT_EQ(collection.size(), 0U);
    EXPECT_EQ(calls.deletions, (Lines{"a", "b"}));
    collection.clear();
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionTest, CleansUpWhatIsHiddenAndKeepsTheOrderOfTheRest) {
    auto* const a = add("a");
    add("b")->setVisible(false);
    collection.createInstance(nullptr);
    auto* const c = add("c");
    add("d")->setVisible(false);
    collection.cleanup();
    ASSERT_EQ(collection.size(), 2U);
    EXPECT_EQ(collection.getManagedInstance(0U), a);
    EXPECT_EQ(collection.getManagedInstance(1U), c);
    EXPECT_EQ(calls.deletions, (Lines{"b", "d"}));
    collection.cleanup();
    EXPECT_EQ(collection.size(), 2U);
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(CollectionTest, HoldsTheLockWhileItCallsInstances) {
    int locked = 0;
    int unlocked = 0;
    const auto look = [&] { ++(collection.isLocked() ? locked : unlocked); };
    calls.onCall = [&](const std::string&) { look(); };
    calls.onDelete = look;
    for (const auto* key : {"a", "b", "c"}) add(key);
    enumNames(thing(""));
    enumInstances(thing(""));
    get(thing("a"));
    collection.getManagedInstance(thing("a"));
    EXPECT_EQ(locked, 9 + 9 + 2 + 1);
    collection.deleteInstance(thing("a"));
    collection.getManagedInstance(0U)->setVisible(false);
    collection.cleanup();
    collection.clear();
    EXPECT_EQ(locked, 21 + 2 + 1 + 1);
    EXPECT_EQ(unlocked, 0);
}

TEST_F(CollectionTest, PrintsAPathWithPercentSignsAsItIs) {
    add("%s%n%d100%");
    EXPECT_TRUE(get(thing("%s%n%d100%")));
    EXPECT_EQ(journal.take(), (Lines{
                                  "information: getInstance() for path: " + text("%s%n%d100%"),
                                  "locked information: deliver: " + text("%s%n%d100%"),
                                  "locked delivered " + instanceText("%s%n%d100%"),
                              }));
}

TEST_F(CollectionTest, LogsAFailedLookUpAndUnlocks) {
    add("a");
    for (const auto& failure : allFailures()) {
        calls.onCall = [&](const std::string&) { failure.raise(); };
        EXPECT_EQ(outcomeOf([&] { collection.getManagedInstance(thing("a")); }), failure.name);
        EXPECT_EQ(journal.take(), Lines{"locked error: getManagedInstance() exception"});
        EXPECT_FALSE(collection.isLocked());
    }
}

TEST_F(CollectionTest, UnlocksWhenADeletionFailsToLookUp) {
    add("a");
    calls.onCall = [](const std::string&) { throw std::bad_alloc(); };
    EXPECT_THROW(collection.deleteInstance(thing("a")), std::bad_alloc);
    EXPECT_EQ(journal.take(), Lines{});
    EXPECT_FALSE(collection.isLocked());
    EXPECT_EQ(collection.size(), 1U);
}

TEST_F(CollectionTest, AnswersTheEmptyRequestInAnOrderlyWay) {
    add("a");
    EXPECT_EQ(enumNames(CmpiObjectPath()), 0);
    EXPECT_THROW(get(CmpiObjectPath()), CmpiCpp::CmpiStatus);
    EXPECT_EQ(collection.getManagedInstance(CmpiObjectPath()), nullptr);
    EXPECT_FALSE(collection.isLocked());
}

}  // namespace
