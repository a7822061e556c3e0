#include "common/detail/AssociationWalk.h"

#include "cmpicpp/CmpiStatus.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/CollectionFixture.h"
#include "tests/common/Failures.h"

#include <optional>

namespace {

using cimtest::FaultyBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

struct AssociationsTest : CollectionFixture {
    void SetUp() override {
        add("a");
        add("b");
        link("l", "a", "b");
    }

    std::string linkText(const std::string& key) { return text(key, "PYL_Link"); }

    /// All four operations, one after the other; their results added up.
    int askAll(const CmpiObjectPath& path) {
        return associators(path) + associatorNames(path) + references(path) + referenceNames(path);
    }

    /// What the four operations say of a source that leads nowhere.
    static Lines nothingFourTimes() {
        return {"information: associators() nothing to deliver",
                "information: associatorNames() nothing to deliver",
                "information: references() nothing to deliver",
                "information: referenceNames() nothing to deliver"};
    }
};

TEST_F(AssociationsTest, DeliversTheInstanceAtTheFarEnd) {
    EXPECT_EQ(associators(thing("a")), 1);
    EXPECT_EQ(journal.take(), (Lines{
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + instanceText("b"),
                                  "information: associators() delivered: 1",
                              }));
    EXPECT_EQ(associators(thing("b")), 1);
    EXPECT_EQ(journal.take().at(1), "locked delivered " + instanceText("a"));
}

TEST_F(AssociationsTest, DeliversThePathAtTheFarEnd) {
    EXPECT_EQ(associatorNames(thing("a")), 1);
    EXPECT_EQ(journal.take(), (Lines{
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + text("b"),
                                  "information: associatorNames() delivered: 1",
                              }));
}

TEST_F(AssociationsTest, DeliversTheAssociationItselfWithoutALineForIt) {
    EXPECT_EQ(references(thing("a")), 1);
    EXPECT_EQ(referenceNames(thing("a")), 1);
    EXPECT_EQ(journal.take(), (Lines{
                                  "locked delivered " + instanceText("l", "PYL_Link"),
                                  "information: references() delivered: 1",
                                  "locked delivered " + linkText("l"),
                                  "information: referenceNames() delivered: 1",
                              }));
}

TEST_F(AssociationsTest, FindsEveryAssociationHoweverTheKindsStand) {
    link("m", "a", "b");
    multiLink(linkPath("n"), thing("a"), {thing("b")});
    multiLink(linkPath("o"), thing("a"), {thing("b")});
    add("c");
    add("d");
    link("p", "a", "c");
    add("e");
    multiLink(linkPath("q"), thing("a"), {thing("d")});
    EXPECT_EQ(askAll(thing("a")), 4 * 6);
    journal.take();
    referenceNames(thing("a"));
    Lines expected;
    for (const auto* key : {"l", "m", "n", "o", "p", "q"}) {
        expected.push_back("locked delivered " + linkText(key));
    }
    expected.push_back("information: referenceNames() delivered: 6");
    EXPECT_EQ(journal.take(), expected);
}

TEST_F(AssociationsTest, SaysThatThereIsNothingToDeliver) {
    EXPECT_EQ(askAll(thing("c")), 0);
    EXPECT_EQ(journal.take(), nothingFourTimes());
}

TEST_F(AssociationsTest, FindsTheSourceWhateverHostTheRequestNames) {
    for (const auto* name : {"elsewhere", ""}) {
        EXPECT_EQ(askAll(host.path("root/ktq", "PYL_Thing", "a", name)), 4) << name;
    }
}

TEST_F(AssociationsTest, AsksAssociationsWithTheLocalHostName) {
    struct Asked : Link {
        using Link::Link;
        CmpiObjectPath getAssociatedPath(const CmpiObjectPath& path) override {
            requests.push_back(path.str());
            return {};
        }
        Lines requests;
    };
    auto* const asked = new Asked(host, calls, linkPath("m"), thing("a"), thing("b"));
    collection.createInstance(asked);
    askAll(host.path("root/ktq", "PYL_Thing", "a", "elsewhere"));
    EXPECT_EQ(asked->requests, Lines(4, text("a")));
}

TEST_F(AssociationsTest, RefusesRolesBeforeTheLock) {
    const char* const properties[] = {"Id", nullptr};
    auto** const list = const_cast<const char**>(properties);
    const std::string refused = "status 7 role filters not supported";
    // Whatever else is to be refused, the role comes first.
    EXPECT_EQ(outcomeOf([&] { associators(thing("a"), "", "", "r", "rr", list); }), refused);
    EXPECT_EQ(outcomeOf([&] { associatorNames(thing("a"), "", "", "r", "rr"); }), refused);
    EXPECT_EQ(outcomeOf([&] { references(thing("a"), "", "r", list); }), refused);
    EXPECT_EQ(outcomeOf([&] { referenceNames(thing("a"), "", "r"); }), refused);
    EXPECT_EQ(journal.take(), Lines(4, "warning: role filter not supported"));
}

TEST_F(AssociationsTest, RefusesResultRolesBeforeTheLock) {
    const char* properties[] = {"Id", nullptr};
    const std::string refused = "status 7 resultRole filters not supported";
    EXPECT_EQ(outcomeOf([&] { associators(thing("a"), "", "", "", "rr", properties); }), refused);
    EXPECT_EQ(outcomeOf([&] { associatorNames(thing("a"), "", "", "", "rr"); }), refused);
    EXPECT_EQ(journal.take(), Lines(2, "warning: resultRole filter not supported"));
}

TEST_F(AssociationsTest, RefusesPropertyListsBeforeTheLock) {
    const char* nothing[] = {nullptr};
    const std::string refused = "status 7 property filters not supported";
    EXPECT_EQ(outcomeOf([&] { associators(thing("a"), "", "", "", "", nothing); }), refused);
    EXPECT_EQ(outcomeOf([&] { references(thing("a"), "", "", nothing); }), refused);
    EXPECT_EQ(journal.take(), Lines(2, "warning: property filters not supported!"));
}

TEST_F(AssociationsTest, NeedsNoLockForARefusal) {
    // The collection's lock is held here: an operation that took it would wait for ever.
    struct Holding : OpenCollection {
        using OpenCollection::OpenCollection;
        pthread_mutex_t& mutex() { return _mutex; }
    } held(log.logger);
    journal.isLocked = [] { return false; };
    pthread_mutex_lock(&held.mutex());
    EXPECT_THROW(held.referenceNames(paths, host.context(), thing("a"), "", "r"),
                 CmpiCpp::CmpiStatus);
    EXPECT_THROW(held.associatorNames(paths, host.context(), thing("a"), "", "", "", "rr"),
                 CmpiCpp::CmpiStatus);
    const char* nothing[] = {nullptr};
    EXPECT_THROW(held.references(instances, host.context(), thing("a"), "", "", nothing),
                 CmpiCpp::CmpiStatus);
    pthread_mutex_unlock(&held.mutex());
}

TEST_F(AssociationsTest, UsesNoHiddenAssociation) {
    collection.getManagedInstance(linkPath("l"))->setVisible(false);
    collection.createInstance(nullptr);
    EXPECT_EQ(askAll(thing("a")), 0);
    EXPECT_EQ(journal.take(), nothingFourTimes());
}

TEST_F(AssociationsTest, StillDeliversAHiddenTarget) {
    collection.getManagedInstance(thing("b"))->setVisible(false);
    EXPECT_EQ(associators(thing("a")), 1);
    EXPECT_EQ(journal.take().at(1), "locked delivered " + instanceText("b"));
}

TEST_F(AssociationsTest, DeliversAnObjectOnceForEachLinkThatLeadsToIt) {
    link("m", "b", "a");
    EXPECT_EQ(associators(thing("a")), 2);
    EXPECT_EQ(associatorNames(thing("a")), 2);
    EXPECT_EQ(references(thing("a")), 2);
    EXPECT_EQ(journal.take(), (Lines{
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + instanceText("b"),
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + instanceText("b"),
                                  "information: associators() delivered: 2",
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + text("b"),
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + text("b"),
                                  "information: associatorNames() delivered: 2",
                                  "locked delivered " + instanceText("l", "PYL_Link"),
                                  "locked delivered " + instanceText("m", "PYL_Link"),
                                  "information: references() delivered: 2",
                              }));
}

TEST_F(AssociationsTest, TakesTheFirstOfTwoTargetsWithOnePath) {
    auto* const second = add("b");
    Lines asked;
    calls.onCall = [&](const std::string& call) { asked.push_back(call); };
    EXPECT_EQ(associators(thing("a")), 1);
    EXPECT_EQ(std::count(asked.begin(), asked.end(), "getInstance b"), 1);
    calls.onCall = [](const std::string&) {};
    EXPECT_TRUE(collection.deleteInstance(thing("b")));
    EXPECT_EQ(collection.getManagedInstance(thing("b")), second);
}

TEST_F(AssociationsTest, CountsATwoEndedLinkOnlyInTheNamespaceOfTheRequest) {
    collection.deleteInstance(linkPath("l"));
    link(host.path("root/other", "PYL_Link", "l", cimtest::testHostName), thing("a"), thing("b"));
    EXPECT_EQ(askAll(thing("a")), 0);
    EXPECT_EQ(journal.take(), nothingFourTimes());
}

TEST_F(AssociationsTest, ComparesTheNamespaceWithoutCase) {
    EXPECT_EQ(askAll(host.path("ROOT/KTQ", "pyl_thing", "a", "")), 4);
}

TEST_F(AssociationsTest, CountsAMultiAssociationInAnyNamespace) {
    collection.deleteInstance(linkPath("l"));
    multiLink(host.path("root/other", "PYL_Link", "m", cimtest::testHostName), thing("a"),
              {thing("b")});
    EXPECT_EQ(askAll(thing("a")), 4);
}

TEST_F(AssociationsTest, DeliversEveryFarEndOfAMultiAssociationButItselfOnce) {
    collection.deleteInstance(linkPath("l"));
    multiLink(linkPath("m"), thing("a"), {thing("b"), CmpiObjectPath(), thing("a")});
    EXPECT_EQ(associatorNames(thing("a")), 2);
    EXPECT_EQ(associators(thing("a")), 2);
    EXPECT_EQ(references(thing("a")), 1);
    EXPECT_EQ(referenceNames(thing("a")), 1);
    EXPECT_EQ(journal.take(), (Lines{
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + text("b"),
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + text("a"),
                                  "information: associatorNames() delivered: 2",
                                  "locked information: deliver: " + text("b"),
                                  "locked delivered " + instanceText("b"),
                                  "locked information: deliver: " + text("a"),
                                  "locked delivered " + instanceText("a"),
                                  "information: associators() delivered: 2",
                                  "locked delivered " + instanceText("m", "PYL_Link"),
                                  "information: references() delivered: 1",
                                  "locked delivered " + linkText("m"),
                                  "information: referenceNames() delivered: 1",
                              }));
}

TEST_F(AssociationsTest, RefersToAMultiAssociationOnlyByItsFirstFarEnd) {
    collection.deleteInstance(linkPath("l"));
    multiLink(linkPath("m"), thing("a"), {CmpiObjectPath(), thing("b"), thing("b")});
    EXPECT_EQ(associatorNames(thing("a")), 2);
    EXPECT_EQ(references(thing("a")), 0);
    EXPECT_EQ(referenceNames(thing("a")), 0);
}

TEST_F(AssociationsTest, FindsNothingThroughAMultiAssociationWithoutFarEnds) {
    collection.deleteInstance(linkPath("l"));
    multiLink(linkPath("m"), thing("a"), {});
    EXPECT_EQ(askAll(thing("a")), 0);
}

TEST_F(AssociationsTest, LetsSubclassesThroughTheAssociationClassFilter) {
    link(host.path("PYL_SpecialLink", "s"), thing("a"), thing("b"));
    EXPECT_EQ(associators(thing("a"), "PYL_Link"), 2);
    EXPECT_EQ(associators(thing("a"), "PYL_SpecialLink"), 1);
    EXPECT_EQ(associatorNames(thing("a"), "pyl_speciallink"), 1);
    EXPECT_EQ(references(thing("a"), "PYL_Link"), 2);
    EXPECT_EQ(referenceNames(thing("a"), "PYL_SpecialLink"), 1);
}

TEST_F(AssociationsTest, PassesOverTheWrongAssociationClassWithoutALine) {
    EXPECT_EQ(associators(thing("a"), "PYL_SpecialLink"), 0);
    EXPECT_EQ(associatorNames(thing("a"), "PYL_SpecialLink"), 0);
    EXPECT_EQ(journal.take(), (Lines{"information: associators() nothing to deliver",
                                     "information: associatorNames() nothing to deliver"}));
}

TEST_F(AssociationsTest, NamesInItsLinesTheClassThatTheResultFilterLeftOut) {
    // associators() names the association's class, associatorNames() the far end's.
    EXPECT_EQ(associators(thing("a"), "", "PYL_SpecialThing"), 0);
    EXPECT_EQ(associatorNames(thing("a"), "", "PYL_SpecialThing"), 0);
    EXPECT_EQ(references(thing("a"), "PYL_SpecialLink"), 0);
    EXPECT_EQ(referenceNames(thing("a"), "PYL_SpecialLink"), 0);
    EXPECT_EQ(journal.take(), (Lines{
                                  "locked information: PYL_Link result class filter failed",
                                  "information: associators() nothing to deliver",
                                  "locked information: PYL_Thing result class filter failed",
                                  "information: associatorNames() nothing to deliver",
                                  "locked information: PYL_Link result class filter failed",
                                  "information: references() nothing to deliver",
                                  "locked information: PYL_Link result class filter failed",
                                  "information: referenceNames() nothing to deliver",
                              }));
}

TEST_F(AssociationsTest, LetsSubclassesThroughTheResultClassFilter) {
    const auto special = host.path("PYL_SpecialThing", "s");
    add(special);
    link(linkPath("m"), thing("a"), special);
    EXPECT_EQ(associators(thing("a"), "PYL_Link", "PYL_Thing"), 2);
    EXPECT_EQ(associators(thing("a"), "", "PYL_SpecialThing"), 1);
    EXPECT_EQ(associatorNames(thing("a"), "", "PYL_Thing"), 2);
    EXPECT_EQ(associatorNames(thing("a"), "", "PYL_SpecialThing"), 1);
}

TEST_F(AssociationsTest, ReadsAPathWithoutANamespaceInThatOfTheRequest) {
    const auto lost = host.path("", "PYL_SpecialThing", "s", cimtest::testHostName);
    add(lost);
    multiLink(host.path("", "PYL_SpecialLink", "m", cimtest::testHostName), thing("a"), {lost});
    EXPECT_EQ(associatorNames(thing("a"), "PYL_Link", "PYL_Thing"), 2);
    EXPECT_EQ(referenceNames(thing("a"), "PYL_Link"), 2);
    EXPECT_EQ(referenceNames(thing("a"), "PYL_Thing"), 0);
}

TEST_F(AssociationsTest, FailsWithTheBrokersStatusForAClassThatItDoesNotKnow) {
    link(host.path("PYL_Unknown", "u"), thing("a"), thing("b"));
    EXPECT_THROW(references(thing("a"), "PYL_Link"), CmpiCpp::CmpiStatus);
    EXPECT_EQ(journal.take(), (Lines{"locked delivered " + instanceText("l", "PYL_Link"),
                                     "locked error: references exception:"}));
    EXPECT_FALSE(collection.isLocked());
}

TEST_F(AssociationsTest, AsksTheAssociationBeforeItsNamespaceOrAfter) {
    Lines asked;
    calls.onCall = [&](const std::string& call) { asked.push_back(call); };
    associatorNames(thing("a"));
    EXPECT_EQ(asked, (Lines{"getAssociatedPath l", "getPath l"}));
    asked.clear();
    referenceNames(thing("a"));
    EXPECT_EQ(asked, (Lines{"getPath l", "getAssociatedPath l", "getPath l"}));
}

TEST_F(AssociationsTest, ComparesTheNamespaceOfAnAssociationThatLeadsNowhereToo) {
    Lines asked;
    calls.onCall = [&](const std::string& call) { asked.push_back(call); };
    associators(thing("c"));
    associatorNames(thing("c"));
    EXPECT_EQ(asked,
              (Lines{"getAssociatedPath l", "getPath l", "getAssociatedPath l", "getPath l"}));
}

TEST_F(AssociationsTest, FailsInEveryOperationForAnAssociationThatCannotTellItsPath) {
    for (const auto* source : {"a", "c"}) {
        for (const auto& failure : allFailures()) {
            calls.onCall = [&](const std::string& call) {
                if (call == "getPath l") failure.raise();
            };
            EXPECT_EQ(outcomeOf([&] { associators(thing(source)); }), failure.name);
            EXPECT_EQ(outcomeOf([&] { associatorNames(thing(source)); }), failure.name);
            EXPECT_EQ(outcomeOf([&] { references(thing(source)); }), failure.name);
            EXPECT_EQ(outcomeOf([&] { referenceNames(thing(source)); }), failure.name);
            EXPECT_EQ(journal.take(), (Lines{"locked error: associators() exception:",
                                             "locked error: associatorNames() exception:",
                                             "locked error: references exception:",
                                             "locked error: referenceNames exception:"}));
        }
    }
}

TEST_F(AssociationsTest, LeavesAnAssociationOutAlthoughTheLineCannotNameIt) {
    for (const auto& failure : allFailures()) {
        int asked = 0;
        calls.onCall = [&](const std::string& call) {
            if (call == "getPath l" && ++asked == 2) failure.raise();
        };
        EXPECT_EQ(associators(thing("a"), "", "PYL_SpecialThing"), 0);
        EXPECT_EQ(journal.take(),
                  (Lines{"locked information: <bad value> result class filter failed",
                         "information: associators() nothing to deliver"}));
    }
}

TEST_F(AssociationsTest, IgnoresInstancesThatAreNoAssociations) {
    collection.deleteInstance(linkPath("l"));
    Lines asked;
    calls.onCall = [&](const std::string& call) { asked.push_back(call); };
    EXPECT_EQ(askAll(thing("a")), 0);
    EXPECT_EQ(asked, Lines{});
}

/// The far end "far" of "a" is somebody else's.
struct UpCallTest : AssociationsTest {
    void SetUp() override {
        add("a");
        link("l", "a", "far");
        link("m", "a", "near");
        add("near");
    }

    const std::string announced = "locked information: PYL_Link references path " + text("far") +
                                  ", not owned by this provider. Performing Upcall";
    const std::string deliveredNear = "locked delivered " + instanceText("near");

    /// What the walk says from the announcement on, and then of the far end that it owns.
    Lines around(Lines middle, int count) {
        Lines all{announced};
        all.insert(all.end(), middle.begin(), middle.end());
        all.push_back("locked information: deliver: " + text("near"));
        all.push_back(deliveredNear);
        all.push_back("information: associators() delivered: " + std::to_string(count));
        return all;
    }
    void serve(const CmpiObjectPath& path) {
        host.onGetInstance = [this, path](const CmpiObjectPath&) {
            journal.note("asked");
            return host.instance(path);
        };
    }
};

TEST_F(UpCallTest, FetchesAFarEndThatTheCollectionDoesNotOwnUnderTheLock) {
    serve(thing("far"));
    EXPECT_EQ(associators(thing("a")), 2);
    EXPECT_EQ(journal.take(), around({"locked asked", "locked information: got instance via upcall",
                                      "locked information: deliver upcall instance: " + text("far"),
                                      "locked delivered " + instanceText("far")},
                                     2));
}

TEST_F(UpCallTest, AsksForThePathThatTheAssociationGave) {
    std::optional<std::string> asked;
    host.onGetInstance = [&](const CmpiObjectPath& path) {
        asked = path.str();
        return host.instance(path);
    };
    associators(host.path("root/ktq", "PYL_Thing", "a", "elsewhere"));
    EXPECT_EQ(asked, text("far"));
}

TEST_F(UpCallTest, LeavesOutAFarEndThatNobodyServesAndGoesOn) {
    EXPECT_EQ(associators(thing("a")), 1);
    EXPECT_EQ(journal.take(), around({"locked error: upcall failed!"}, 1));
}

TEST_F(UpCallTest, LeavesOutAFarEndThatComesBackAsNothing) {
    host.onGetInstance = [](const CmpiObjectPath&) { return CmpiInstance(); };
    EXPECT_EQ(associators(thing("a")), 1);
    EXPECT_EQ(journal.take(), around({"locked error: upcall failed!"}, 1));
}

TEST_F(UpCallTest, FiltersWhatItFetchedByItsOwnClass) {
    serve(host.path("PYL_Link", "odd"));
    EXPECT_EQ(associators(thing("a"), "", "PYL_Thing"), 1);
    EXPECT_EQ(journal.take(),
              around({"locked asked", "locked information: got instance via upcall",
                      "locked information: PYL_Link result class filter failed on upcall instance"},
                     1));
    serve(host.path("PYL_SpecialThing", "far"));
    EXPECT_EQ(associators(thing("a"), "", "PYL_Thing"), 2);
}

TEST_F(UpCallTest, GoesOnWhenTheFilterCannotBeApplied) {
    serve(host.path("PYL_Unknown", "far"));
    EXPECT_EQ(associators(thing("a"), "", "PYL_Thing"), 1);
    EXPECT_EQ(journal.take(), around({"locked asked", "locked information: got instance via upcall",
                                      "locked error: upcall failed!"},
                                     1));
}

TEST_F(UpCallTest, ReadsWhatCameWithoutANamespaceInThatOfTheFarEnd) {
    const auto far = host.path("", "PYL_SpecialThing", "far", cimtest::testHostName);
    if (outcomeOf([&] { host.instance(far).getPath(); }) != "none") {
        GTEST_SKIP() << "this host gives it no path";
    }
    serve(far);
    EXPECT_EQ(associators(thing("a"), "", "PYL_Thing"), 2);
}

TEST_F(UpCallTest, IsMadeThoughItsLineCannotNameTheAssociation) {
    serve(thing("far"));
    for (const auto& failure : allFailures()) {
        int asked = 0;  // for its namespace, and whether it is the far end itself
        calls.onCall = [&](const std::string& call) {
            if (call == "getPath l" && ++asked == 3) failure.raise();
        };
        EXPECT_EQ(associators(thing("a")), 2);
        EXPECT_EQ(journal.take().at(0), "locked information: <bad value> references path " +
                                            text("far") +
                                            ", not owned by this provider. Performing Upcall");
    }
}

TEST_F(UpCallTest, DeliversWhatCannotTellItsPathWhateverIsLogged) {
    FaultyBroker faulty(host.real());
    FaultyBroker::adopt(host.context().toCMPI());
    host.use(faulty.handle());
    serve(thing("far"));
    for (const auto level : {LogLevel::error, LogLevel::information}) {
        collection.setLevel(level);
        faulty.failFrom("CMPIInstanceFT.getObjectPath", 1, FaultyBroker::Fault::status);
        instances.onDeliver = [&] { faulty.heal(); };  // the test's sink reads paths, too
        EXPECT_EQ(associators(thing("a")), 2);
        faulty.heal();
        const auto lines = journal.take();
        EXPECT_EQ(std::count(lines.begin(), lines.end(),
                             "locked information: deliver upcall instance: <bad value>"),
                  level == LogLevel::information ? 1 : 0);
    }
}

TEST_F(UpCallTest, GoesOnWhenTheSinkRefusesWhatItFetched) {
    serve(thing("far"));
    for (const auto& failure : allFailures()) {
        int deliveries = 0;
        instances.onDeliver = [&] {
            if (++deliveries == 1) failure.raise();
        };
        EXPECT_EQ(associators(thing("a")), 1);
        EXPECT_EQ(journal.take(),
                  around({"locked asked", "locked information: got instance via upcall",
                          "locked information: deliver upcall instance: " + text("far"),
                          "locked error: upcall failed!"},
                         1));
        EXPECT_FALSE(collection.isLocked());
    }
}

TEST_F(UpCallTest, NeedsNoUpCallForNamesAndReferences) {
    host.onGetInstance = [](const CmpiObjectPath&) -> CmpiInstance {
        ADD_FAILURE() << "an up-call";
        return {};
    };
    EXPECT_EQ(associatorNames(thing("a")), 2);
    EXPECT_EQ(references(thing("a")), 2);
    EXPECT_EQ(referenceNames(thing("a")), 2);
}

TEST_F(UpCallTest, LooksAtTheAssociationClassFirst) {
    EXPECT_EQ(associators(thing("a"), "PYL_SpecialLink"), 0);
    EXPECT_EQ(journal.take(), Lines{"information: associators() nothing to deliver"});
}

}  // namespace
