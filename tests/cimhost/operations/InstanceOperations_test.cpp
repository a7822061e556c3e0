#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Instance fanInstance(const std::string& className, const std::string& name) {
    Instance instance;
    instance.path = named(className, name, "root/test");
    instance.properties = {{"Name", Value::string(name), {}}, {"Speed", uint16Value(7), {}}};
    return instance;
}

class InstanceOperations : public OperationsTest {
protected:
    FoundInstances get(const ObjectPath& path, const InstanceOptions& options = {}) {
        FoundInstances found;
        operations().getInstance(request(), path, options, found);
        return found;
    }

    int getCode(const ObjectPath& path) {
        return errorCodeOf([&] { get(path); });
    }

    /// A provider of fans that keeps what it was asked about and answers with that.
    ScriptedProvider& serveFans() {
        ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
        provider.getInstance = [&](const ProviderCalled& called) {
            asked.push_back(called.path);
            flags = called.request().flags;
            Instance instance;
            instance.path = called.path;
            instance.properties = {{"Name", Value(called.path.keys[0].value), {}},
                                   {"Speed", uint16Value(7), {}}};
            provider.deliver(called.result, instance);
            return provider.succeed();
        };
        return provider;
    }

    ScriptedProvider& serveSensors() {
        ScriptedProvider& provider = serve("S", "TST_Sensor root/test instance");
        provider.getInstance = [&](const ProviderCalled& called) {
            asked.push_back(called.path);
            return provider.fail(6);
        };
        return provider;
    }

    std::vector<ObjectPath> asked;
    CMPIFlags flags = 0;
};

TEST_F(InstanceOperations, GetAsksTheProviderForTheInstance) {
    serveFans();
    start();
    const FoundInstances found = get(named("tst_fan", "a"));
    ASSERT_EQ(found.all.size(), 1U);
    EXPECT_EQ(textOf(found.all[0].instance.path), "TST_Fan.a");
    EXPECT_EQ(found.all[0].definition, repository.get("root/test").findClass("TST_Fan"));
    EXPECT_EQ(asked.at(0).nameSpace, "root/test");
    EXPECT_EQ(asked.at(0).className, "TST_Fan");
    EXPECT_EQ(flags, 0U);
}

TEST_F(InstanceOperations, GetTellsTheProviderItsOptions) {
    serveFans();
    start();
    InstanceOptions options;
    options.localOnly = true;
    options.includeClassOrigin = true;
    options.includeQualifiers = true;
    get(named("TST_Fan", "a"), options);
    EXPECT_EQ(flags,
              static_cast<CMPIFlags>(CMPI_FLAG_IncludeClassOrigin | CMPI_FLAG_IncludeQualifiers));
}

TEST_F(InstanceOperations, GetShowsOnlyListedProperties) {
    serveFans();
    start();
    InstanceOptions options;
    options.propertyList = {"speed", "Nothing"};
    EXPECT_THAT(get(named("TST_Fan", "a"), options).all.at(0).shown, ElementsAre("Speed"));
    options.propertyList.emplace();
    EXPECT_TRUE(get(named("TST_Fan", "a"), options).all.at(0).shown.empty());
}

TEST_F(InstanceOperations, GetChecksKeysBeforeTheProviderIsAsked) {
    serveFans();
    start();
    EXPECT_EQ(errorOf([&] { get(classPath("TST_Fan")); }), "4: key Name of TST_Fan is missing");
    EXPECT_EQ(errorOf([&] { get(pathOf("TST_Fan", "Nome", Value::string("a"))); }),
              "4: class TST_Fan has no key 'Nome'; did you mean 'Name'?");
    EXPECT_EQ(errorOf([&] { get(pathOf("TST_Fan", "Speed", uint16Value(1))); }),
              "4: class TST_Fan has no key 'Speed'");
    EXPECT_EQ(errorOf([&] { get(pathOf("TST_Fan", "Name", uint32Value(1))); }),
              "4: key Name of TST_Fan: an integer is not of type string");
    EXPECT_EQ(errorOf([&] { get(pathOf("TST_Fan", "Name", Value::null(CimType::string))); }),
              "4: key Name of TST_Fan has no value");
    ObjectPath twice = named("TST_Fan", "a");
    twice.keys.push_back({"NAME", Value::string("a")});
    EXPECT_EQ(errorOf([&] { get(twice); }), "4: key Name is given twice");
    ObjectPath extra = named("TST_Fan", "a");
    extra.keys.push_back({"Extra", Value::string("a")});
    EXPECT_EQ(getCode(extra), 4);
    EXPECT_TRUE(asked.empty());
}

TEST_F(InstanceOperations, KeysGetTheirDeclaredTypes) {
    serveSensors();
    start();
    ObjectPath path = pathOf("TST_Sensor", "NUMBER", Value::signedInteger(CimType::sint64, 5));
    path.keys.push_back({"since", Value::string("20261121053000.000000+000")});
    EXPECT_EQ(getCode(path), 6);
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].keys[0].name, "Number");
    EXPECT_EQ(asked[0].keys[0].value, uint32Value(5));
    EXPECT_EQ(asked[0].keys[1].name, "Since");
    EXPECT_EQ(asked[0].keys[1].value.type(), CimType::dateTime);
}

TEST_F(InstanceOperations, KeysOutOfRangeAreRefused) {
    serveSensors();
    start();
    for (const std::int64_t number : {std::int64_t{-1}, std::int64_t{1} << 32}) {
        ObjectPath path =
            pathOf("TST_Sensor", "Number", Value::signedInteger(CimType::sint64, number));
        path.keys.push_back({"Since", Value::string("20261121053000.000000+000")});
        EXPECT_EQ(getCode(path), 4) << number;
    }
    ObjectPath path = pathOf("TST_Sensor", "Number", uint32Value(1));
    path.keys.push_back({"Since", Value::string("yesterday")});
    EXPECT_EQ(getCode(path), 4);
    EXPECT_TRUE(asked.empty());
}

TEST_F(InstanceOperations, ReferenceKeysGetNamespaceAndTypesOfTheirClass) {
    ScriptedProvider& provider = serve("L", "TST_Link root/test instance");
    provider.getInstance = [&](const ProviderCalled& called) {
        asked.push_back(called.path);
        return provider.fail(6);
    };
    start();
    ObjectPath path = pathOf("TST_Link", "Whole", Value::reference(named("tst_system", "s")));
    path.keys.push_back({"Part", Value::reference(named("TST_Fan", "f", "root/other"))});
    EXPECT_EQ(getCode(path), 6);
    ASSERT_EQ(asked.size(), 1U);
    const auto& whole = **asked[0].keys[0].value.get<std::shared_ptr<const ObjectPath>>();
    EXPECT_EQ(whole.nameSpace, "root/test");
    EXPECT_EQ(whole.className, "TST_System");
    const auto& part = **asked[0].keys[1].value.get<std::shared_ptr<const ObjectPath>>();
    EXPECT_EQ(part.nameSpace, "root/other");
    path.keys[0].value = Value::reference(pathOf("TST_System", "Nome", Value::string("s")));
    EXPECT_EQ(getCode(path), 4);
    path.keys[0].value = uint32Value(1);
    EXPECT_EQ(getCode(path), 4);
}

TEST_F(InstanceOperations, GetFailsForUnknownNamespaceClassAndUnservedClass) {
    start();
    EXPECT_EQ(getCode(named("TST_Fan", "a", "root/none")), 3);
    EXPECT_EQ(getCode(named("TST_None", "a")), 5);
    EXPECT_EQ(getCode(named("TST_Unserved", "a")), 7);
}

TEST_F(InstanceOperations, GetOfAnUnregisteredClassGoesToTheNearestAncestor) {
    serveFans();
    start();
    get(named("TST_TurboFan", "t"));
    EXPECT_EQ(asked.at(0).className, "TST_TurboFan");
}

TEST_F(InstanceOperations, GetWithoutADeliveryIsNotFound) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.getInstance = [&](const ProviderCalled&) { return provider.succeed(); };
    start();
    EXPECT_EQ(getCode(named("TST_Fan", "a")), 6);
}

TEST_F(InstanceOperations, GetRefusesTwoInstancesOrOneOfAnotherClass) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    std::vector<Instance> delivered{fanInstance("TST_Fan", "a"), fanInstance("TST_Fan", "a")};
    provider.getInstance = [&](const ProviderCalled& called) {
        for (const Instance& each : delivered) provider.deliver(called.result, each);
        return provider.succeed();
    };
    start();
    EXPECT_EQ(errorOf([&] { get(named("TST_Fan", "a")); }),
              "1: provider P delivered more than one instance");
    delivered = {fanInstance("TST_System", "a")};
    EXPECT_EQ(errorOf([&] { get(named("TST_Fan", "a")); }),
              "1: provider P delivered an instance of TST_System for one of TST_Fan");
}

TEST_F(InstanceOperations, GetFillsInThePathOfTheResult) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.getInstance = [&](const ProviderCalled& called) {
        provider.deliver(called.result, Instance{});
        return provider.succeed();
    };
    start();
    const FoundInstances found = get(named("TST_Fan", "a"));
    EXPECT_EQ(textOf(found.all.at(0).instance.path), "TST_Fan.a");
    EXPECT_EQ(found.all[0].instance.path.nameSpace, "root/test");
    EXPECT_NE(found.all[0].definition, nullptr);
}

TEST_F(InstanceOperations, AProviderThatThrowsFailsTheCallAndNoOther) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    int calls = 0;
    provider.getInstance = [&](const ProviderCalled& called) -> CMPIStatus {
        if (++calls == 1) throw std::runtime_error("broken fan");
        if (calls == 2) throw 17;
        provider.deliver(called.result, fanInstance("TST_Fan", "a"));
        return provider.succeed();
    };
    start();
    EXPECT_EQ(errorOf([&] { get(named("TST_Fan", "a")); }), "1: provider P threw broken fan");
    EXPECT_EQ(getCode(named("TST_Fan", "a")), 1);
    EXPECT_EQ(getCode(named("TST_Fan", "a")), 0);
}

TEST_F(InstanceOperations, ForeignHandlesFromAProviderAreRefused) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.getInstance = [&](const ProviderCalled& called) {
        CMPIInstance foreign{nullptr, nullptr};
        const CMPIStatus refused = called.result->ft->returnInstance(called.result, &foreign);
        EXPECT_NE(refused.rc, CMPI_RC_OK);
        return called.result->ft->returnInstance(called.result, nullptr);
    };
    start();
    EXPECT_EQ(getCode(named("TST_Fan", "a")), 1);
}

TEST_F(InstanceOperations, CreateGivesTheProviderDeclaredPropertiesAndReturnsItsPath) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    Instance given;
    ObjectPath target;
    provider.createInstance = [&](const ProviderCalled& called) {
        given = *called.instance;
        target = called.path;
        provider.deliver(called.result, named("TST_Fan", "made"));
        return provider.succeed();
    };
    start();
    Instance wanted;
    wanted.path.className = "tst_fan";
    wanted.set("NAME", Value::string("new"));
    wanted.set("speed", Value::signedInteger(CimType::sint32, 12));
    const ObjectPath created = operations().createInstance(request(), wanted);
    EXPECT_EQ(textOf(created), "TST_Fan.made");
    EXPECT_EQ(created.nameSpace, "root/test");
    EXPECT_TRUE(target.keys.empty());
    EXPECT_EQ(target.className, "TST_Fan");
    EXPECT_EQ(textOf(given.path), "TST_Fan.new");
    ASSERT_NE(given.find("Speed"), nullptr);
    EXPECT_EQ(given.find("Speed")->value, uint16Value(12));
}

TEST_F(InstanceOperations, CreateRefusesWhatTheClassDoesNotDeclare) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    bool isAsked = false;
    provider.createInstance = [&](const ProviderCalled&) {
        isAsked = true;
        return provider.succeed();
    };
    start();
    const auto failureWith = [&](const std::string& name, const Value& value) {
        Instance wanted;
        wanted.path.className = "TST_Fan";
        wanted.set(name, value);
        return errorOf([&] { operations().createInstance(request(), wanted); });
    };
    EXPECT_EQ(failureWith("Colour", uint32Value(1)), "12: class TST_Fan has no property 'Colour'");
    EXPECT_THAT(failureWith("Speed", Value::string("fast")), HasSubstr("13: property Speed"));
    EXPECT_THAT(failureWith("Speed", uint32Value(65536)), HasSubstr("13: "));
    EXPECT_THAT(failureWith("Levels", uint32Value(1)), HasSubstr("13: "));
    EXPECT_THAT(failureWith("Speed", Value::array(CimType::uint16, {})), HasSubstr("13: "));
    Instance twice;
    twice.path.className = "TST_Fan";
    twice.properties = {{"Speed", uint16Value(1), {}}, {"SPEED", uint16Value(1), {}}};
    EXPECT_EQ(errorCodeOf([&] { operations().createInstance(request(), twice); }), 4);
    EXPECT_FALSE(isAsked);
}

TEST_F(InstanceOperations, CreateRefusesAbstractUnknownAndUnservedClasses) {
    start();
    const auto codeFor = [&](const std::string& className) {
        Instance wanted;
        wanted.path.className = className;
        return errorCodeOf([&] { operations().createInstance(request(), wanted); });
    };
    EXPECT_EQ(codeFor("TST_Element"), 4);
    EXPECT_EQ(codeFor("TST_None"), 5);
    EXPECT_EQ(codeFor("TST_Unserved"), 7);
}

TEST_F(InstanceOperations, CreatePassesOnThatTheInstanceExists) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.createInstance = [&](const ProviderCalled&) { return provider.fail(11); };
    start();
    Instance wanted;
    wanted.path.className = "TST_Fan";
    EXPECT_EQ(errorOf([&] { operations().createInstance(request(), wanted); }),
              "11: CIM_ERR_ALREADY_EXISTS");
}

TEST_F(InstanceOperations, CreateWithoutAPathIsTheProvidersFailure) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    int paths = 0;
    provider.createInstance = [&](const ProviderCalled& called) {
        for (int i = 0; i < paths; ++i) provider.deliver(called.result, named("TST_Fan", "a"));
        return provider.succeed();
    };
    start();
    Instance wanted;
    wanted.path.className = "TST_Fan";
    EXPECT_EQ(errorOf([&] { operations().createInstance(request(), wanted); }),
              "1: provider P delivered no object path for what it created");
    paths = 2;
    EXPECT_EQ(errorOf([&] { operations().createInstance(request(), wanted); }),
              "1: provider P delivered more than one object path");
}

TEST_F(InstanceOperations, ModifyGivesTheProviderPathValuesAndList) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    ProviderCalled seen;
    provider.modifyInstance = [&](const ProviderCalled& called) {
        seen = called;
        return provider.succeed();
    };
    start();
    Instance wanted = fanInstance("TST_Fan", "a");
    operations().modifyInstance(request(), wanted, std::nullopt);
    EXPECT_EQ(textOf(seen.path), "TST_Fan.a");
    EXPECT_EQ(seen.instance->find("Speed")->value, uint16Value(7));
    EXPECT_FALSE(seen.propertyList.has_value());
    operations().modifyInstance(request(), wanted, std::vector<std::string>{"speed"});
    EXPECT_EQ(seen.propertyList, std::vector<std::string>{"speed"});
}

TEST_F(InstanceOperations, ModifyRefusesUnknownPropertiesWrongTypesAndNewKeys) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.modifyInstance = [&](const ProviderCalled&) { return provider.succeed(); };
    start();
    const auto codeWith = [&](const std::string& name, const Value& value,
                              const std::optional<std::vector<std::string>>& list = {}) {
        Instance wanted;
        wanted.path = named("TST_Fan", "a");
        wanted.set(name, value);
        return errorCodeOf([&] { operations().modifyInstance(request(), wanted, list); });
    };
    EXPECT_EQ(codeWith("Colour", uint32Value(1)), 12);
    EXPECT_EQ(codeWith("Speed", Value::string("x")), 13);
    EXPECT_EQ(codeWith("Speed", uint16Value(1), {{"Colour"}}), 12);
    EXPECT_EQ(codeWith("Name", Value::string("b")), 4);
    EXPECT_EQ(codeWith("Name", Value::null(CimType::string)), 4);
    EXPECT_EQ(codeWith("Name", Value::string("a")), 0);
    EXPECT_EQ(codeWith("Name", Value::string("b"), {{"Speed"}}), 0);
    Instance wanted;
    wanted.path = classPath("TST_Fan");
    EXPECT_EQ(errorCodeOf([&] { operations().modifyInstance(request(), wanted, {}); }), 4);
}

TEST_F(InstanceOperations, DeleteAsksTheProvider) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.deleteInstance = [&](const ProviderCalled& called) {
        asked.push_back(called.path);
        return asked.size() == 1 ? provider.succeed() : provider.fail(6, "gone");
    };
    start();
    operations().deleteInstance(request(), named("TST_Fan", "a"));
    EXPECT_EQ(textOf(asked.at(0)), "TST_Fan.a");
    EXPECT_EQ(errorOf([&] { operations().deleteInstance(request(), named("TST_Fan", "a")); }),
              "6: gone");
    EXPECT_EQ(errorCodeOf([&] { operations().deleteInstance(request(), classPath("TST_Fan")); }),
              4);
    EXPECT_EQ(
        errorCodeOf([&] { operations().deleteInstance(request(), named("TST_Unserved", "a")); }),
        7);
}

TEST_F(InstanceOperations, DeliveriesWhereNoneBelongAreTheProvidersFailure) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.deleteInstance = [&](const ProviderCalled& called) {
        provider.deliver(called.result, called.path);
        return provider.succeed();
    };
    start();
    EXPECT_EQ(errorOf([&] { operations().deleteInstance(request(), named("TST_Fan", "a")); }),
              "1: provider P delivered an object path, which is no result of this");
}

TEST_F(InstanceOperations, GetPropertyReadsItFromTheInstance) {
    serveFans();
    start();
    EXPECT_EQ(operations().getProperty(request(), named("TST_Fan", "a"), "SPEED"), uint16Value(7));
    EXPECT_EQ(operations().getProperty(request(), named("TST_Fan", "a"), "Caption"),
              Value::null(CimType::string));
    const Value levels = operations().getProperty(request(), named("TST_Fan", "a"), "Levels");
    EXPECT_TRUE(levels.isNull());
    EXPECT_TRUE(levels.isArray());
    EXPECT_EQ(
        errorOf([&] { operations().getProperty(request(), named("TST_Fan", "a"), "Colour"); }),
        "12: class TST_Fan has no property 'Colour'");
}

TEST_F(InstanceOperations, SetPropertyModifiesThatOneOnly) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    ProviderCalled seen;
    provider.modifyInstance = [&](const ProviderCalled& called) {
        seen = called;
        return provider.succeed();
    };
    start();
    const ObjectPath path = named("TST_Fan", "a");
    operations().setProperty(request(), path, "speed", uint16Value(3));
    EXPECT_EQ(seen.propertyList, std::vector<std::string>{"Speed"});
    EXPECT_EQ(seen.instance->find("Speed")->value, uint16Value(3));
    const auto codeWith = [&](const char* name, const Value& value) {
        return errorCodeOf([&] { operations().setProperty(request(), path, name, value); });
    };
    EXPECT_EQ(codeWith("Colour", uint16Value(3)), 12);
    EXPECT_EQ(codeWith("Speed", Value::boolean(true)), 13);
    EXPECT_EQ(codeWith("Name", Value::string("b")), 4);
}

}  // namespace
}  // namespace cimhost::test
