#include "cimhost/operations/UpCalls.h"

#include "cimhost/objects/MannerTables.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Up-calls as a module makes them. The host's static instances are what there is to be found.
class UpCalls : public OperationsTest {
protected:
    explicit UpCalls(const char* manner = "standard") : OperationsTest(manner) {
        readMof(
            "instance of TST_Fan as $f { Name = \"f\"; Speed = 3; Caption = \"c\"; };"
            "instance of TST_TurboFan { Name = \"t\"; Stages = 2; };"
            "instance of TST_System as $s { Name = \"s\"; };"
            "instance of TST_Link { Whole = $s; Part = $f; };");
    }

    const CMPIBrokerFT& up() const { return *handle()->bft; }

    CMPIContext* context(CMPIFlags flags = 0) {
        RequestContext own = request();
        own.flags = flags;
        return makeContext(broker, own);
    }

    CMPIObjectPath* path(const ObjectPath& model) { return makeObjectPath(broker, model); }
    CMPIObjectPath* fanPath() { return path(named("TST_Fan", "f", "root/test")); }
    CMPIObjectPath* systemPath() { return path(named("TST_System", "s", "root/test")); }
    CMPIObjectPath* fanClass() { return path(classPath("TST_Fan", "root/test")); }

    /// The class of each element.
    std::vector<std::string> classesOf(const CMPIEnumeration* enumeration) {
        std::vector<std::string> names;
        while (enumeration && enumeration->ft->hasNext(enumeration, nullptr)) {
            const CMPIData data = enumeration->ft->getNext(enumeration, &status);
            names.push_back(data.type == CMPI_instance ? modelOf(data.value.inst).className()
                                                       : modelOf(data.value.ref).className);
        }
        return names;
    }

    std::string message() const { return messageOf(status); }

    static std::string messageOf(const CMPIStatus& status) {
        return status.msg ? status.msg->ft->getCharPtr(status.msg, nullptr) : "";
    }

    CallScope scope;
    CMPIStatus status{};
};

TEST_F(UpCalls, WithoutOperationsNothingIsSupported) {
    EXPECT_EQ(up().enumerateInstanceNames(handle(), context(), fanClass(), &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(up().deleteInstance(handle(), context(), fanPath()).rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(UpCalls, NullAndForeignHandlesAreRefused) {
    start();
    EXPECT_EQ(up().getInstance(nullptr, context(), fanPath(), nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(up().getInstance(handle(), nullptr, fanPath(), nullptr, &status), nullptr);
    EXPECT_NE(status.rc, CMPI_RC_OK);
    EXPECT_EQ(up().getInstance(handle(), context(), nullptr, nullptr, &status), nullptr);
    EXPECT_NE(status.rc, CMPI_RC_OK);
    EXPECT_EQ(up().getInstance(handle(), context(), nullptr, nullptr, nullptr), nullptr);
    EXPECT_NE(up().modifyInstance(handle(), context(), fanPath(), nullptr, nullptr).rc, CMPI_RC_OK);
    up().getProperty(handle(), context(), fanPath(), nullptr, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(UpCalls, EnumerationsHoldWhatOperationsFind) {
    start();
    EXPECT_THAT(classesOf(up().enumerateInstanceNames(handle(), context(), fanClass(), &status)),
                ElementsAre("TST_Fan", "TST_TurboFan"));
    EXPECT_THAT(
        classesOf(up().enumerateInstances(handle(), context(), fanClass(), nullptr, &status)),
        ElementsAre("TST_Fan", "TST_TurboFan"));
    EXPECT_EQ(status.rc, CMPI_RC_OK);
}

TEST_F(UpCalls, TheKeysOfAClassPathAreIgnored) {
    start();
    EXPECT_EQ(
        classesOf(up().enumerateInstanceNames(handle(), context(), fanPath(), &status)).size(), 2U);
}

TEST_F(UpCalls, FlagsOfTheContextDecideOnInheritance) {
    start();
    const auto hasStages = [&](CMPIFlags flags) {
        CMPIEnumeration* const found =
            up().enumerateInstances(handle(), context(flags), fanClass(), nullptr, &status);
        found->ft->getNext(found, nullptr);
        const CMPIData turbo = found->ft->getNext(found, nullptr);
        return modelOf(turbo.value.inst).find("Stages") != nullptr;
    };
    EXPECT_TRUE(hasStages(CMPI_FLAG_DeepInheritance));
    EXPECT_FALSE(hasStages(0));
}

TEST_F(UpCalls, GetInstanceKeepsOnlyTheListedProperties) {
    start();
    const char* names[] = {"speed", nullptr};
    const CMPIInstance* const found =
        up().getInstance(handle(), context(), fanPath(), names, &status);
    ASSERT_NE(found, nullptr);
    const CMPIData speed = found->ft->getProperty(found, "Speed", &status);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(speed.value.uint16, 3);
    found->ft->getProperty(found, "Caption", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(UpCalls, FailuresCarryCodeAndMessage) {
    start();
    up().getInstance(handle(), context(), path(classPath("TST_None", "root/test")), nullptr,
                     &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_EQ(message(), "namespace root/test has no class 'TST_None'");
    up().getInstance(handle(), context(), fanClass(), nullptr, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    const CMPIStatus refused = up().deleteInstance(handle(), context(), fanPath());
    EXPECT_EQ(refused.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(messageOf(refused), "the instances of class TST_Fan can only be read");
}

TEST_F(UpCalls, AssociationsAreWalked) {
    start();
    EXPECT_THAT(classesOf(up().associators(handle(), context(), systemPath(), nullptr, nullptr,
                                           nullptr, nullptr, nullptr, &status)),
                ElementsAre("TST_Fan"));
    EXPECT_THAT(classesOf(up().associatorNames(handle(), context(), systemPath(), "TST_Link",
                                               "TST_Fan", "Whole", "Part", &status)),
                ElementsAre("TST_Fan"));
    EXPECT_THAT(classesOf(up().associatorNames(handle(), context(), systemPath(), nullptr,
                                               "TST_System", nullptr, nullptr, &status)),
                ElementsAre());
    EXPECT_THAT(classesOf(up().references(handle(), context(), fanPath(), nullptr, "Part", nullptr,
                                          &status)),
                ElementsAre("TST_Link"));
    EXPECT_THAT(classesOf(up().referenceNames(handle(), context(), fanPath(), "TST_Link", nullptr,
                                              &status)),
                ElementsAre("TST_Link"));
}

TEST_F(UpCalls, QueryFiltersAreNotSupportedUnlessHalfOfThemIsMissing) {
    start();
    const auto filtered = [&](const char* language, const char* filter) {
        return classesOf(up().enumerateInstancesFiltered(handle(), context(), fanClass(), nullptr,
                                                         language, filter, &status));
    };
    EXPECT_EQ(filtered(nullptr, nullptr).size(), 2U);
    EXPECT_EQ(filtered("DMTF:FQL", nullptr).size(), 2U);
    EXPECT_EQ(filtered(nullptr, "Speed > 1").size(), 2U);
    EXPECT_EQ(filtered("DMTF:FQL", "Speed > 1").size(), 0U);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    up().associatorsFiltered(handle(), context(), systemPath(), nullptr, nullptr, nullptr, nullptr,
                             nullptr, "DMTF:FQL", "x", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(
        classesOf(up().associatorsFiltered(handle(), context(), systemPath(), nullptr, nullptr,
                                           nullptr, nullptr, nullptr, nullptr, nullptr, &status))
            .size(),
        1U);
    up().referencesFiltered(handle(), context(), systemPath(), nullptr, nullptr, nullptr,
                            "DMTF:FQL", "x", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(classesOf(up().referencesFiltered(handle(), context(), systemPath(), nullptr, nullptr,
                                                nullptr, nullptr, nullptr, &status))
                  .size(),
              1U);
}

TEST_F(UpCalls, InstancesAreCreatedModifiedAndDeleted) {
    ScriptedProvider& provider = serve("P", "TST_Unserved root/test instance");
    std::vector<std::string> done;
    provider.createInstance = [&](const ProviderCalled& called) {
        done.push_back("create " + textOf(called.instance->path));
        provider.deliver(called.result, called.instance->path);
        return provider.succeed();
    };
    provider.modifyInstance = [&](const ProviderCalled& called) {
        done.push_back("modify " + textOf(called.path) + " " + called.propertyList->at(0));
        return provider.succeed();
    };
    provider.deleteInstance = [&](const ProviderCalled& called) {
        done.push_back("delete " + textOf(called.path));
        return provider.succeed();
    };
    start();
    Instance model;
    model.path = named("TST_Unserved", "u", "root/test");
    model.set("Name", Value::string("u"));
    CMPIInstance* const instance = makeInstance(broker, model);
    const CMPIObjectPath* const created = up().createInstance(
        handle(), context(), path(classPath("TST_Unserved", "root/test")), instance, &status);
    ASSERT_NE(created, nullptr) << message();
    EXPECT_EQ(textOf(modelOf(created)), "TST_Unserved.u");
    const char* names[] = {"Name", nullptr};
    EXPECT_EQ(up().modifyInstance(handle(), context(), created, instance, names).rc, CMPI_RC_OK);
    EXPECT_EQ(up().deleteInstance(handle(), context(), created).rc, CMPI_RC_OK);
    EXPECT_THAT(done, ElementsAre("create TST_Unserved.u", "modify TST_Unserved.u Name",
                                  "delete TST_Unserved.u"));
}

TEST_F(UpCalls, MethodsFillTheOutputsAndReturnTheirValue) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test method");
    provider.invokeMethod = [&](const ProviderCalled& called) {
        CMPIValue previous{};
        previous.uint16 = 8;
        called.outputs->ft->addArg(called.outputs, "Previous", &previous, CMPI_uint16);
        called.outputs->ft->addArg(called.outputs, "Note", nullptr, CMPI_string);
        provider.deliver(called.result, uint32Value(5));
        return provider.succeed();
    };
    start();
    const CMPIArgs* const inputs = makeArgs(broker, {{"Speed", uint16Value(1)}});
    CMPIArgs* const outputs = makeArgs(broker, {});
    const CMPIData returned =
        up().invokeMethod(handle(), context(), fanPath(), "SetSpeed", inputs, outputs, &status);
    ASSERT_EQ(status.rc, CMPI_RC_OK) << message();
    EXPECT_EQ(returned.type, CMPI_uint32);
    EXPECT_EQ(returned.value.uint32, 5U);
    EXPECT_EQ(outputs->ft->getArg(outputs, "Previous", nullptr).value.uint16, 8);
    EXPECT_NE(outputs->ft->getArg(outputs, "Note", nullptr).state & CMPI_nullValue, 0);
    up().invokeMethod(handle(), context(), fanPath(), "Explode", inputs, outputs, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_METHOD_NOT_FOUND);
    up().invokeMethod(handle(), context(), fanPath(), "SetSpeed", inputs, nullptr, &status);
    EXPECT_NE(status.rc, CMPI_RC_OK);
}

TEST_F(UpCalls, PropertiesAreReadAndWritten) {
    start();
    const CMPIData speed = up().getProperty(handle(), context(), fanPath(), "Speed", &status);
    EXPECT_EQ(speed.type, CMPI_uint16);
    EXPECT_EQ(speed.value.uint16, 3);
    up().getProperty(handle(), context(), fanPath(), "Colour", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMPIValue value{};
    value.uint16 = 4;
    EXPECT_EQ(up().setProperty(handle(), context(), fanPath(), "Speed", &value, CMPI_uint16).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(up().setProperty(handle(), context(), fanPath(), "Speed", &value, CMPI_boolean).rc,
              CMPI_RC_ERR_TYPE_MISMATCH);
}

class UpCallsAsSfcb : public UpCalls {
protected:
    UpCallsAsSfcb() : UpCalls("sfcb") {}
};

TEST_F(UpCallsAsSfcb, SinglePropertiesAreNotSupported) {
    start();
    up().getProperty(handle(), context(), fanPath(), "Speed", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    CMPIValue value{};
    EXPECT_EQ(up().setProperty(handle(), context(), fanPath(), "Speed", &value, CMPI_boolean).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
}

class UpCallsAsOpenPegasus : public UpCalls {
protected:
    UpCallsAsOpenPegasus() : UpCalls("openpegasus") {}
};

TEST_F(UpCallsAsOpenPegasus, ANullPropertyIsABoolean) {
    start();
    const CMPIObjectPath* const turboFan = path(named("TST_TurboFan", "t", "root/test"));
    const CMPIData speed = up().getProperty(handle(), context(), turboFan, "Speed", &status);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(speed.type, CMPI_boolean);
    EXPECT_NE(speed.state & CMPI_nullValue, 0);
}

TEST_F(UpCallsAsOpenPegasus, OneWithoutAContextEndsTheProcess) {
    start();
    const CMPIObjectPath* const fan = fanPath();
    EXPECT_DEATH(up().getInstance(handle(), nullptr, fan, nullptr, nullptr), "");
}

TEST_F(UpCallsAsOpenPegasus, AnIllegalNameInAPropertyListIsThrown) {
    start();
    const CMPIContext* const own = context();
    const CMPIObjectPath* const fan = fanPath();
    for (const char* name : {"a b", "", "1a"}) {
        const char* names[] = {"Speed", name, nullptr};
        EXPECT_THROW(up().getInstance(handle(), own, fan, names, nullptr), HostException);
        EXPECT_THROW(up().enumerateInstances(handle(), own, fan, names, nullptr), HostException);
    }
}

TEST_F(UpCalls, QueriesGoToTheNamespaceOfThePath) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    provider.execQuery = [&](const ProviderCalled& called) {
        Instance instance;
        instance.path = named("TST_Fan", "q", called.path.nameSpace);
        provider.deliver(called.result, instance);
        return provider.succeed();
    };
    start();
    RequestContext elsewhere;
    elsewhere.nameSpace = "interop";
    EXPECT_THAT(classesOf(up().execQuery(handle(), makeContext(broker, elsewhere), fanClass(),
                                         "SELECT * FROM TST_Fan", "WQL", &status)),
                ElementsAre("TST_Fan"));
    up().execQuery(handle(), context(), fanClass(), nullptr, nullptr, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED);
}

TEST_F(UpCalls, ResultsLiveInTheCallOfWhoAsked) {
    ScriptedProvider& inner = serve("Inner", "TST_Unserved root/test instance");
    inner.getInstance = [&](const ProviderCalled& called) {
        Instance instance;
        instance.path = called.path;
        instance.set("Name", Value::string("inner"));
        inner.deliver(called.result, instance);
        return inner.succeed();
    };
    ScriptedProvider& outer = serve("Outer", "TST_Keyless root/test instance");
    outer.enumerateInstances = [&](const ProviderCalled& called) {
        std::vector<CMPIInstance*> kept;
        for (int i = 0; i < 100; ++i) {
            kept.push_back(up().getInstance(handle(), called.context,
                                            path(named("TST_Unserved", std::to_string(i))), nullptr,
                                            nullptr));
        }
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(textOf(modelOf(kept[static_cast<std::size_t>(i)]).path),
                      "TST_Unserved." + std::to_string(i));
        }
        return outer.succeed();
    };
    start();
    FoundInstances found;
    operations().enumerateInstances(request(), classPath("TST_Keyless"), {}, found);
}

TEST_F(UpCalls, ACircleOfProvidersEndsInAFailure) {
    ScriptedProvider& provider = serve("P", "TST_Unserved root/test instance");
    int calls = 0;
    provider.getInstance = [&](const ProviderCalled& called) {
        ++calls;
        CMPIStatus inner{};
        up().getInstance(handle(), called.context, makeObjectPath(broker, called.path), nullptr,
                         &inner);
        return provider.fail(static_cast<int>(inner.rc), messageOf(inner).c_str());
    };
    start();
    FoundInstances found;
    const auto get = [&] {
        operations().getInstance(request(), named("TST_Unserved", "u"), {}, found);
    };
    EXPECT_EQ(errorOf(get), "1: provider calls are nested more than 32 deep");
    EXPECT_EQ(calls, 32);
    EXPECT_EQ(errorCodeOf(get), 1);
    EXPECT_EQ(calls, 64) << "the first circle left nothing behind";
}

}  // namespace
}  // namespace cimhost::test
