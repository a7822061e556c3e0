#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Instance fan(const std::string& className, const std::string& name) {
    Instance instance;
    instance.path = named(className, name, "root/test");
    instance.properties = {{"Name", Value::string(name), {}}, {"Speed", uint16Value(7), {}}};
    return instance;
}

class EnumerationOperations : public OperationsTest {
protected:
    /// Delivers these as instances and as names, whatever class is asked about.
    static void deliverAlways(ScriptedProvider& provider, std::vector<Instance> instances) {
        provider.enumerateInstances = [&provider, instances](const ProviderCalled& called) {
            for (const Instance& each : instances) provider.deliver(called.result, each);
            return provider.succeed();
        };
        provider.enumerateInstanceNames = [&provider, instances](const ProviderCalled& called) {
            for (const Instance& each : instances) provider.deliver(called.result, each.path);
            return provider.succeed();
        };
    }

    /// Delivers one instance of whatever class is asked about, named as it.
    static void deliverOneOfEach(ScriptedProvider& provider) {
        provider.enumerateInstances = [&provider](const ProviderCalled& called) {
            provider.deliver(called.result, fan(called.path.className, called.path.className));
            return provider.succeed();
        };
        provider.enumerateInstanceNames = [&provider](const ProviderCalled& called) {
            provider.deliver(called.result,
                             named(called.path.className, called.path.className, "root/test"));
            return provider.succeed();
        };
    }

    std::vector<std::string> namesOf(const std::string& className) {
        FoundPaths found;
        operations().enumerateInstanceNames(request(), classPath(className), found);
        return found.texts();
    }

    std::vector<std::string> instancesOf(const std::string& className,
                                         const InstanceOptions& options = {}) {
        FoundInstances found;
        operations().enumerateInstances(request(), classPath(className), options, found);
        std::vector<std::string> texts;
        for (const FoundInstance& each : found.all) texts.push_back(textOf(each.instance.path));
        return texts;
    }
};

TEST_F(EnumerationOperations, AsksTheProviderAboutTheClass) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    ObjectPath asked;
    RequestContext told;
    provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
        asked = called.path;
        told = called.request();
        provider.deliver(called.result, named("TST_Fan", "a", "root/test"));
        return provider.succeed();
    };
    start();
    EXPECT_THAT(namesOf("tst_FAN"), ElementsAre("TST_Fan.a"));
    EXPECT_EQ(asked.className, "TST_Fan");
    EXPECT_EQ(asked.nameSpace, "root/test");
    EXPECT_TRUE(asked.keys.empty());
    EXPECT_EQ(told.nameSpace, "root/test");
    EXPECT_EQ(told.flags, 0U);
}

TEST_F(EnumerationOperations, FailsForUnknownNamespaceAndClass) {
    start();
    FoundPaths found;
    RequestContext elsewhere;
    elsewhere.nameSpace = "root/none";
    EXPECT_EQ(errorCodeOf([&] {
                  operations().enumerateInstanceNames(elsewhere, classPath("TST_Fan"), found);
              }),
              3);
    EXPECT_THAT(errorOf([&] { namesOf("TST_None"); }), HasSubstr("5: "));
    EXPECT_EQ(errorCodeOf([&] { namesOf(""); }), 4);
}

TEST_F(EnumerationOperations, ThePathsNamespaceGoesBeforeTheRequests) {
    start();
    FoundPaths found;
    operations().enumerateInstanceNames(request(), classPath("CIM_ObjectManager", "interop"),
                                        found);
    EXPECT_EQ(found.all.size(), 1U);
}

TEST_F(EnumerationOperations, FailsWhenNobodyServesTheClassOrASubclass) {
    start();
    EXPECT_EQ(errorOf([&] { instancesOf("TST_Unserved"); }),
              "7: no provider serves class TST_Unserved in namespace root/test");
    EXPECT_EQ(errorCodeOf([&] { namesOf("TST_Unserved"); }), 7);
}

TEST_F(EnumerationOperations, ARegistrationInAnotherNamespaceDoesNotCount) {
    deliverOneOfEach(serve("P", "TST_Fan interop instance"));
    start();
    EXPECT_EQ(errorCodeOf([&] { namesOf("TST_Fan"); }), 7);
}

TEST_F(EnumerationOperations, AsksTheProvidersOfAllSubclassesOnceEach) {
    deliverOneOfEach(serve("P", "TST_Fan root/test instance"));
    deliverOneOfEach(serve("P", "TST_TurboFan root/test instance"));
    deliverOneOfEach(serve("Q", "TST_Sensor root/test instance"));
    start();
    EXPECT_THAT(namesOf("TST_Element"), ElementsAre("TST_Fan.TST_Fan", "TST_TurboFan.TST_TurboFan",
                                                    "TST_Sensor.TST_Sensor"));
    EXPECT_THAT(instancesOf("TST_Fan"),
                ElementsAre("TST_Fan.TST_Fan", "TST_TurboFan.TST_TurboFan"));
    EXPECT_THAT(instancesOf("TST_TurboFan"), ElementsAre("TST_TurboFan.TST_TurboFan"));
}

TEST_F(EnumerationOperations, AnUnregisteredClassIsItsNearestAncestorsBusiness) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    deliverOneOfEach(provider);
    start();
    EXPECT_THAT(namesOf("TST_TurboFan"), ElementsAre("TST_TurboFan.TST_TurboFan"));
}

TEST_F(EnumerationOperations, LeavesOutInstancesOfOtherClasses) {
    deliverAlways(serve("P", "TST_Fan root/test instance"),
                  {fan("TST_Fan", "a"), fan("TST_TurboFan", "b"), fan("TST_System", "c")});
    start();
    EXPECT_THAT(namesOf("TST_TurboFan"), ElementsAre("TST_TurboFan.b"));
    EXPECT_THAT(namesOf("TST_Fan"), ElementsAre("TST_Fan.a", "TST_TurboFan.b"));
    EXPECT_THAT(instancesOf("TST_Fan"), ElementsAre("TST_Fan.a", "TST_TurboFan.b"));
}

TEST_F(EnumerationOperations, DeliversNothingTwiceFromAProviderThatIgnoresTheClass) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    serve("P", "TST_FastFan root/test instance");
    deliverAlways(provider, {fan("TST_Fan", "a"), fan("TST_FastFan", "b")});
    start();
    EXPECT_THAT(namesOf("TST_Element"), ElementsAre("TST_Fan.a", "TST_FastFan.b"));
    EXPECT_THAT(instancesOf("TST_Fan"), ElementsAre("TST_Fan.a", "TST_FastFan.b"));
}

TEST_F(EnumerationOperations, PassesResultsOfUndeclaredClassesWithoutADefinition) {
    deliverAlways(serve("P", "TST_Fan root/test instance"),
                  {fan("TST_Undeclared", "a"), fan("TST_FastFan", "b")});
    start();
    FoundInstances found;
    operations().enumerateInstances(request(), classPath("TST_Fan"), {}, found);
    ASSERT_EQ(found.all.size(), 2U);
    EXPECT_EQ(found.all[0].definition, nullptr);
    EXPECT_EQ(found.all[1].definition, repository.get("root/test").findClass("TST_FastFan"));
}

TEST_F(EnumerationOperations, FillsInNamespaceAndClassOfResults) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    Instance bare = fan("", "a");
    bare.path.nameSpace.clear();
    deliverAlways(provider, {bare});
    start();
    FoundInstances instances;
    operations().enumerateInstances(request(), classPath("TST_Fan"), {}, instances);
    ASSERT_EQ(instances.all.size(), 1U);
    EXPECT_EQ(instances.all[0].instance.path.nameSpace, "root/test");
    EXPECT_EQ(instances.all[0].instance.path.className, "TST_Fan");
    EXPECT_NE(instances.all[0].definition, nullptr);
    FoundPaths paths;
    operations().enumerateInstanceNames(request(), classPath("TST_Fan"), paths);
    ASSERT_EQ(paths.all.size(), 1U);
    EXPECT_EQ(paths.all[0].nameSpace, "root/test");
    EXPECT_EQ(paths.all[0].className, "TST_Fan");
}

TEST_F(EnumerationOperations, ShowsOnlyListedPropertiesWhateverTheProviderDelivers) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    std::optional<std::vector<std::string>> passed;
    provider.enumerateInstances = [&](const ProviderCalled& called) {
        passed = called.propertyList;
        provider.deliver(called.result, fan("TST_Fan", "a"));
        return provider.succeed();
    };
    start();
    FoundInstances found;
    InstanceOptions options;
    options.propertyList = {"sPEED", "NoSuchThing"};
    operations().enumerateInstances(request(), classPath("TST_Fan"), options, found);
    EXPECT_THAT(found.all.at(0).shown, ElementsAre("Speed"));
    EXPECT_EQ(passed, options.propertyList);
}

TEST_F(EnumerationOperations, AnEmptyListShowsNothingAndNoListShowsAll) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    std::vector<std::optional<std::vector<std::string>>> passed;
    provider.enumerateInstances = [&](const ProviderCalled& called) {
        passed.push_back(called.propertyList);
        provider.deliver(called.result, fan("TST_Fan", "a"));
        return provider.succeed();
    };
    start();
    FoundInstances found;
    InstanceOptions options;
    operations().enumerateInstances(request(), classPath("TST_Fan"), options, found);
    options.propertyList.emplace();
    operations().enumerateInstances(request(), classPath("TST_Fan"), options, found);
    EXPECT_THAT(found.all.at(0).shown, ElementsAre("Name", "Speed"));
    EXPECT_THAT(found.all.at(1).shown, IsEmpty());
    EXPECT_FALSE(passed.at(0).has_value());
    EXPECT_EQ(passed.at(1), std::vector<std::string>{});
}

TEST_F(EnumerationOperations, ShallowInheritanceHidesWhatSubclassesAdd) {
    ScriptedProvider& provider = serve("P", "TST_FastFan root/test instance");
    Instance fast = fan("TST_FastFan", "a");
    fast.set("Boost", uint32Value(9));
    deliverAlways(provider, {fast});
    start();
    InstanceOptions options;
    options.deepInheritance = false;
    FoundInstances found;
    operations().enumerateInstances(request(), classPath("TST_Fan"), options, found);
    EXPECT_THAT(found.all.at(0).shown, ElementsAre("Name", "Speed"));
    operations().enumerateInstances(request(), classPath("TST_FastFan"), options, found);
    EXPECT_THAT(found.all.at(1).shown, ElementsAre("Name", "Speed", "Boost"));
}

TEST_F(EnumerationOperations, OptionsBecomeInvocationFlags) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    CMPIFlags flags = 0;
    provider.enumerateInstances = [&](const ProviderCalled& called) {
        flags = called.request().flags;
        return provider.succeed();
    };
    start();
    InstanceOptions options;
    options.localOnly = true;
    options.includeClassOrigin = true;
    instancesOf("TST_Fan", options);
    EXPECT_EQ(flags,
              static_cast<CMPIFlags>(CMPI_FLAG_DeepInheritance | CMPI_FLAG_IncludeClassOrigin));
    options = {};
    options.deepInheritance = false;
    options.includeQualifiers = true;
    instancesOf("TST_Fan", options);
    EXPECT_EQ(flags, static_cast<CMPIFlags>(CMPI_FLAG_IncludeQualifiers));
}

TEST_F(EnumerationOperations, TheProvidersFailureReachesTheClient) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.enumerateInstances = [&](const ProviderCalled&) {
        return provider.fail(2, "keep out");
    };
    start();
    EXPECT_EQ(errorOf([&] { instancesOf("TST_Fan"); }), "2: keep out");
}

TEST_F(EnumerationOperations, NotFoundFromAnEnumerationIsAnEmptyResult) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.enumerateInstances = [&](const ProviderCalled&) { return provider.fail(6); };
    provider.enumerateInstanceNames = provider.enumerateInstances;
    deliverOneOfEach(serve("Q", "TST_TurboFan root/test instance"));
    start();
    EXPECT_THAT(instancesOf("TST_Fan"), ElementsAre("TST_TurboFan.TST_TurboFan"));
    EXPECT_THAT(namesOf("TST_Fan"), ElementsAre("TST_TurboFan.TST_TurboFan"));
}

TEST_F(EnumerationOperations, AClassServedForAssociationsAloneHasAnEmptyList) {
    serve("P", "TST_Fan root/test association");
    start();
    EXPECT_THAT(instancesOf("TST_Fan"), IsEmpty());
    EXPECT_THAT(namesOf("TST_Fan"), IsEmpty());
}

TEST_F(EnumerationOperations, ANullSlotIsNotSupported) {
    serve("P", "TST_Fan root/test instance");
    start();
    EXPECT_EQ(errorOf([&] { instancesOf("TST_Fan"); }),
              "7: provider P does not offer this operation");
    EXPECT_EQ(errorCodeOf([&] { namesOf("TST_Fan"); }), 7);
}

TEST_F(EnumerationOperations, WhatTheSinkThrowsEndsTheOperationThoughTheProviderIgnoresIt) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    deliverAlways(provider, {fan("TST_Fan", "a"), fan("TST_Fan", "b"), fan("TST_Fan", "c")});
    start();
    struct Gone : InstanceSink {
        void deliver(const Instance&, const Class*, const PropertySelection&) override {
            ++count;
            throw std::runtime_error("the client is gone");
        }
        int count = 0;
    } sink;
    EXPECT_THROW(operations().enumerateInstances(request(), classPath("TST_Fan"), {}, sink),
                 std::runtime_error);
    EXPECT_EQ(sink.count, 1);
}

TEST_F(EnumerationOperations, ResultsOfTheWrongKindAreTheProvidersFailure) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.enumerateInstances = [&](const ProviderCalled& called) {
        provider.deliver(called.result, uint32Value(1));
        return provider.succeed();
    };
    provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
        provider.deliver(called.result, fan("TST_Fan", "a"));
        return provider.succeed();
    };
    start();
    EXPECT_EQ(errorOf([&] { instancesOf("TST_Fan"); }),
              "1: provider P delivered a plain value, which is no result of this");
    EXPECT_EQ(errorOf([&] { namesOf("TST_Fan"); }),
              "1: provider P delivered an instance, which is no result of this");
}

TEST_F(EnumerationOperations, AQueryGoesToTheProvidersOfItsClass) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    serve("P", "TST_TurboFan root/test instance");
    std::vector<std::string> asked;
    std::vector<std::optional<std::string>> texts;
    provider.execQuery = [&](const ProviderCalled& called) {
        asked.push_back(called.path.className);
        texts = called.texts;
        provider.deliver(called.result, fan(called.path.className, "a"));
        return provider.succeed();
    };
    start();
    FoundInstances found;
    operations().execQuery(request(), "WQL", "SELECT * FROM TST_Fan", found);
    EXPECT_THAT(asked, ElementsAre("TST_Fan", "TST_TurboFan"));
    EXPECT_THAT(texts, ElementsAre("SELECT * FROM TST_Fan", "WQL"));
    EXPECT_EQ(found.all.size(), 2U);
}

TEST_F(EnumerationOperations, AQueryThatNobodyCanRunIsNotSupported) {
    serve("P", "TST_Fan root/test instance");
    start();
    FoundInstances found;
    const auto codeOf = [&](const char* query) {
        return errorCodeOf([&] { operations().execQuery(request(), "WQL", query, found); });
    };
    EXPECT_EQ(codeOf("SELECT * FROM TST_Fan"), 7);
    EXPECT_EQ(codeOf("SELECT * FROM TST_Unserved"), 7);
    EXPECT_EQ(codeOf("SELECT * FROM TST_None"), 5);
    EXPECT_EQ(codeOf("SELECT"), 15);
}

}  // namespace
}  // namespace cimhost::test
