#include "cimhost/operations/HostInstances.h"

#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr const char* instances = R"(
instance of TST_Fan as $f { Name = "static"; Speed = 3; };
instance of TST_TurboFan as $t { Name = "turbo"; };
instance of TST_System as $s { Name = "box"; };
instance of TST_FanLink { Whole = $s; Part = $f; Slot = 1; };
instance of TST_Link { Whole = $s; Part = $t; };
)";

class HostInstances : public OperationsTest {
protected:
    HostInstances() { readMof(instances); }

    std::vector<std::string> namesOf(const std::string& className,
                                     const std::string& nameSpace = "root/test") {
        FoundPaths found;
        operations().enumerateInstanceNames(request(), classPath(className, nameSpace), found);
        return found.texts();
    }

    std::vector<std::string> associatorsOf(const ObjectPath& path,
                                           const AssociationFilter& filter = {}) {
        FoundPaths names;
        operations().associatorNames(request(), path, filter, names);
        FoundInstances found;
        operations().associators(request(), path, filter, {}, found);
        EXPECT_EQ(names.all.size(), found.all.size());
        return names.texts();
    }

    std::vector<std::string> referencesTo(const ObjectPath& path,
                                          const AssociationFilter& filter = {}) {
        FoundPaths names;
        operations().referenceNames(request(), path, filter, names);
        FoundInstances found;
        operations().references(request(), path, filter, {}, found);
        EXPECT_EQ(names.all.size(), found.all.size());
        std::vector<std::string> classes;
        for (const ObjectPath& each : names.all) classes.push_back(each.className);
        return classes;
    }
};

TEST_F(HostInstances, StaticInstancesAreEnumeratedWithTheirSubclasses) {
    start();
    EXPECT_THAT(namesOf("TST_Fan"), ElementsAre("TST_Fan.static", "TST_TurboFan.turbo"));
    EXPECT_THAT(namesOf("TST_TurboFan"), ElementsAre("TST_TurboFan.turbo"));
}

TEST_F(HostInstances, StaticInstancesCanBeRead) {
    start();
    FoundInstances found;
    InstanceOptions options;
    options.propertyList = {"Speed"};
    operations().getInstance(request(), named("tst_fan", "static"), options, found);
    ASSERT_EQ(found.all.size(), 1U);
    EXPECT_THAT(found.all[0].shown, ElementsAre("Speed"));
    EXPECT_EQ(found.all[0].instance.find("Speed")->value, uint16Value(3));
    EXPECT_EQ(errorCodeOf([&] {
                  operations().getInstance(request(), named("TST_Fan", "other"), {}, found);
              }),
              6);
}

TEST_F(HostInstances, StaticInstancesCannotBeChanged) {
    start();
    Instance instance;
    instance.path = named("TST_Fan", "static");
    EXPECT_EQ(errorOf([&] { operations().modifyInstance(request(), instance, {}); }),
              "7: the instances of class TST_Fan can only be read");
    EXPECT_EQ(errorCodeOf([&] { operations().deleteInstance(request(), instance.path); }), 7);
    EXPECT_EQ(errorCodeOf([&] { operations().createInstance(request(), instance); }), 7);
}

TEST_F(HostInstances, ARegisteredProviderHidesTheStaticInstancesOfItsClassAlone) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
        provider.deliver(called.result, named("TST_Fan", "live"));
        return provider.succeed();
    };
    provider.getInstance = [&](const ProviderCalled&) { return provider.fail(6); };
    start();
    EXPECT_THAT(namesOf("TST_Fan"), ElementsAre("TST_Fan.live", "TST_TurboFan.turbo"));
    FoundInstances found;
    EXPECT_EQ(errorCodeOf([&] {
                  operations().getInstance(request(), named("TST_Fan", "static"), {}, found);
              }),
              6);
    operations().getInstance(request(), named("TST_TurboFan", "turbo"), {}, found);
    EXPECT_EQ(found.all.size(), 1U);
}

TEST_F(HostInstances, ReferencesFindStaticAssociations) {
    start();
    EXPECT_THAT(referencesTo(named("TST_System", "box")), ElementsAre("TST_FanLink", "TST_Link"));
    EXPECT_THAT(referencesTo(named("TST_Fan", "static")), ElementsAre("TST_FanLink"));
    EXPECT_THAT(referencesTo(named("TST_System", "box"), {{}, "TST_FanLink", {}, {}}),
                ElementsAre("TST_FanLink"));
    EXPECT_THAT(referencesTo(named("TST_System", "box"), {{}, {}, "whole", {}}),
                ElementsAre("TST_FanLink", "TST_Link"));
    EXPECT_THAT(referencesTo(named("TST_System", "box"), {{}, {}, "Part", {}}), ElementsAre());
    EXPECT_THAT(referencesTo(named("TST_System", "other")), ElementsAre());
}

TEST_F(HostInstances, AssociatorsFollowStaticAssociations) {
    start();
    const ObjectPath box = named("TST_System", "box");
    EXPECT_THAT(associatorsOf(box), ElementsAre("TST_Fan.static", "TST_TurboFan.turbo"));
    EXPECT_THAT(associatorsOf(named("TST_Fan", "static")), ElementsAre("TST_System.box"));
    EXPECT_THAT(associatorsOf(box, {"TST_FanLink", {}, {}, {}}), ElementsAre("TST_Fan.static"));
    EXPECT_THAT(associatorsOf(box, {{}, "TST_TurboFan", {}, {}}),
                ElementsAre("TST_TurboFan.turbo"));
    EXPECT_THAT(associatorsOf(box, {{}, {}, "Part", {}}), ElementsAre());
    EXPECT_THAT(associatorsOf(box, {{}, {}, {}, "Whole"}), ElementsAre());
    EXPECT_THAT(associatorsOf(box, {{}, {}, "WHOLE", "PART"}),
                ElementsAre("TST_Fan.static", "TST_TurboFan.turbo"));
}

TEST_F(HostInstances, AssociatorsLeaveOutWhatNoLongerExists) {
    readMof(
        "instance of TST_CoolingLink { Fan = \"TST_Fan.Name=\\\"gone\\\"\"; "
        "Sensor = \"TST_Sensor.Number=1,Since=\\\"20261121053000.000000+000\\\"\"; };");
    start();
    FoundInstances found;
    ObjectPath sensor = pathOf("TST_Sensor", "Number", uint32Value(1));
    sensor.keys.push_back({"Since", Value::string("20261121053000.000000+000")});
    operations().associators(request(), sensor, {}, {}, found);
    EXPECT_TRUE(found.all.empty());
    FoundPaths names;
    operations().associatorNames(request(), sensor, {}, names);
    EXPECT_THAT(names.texts(), ElementsAre("TST_Fan.gone"));
}

TEST_F(HostInstances, NamespacesAreBuiltInWhereTheClassIs) {
    start();
    FoundInstances found;
    operations().enumerateInstances(request(), classPath("CIM_Namespace", "interop"), {}, found);
    std::vector<std::string> names;
    for (const FoundInstance& each : found.all) {
        names.push_back(each.instance.find("Name")->value.get<Text>()->str());
        EXPECT_EQ(each.instance.path.keys.size(), 6U);
        EXPECT_EQ(each.instance.find("ElementName"), nullptr) << "the class does not declare it";
    }
    EXPECT_THAT(names, UnorderedElementsAre("interop", "root/test"));
    EXPECT_EQ(errorCodeOf([&] { namesOf("CIM_Namespace", "root/test"); }), 5);
}

TEST_F(HostInstances, ABuiltInInstanceIsFoundByThePathItWasEnumeratedWith) {
    start();
    FoundPaths names;
    operations().enumerateInstanceNames(request(), classPath("CIM_Namespace", "interop"), names);
    ASSERT_EQ(names.all.size(), 2U);
    FoundInstances found;
    operations().getInstance(request(), names.all[1], {}, found);
    ASSERT_EQ(found.all.size(), 1U);
    EXPECT_TRUE(sameModelPath(found.all[0].instance.path, names.all[1]));
    EXPECT_EQ(errorCodeOf([&] { operations().deleteInstance(request(), names.all[1]); }), 7);
    names.all[1].setKey("Name", Value::string("root/none"));
    EXPECT_EQ(errorCodeOf([&] { operations().getInstance(request(), names.all[1], {}, found); }),
              6);
}

TEST_F(HostInstances, ThereIsOneObjectManagerWithTypedProperties) {
    start();
    FoundInstances found;
    operations().enumerateInstances(request(), classPath("CIM_ObjectManager", "interop"), {},
                                    found);
    ASSERT_EQ(found.all.size(), 1U);
    const Instance& manager = found.all[0].instance;
    EXPECT_EQ(manager.find("Name")->value, Value::string("cimhost"));
    EXPECT_FALSE(manager.find("Version")->value.get<Text>()->empty());
    EXPECT_EQ(manager.find("OperationalStatus")->value,
              Value::array(CimType::uint16, {uint16Value(2)}));
    EXPECT_EQ(manager.find("Started"), nullptr) << "this schema means something else by it";
}

TEST_F(HostInstances, RelativeNamespacesAreThoseBelow) {
    readMof(
        "Qualifier Key : boolean = false, Scope(property, reference);"
        "class __Namespace { [Key] string Name; };",
        "root");
    start();
    EXPECT_THAT(namesOf("__Namespace", "root"), ElementsAre("__Namespace.test"));
    EXPECT_THAT(namesOf("__Namespace", "interop"), ElementsAre());
}

TEST_F(HostInstances, StaticInstancesTakeThePlaceOfBuiltInOnes) {
    readMof("instance of __Namespace { Name = \"own\"; };", "interop");
    start();
    EXPECT_THAT(namesOf("__Namespace", "interop"), ElementsAre("__Namespace.own"));
}

TEST_F(HostInstances, ARegisteredProviderTakesThePlaceOfBuiltInOnes) {
    ScriptedProvider& provider = serve("N", "__Namespace interop instance");
    provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
        provider.deliver(called.result, named("__Namespace", "served", "interop"));
        return provider.succeed();
    };
    start();
    EXPECT_THAT(namesOf("__Namespace", "interop"), ElementsAre("__Namespace.served"));
}

}  // namespace
}  // namespace cimhost::test
