#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace cimhost::test {
namespace {

using testing::ElementsAre;

class OperationsAsOpenPegasus : public OperationsTest {
protected:
    OperationsAsOpenPegasus() : OperationsTest("openpegasus") {}
};

class OperationsAsSfcb : public OperationsTest {
protected:
    OperationsAsSfcb() : OperationsTest("sfcb") {}
};

TEST_F(OperationsAsOpenPegasus, DropARefusalOfOneAssociationProvider) {
    ScriptedProvider& refusing = serve("Refusing", "TST_Link root/test association");
    refusing.associatorNames = [&](const ProviderCalled&) {
        return refusing.fail(CMPI_RC_ERR_NOT_SUPPORTED);
    };
    start();
    FoundPaths found;
    operations().associatorNames(request(), named("TST_System", "s"), {}, found);
    EXPECT_TRUE(found.all.empty());
}

TEST_F(OperationsAsOpenPegasus, AskAboutEachAssociationClass) {
    ScriptedProvider& links = serve("Links", "TST_Link root/test association");
    serve("Links", "TST_FanLink root/test association");
    std::vector<std::string> asked;
    links.associatorNames = [&](const ProviderCalled& called) {
        asked.push_back(called.texts.at(0).value_or("null"));
        return links.succeed();
    };
    start();
    FoundPaths found;
    operations().associatorNames(request(), named("TST_System", "s"), {}, found);
    EXPECT_THAT(asked, ElementsAre("TST_Link", "TST_FanLink"));
}

TEST_F(OperationsAsOpenPegasus, ListAllPropertiesOfANewInstance) {
    ScriptedProvider& systems = serve("Systems", "TST_System root/test instance");
    std::size_t listed = 0;
    systems.createInstance = [&](const ProviderCalled& called) {
        listed = called.instance->properties.size();
        return systems.deliver(called.result, named("TST_System", "s"));
    };
    start();
    Instance wanted{classPath("TST_System"), {}};
    wanted.set("Name", Value::string("s"));
    operations().createInstance(request(), wanted);
    EXPECT_GT(listed, 1U);
}

TEST_F(OperationsAsSfcb, PassNamesAsWrittenAndAllProperties) {
    ScriptedProvider& systems = serve("Systems", "TST_System root/test instance");
    ObjectPath asked;
    systems.getInstance = [&](const ProviderCalled& called) {
        asked = called.path;
        Instance instance{named("TST_System", "s", "root/test"), {}};
        instance.set("Caption", Value::string("c"));
        return systems.deliver(called.result, instance);
    };
    start();
    FoundInstances found;
    InstanceOptions options;
    options.propertyList = {"Name"};
    operations().getInstance(request(), named("tst_SYSTEM", "s", "ROOT/test"), options, found);
    EXPECT_EQ(asked.className, "tst_SYSTEM");
    EXPECT_EQ(asked.nameSpace, "ROOT/test");
    EXPECT_THAT(found.all.at(0).shown, ElementsAre("Caption"));
}

}  // namespace
}  // namespace cimhost::test
