#include "providers/profiles/DataCollection.h"

#include "cmpicpp/CmpiArgs.h"
#include "tests/providers/profiles/ProfilesFixture.h"

namespace {

struct DataCollectionTest : ProfilesFixture {
    std::shared_ptr<PYL::ProfileDC> table = std::make_shared<PYL::ProfileDC>(log.logger);
    profiles::DataCollection collection{table};

    DataCollectionTest() { table->initialize(); }

    std::string call(const CmpiCpp::CmpiArgs& in, const char* name = "GetCollectedClasses") {
        journal.take();
        return outcomeOf([&] { collection.invokeMethod(name, in, method); });
    }
    std::string ask(const CmpiCpp::CmpiValue& name) {
        auto in = CmpiCpp::makeCmpiArgs(host.broker());
        in.addArg("RegisteredName", name);
        return call(in);
    }
};

TEST_F(DataCollectionTest, TellsTheClassesOfAProfileWithTheirTypesAndLevels) {
    EXPECT_EQ(ask("KT Memory"), "none");
    EXPECT_EQ(delivered(),
              (Lines{"NameSpace = string root/ktq",
                     "ClassNames = data {\"KT_Memory\", \"PYL_Memory\", \"KT_SystemMemory\", "
                     "\"PYL_SystemMemory\"}",
                     "ClassTypes = data {\"Instance\", \"Instance\", \"Association\", "
                     "\"Association\"}",
                     "ClassLevels = data {2, 2, 2, 2}", "uint32 0"}));
}

TEST_F(DataCollectionTest, GivesALevelToEachClassAndNoMore) {
    EXPECT_EQ(ask("KT Record Log"), "none");
    EXPECT_EQ(delivered()[3], "ClassLevels = data {4, 4, 4, 0, 0, 0, 4}");
}

TEST_F(DataCollectionTest, KnowsTheNamespaceOfProfileRegistration) {
    EXPECT_EQ(ask("KT Profile Registration"), "none");
    EXPECT_EQ(delivered()[0], "NameSpace = string root/interop");
}

TEST_F(DataCollectionTest, FindsNothingUnderAnotherName) {
    for (const char* name : {"", "KT memory", "KT Memory ", "Base Server", "%s%n"}) {
        EXPECT_EQ(ask(name),
                  std::string("status 6 nothing is collected of a profile \"") + name + "\"");
    }
    EXPECT_EQ(delivered(), Lines{});
}

TEST_F(DataCollectionTest, TellsTheCallerWhatIsWrongWithTheArguments) {
    EXPECT_EQ(call(CmpiCpp::makeCmpiArgs(host.broker())),
              "status 4 Argument 'RegisteredName' not present");
    EXPECT_EQ(ask(7U), "status 4 Argument 'RegisteredName' has bad type uint32, expecting string");
    EXPECT_TRUE(ask(CmpiCpp::CmpiValue::null(CMPI_string)).starts_with("status "));
    EXPECT_EQ(delivered(), Lines{});
}

TEST_F(DataCollectionTest, KnowsNoOtherMethod) {
    EXPECT_TRUE(call(CmpiCpp::makeCmpiArgs(host.broker()), "Reset").starts_with("status 17"));
}

TEST_F(DataCollectionTest, ShowsWhatCanBeAskedFor) {
    EXPECT_EQ(collection.getPath().str(),
              "//server-1/root/ktq:PYL_PXDataCollection.InstanceID=\"KTQ:PYL_PXDataCollection:1\"");
    const auto names = collection.getInstance().getProperty("RegisteredNames").str();
    EXPECT_TRUE(names.starts_with("{\"KT Base Server\", \"KT Memory\", \"KT CPU\"")) << names;
    EXPECT_TRUE(names.ends_with("\"KT PCI\"}")) << names;
}

}  // namespace
