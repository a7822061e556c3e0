#include "providers/profiles/DataCollection.h"

#include "tests/providers/profiles/ProfilesFixture.h"

namespace {

using cimtest::arrayOf;
using cimtest::failureOf;

/// The collection by the class of the schema, or by one that lets more through.
struct DataCollectionTest : testing::Test {
    DataCollectionTest() : DataCollectionTest({"base/base.mof", "PYL_Profiles.mof"}, "") {}
    DataCollectionTest(const std::vector<std::filesystem::path>& mof, const char* classes)
        : host("root/ktq", mof) {
        host.readMofText(classes);
        const auto table = std::make_shared<PYL::ProfileDC>(host.logger());
        table->initialize();
        host.add(std::make_unique<profiles::DataCollection>(table));
    }

    cimtest::FakeHost machine;
    cimtest::ProviderHost host;
    const cimtest::Path path{"PYL_PXDataCollection.InstanceID=\"KTQ:PYL_PXDataCollection:1\""};

    cimtest::Answer ask(const cimtest::Named& in, const char* method = "GetCollectedClasses") {
        return host.invoke(path, method, in);
    }
    cimtest::Answer ask(const std::string& name) { return ask({{"RegisteredName", name}}); }
};

struct DataCollectionBehindALooseHost : DataCollectionTest {
    DataCollectionBehindALooseHost()
        : DataCollectionTest({}, R"(
class PYL_PXDataCollection {
    [Key] string InstanceID;
    string RegisteredNames[];
    uint32 GetCollectedClasses([In] uint32 RegisteredName);
    uint32 Reset();
};)") {}
};

TEST_F(DataCollectionTest, TellsTheClassesOfAProfileWithTheirTypesAndLevels) {
    const auto answer = ask("KT Memory");
    EXPECT_EQ(answer.returned, 0);
    EXPECT_EQ(answer["NameSpace"], "root/ktq");
    EXPECT_EQ(answer["ClassNames"],
              arrayOf("KT_Memory", "PYL_Memory", "KT_SystemMemory", "PYL_SystemMemory"));
    EXPECT_EQ(answer["ClassTypes"], arrayOf("Instance", "Instance", "Association", "Association"));
    EXPECT_EQ(answer["ClassLevels"], arrayOf(2, 2, 2, 2));
}

TEST_F(DataCollectionTest, GivesALevelToEachClassAndNoMore) {
    EXPECT_EQ(ask("KT Record Log")["ClassLevels"], arrayOf(4, 4, 4, 0, 0, 0, 4));
}

TEST_F(DataCollectionTest, KnowsTheNamespaceOfProfileRegistration) {
    EXPECT_EQ(ask("KT Profile Registration")["NameSpace"], "root/interop");
}

TEST_F(DataCollectionTest, FindsNothingUnderAnotherName) {
    for (const std::string name : {"", "KT memory", "KT Memory ", "Base Server", "%s%n"}) {
        EXPECT_EQ(failureOf([&] { ask(name); }),
                  "6 nothing is collected of a profile \"" + name + "\"");
    }
}

TEST_F(DataCollectionBehindALooseHost, TellsTheCallerWhatIsWrongWithTheArguments) {
    EXPECT_EQ(failureOf([&] { ask(cimtest::Named{}); }), "4 Argument 'RegisteredName' not present");
    EXPECT_EQ(failureOf([&] {
                  ask({{"RegisteredName", 7}});
              }),
              "4 Argument 'RegisteredName' has bad type uint32, expecting string");
    EXPECT_NE(failureOf([&] { ask({{"RegisteredName", cimtest::Value()}}); }), "");
}

TEST_F(DataCollectionBehindALooseHost, KnowsNoOtherMethod) {
    EXPECT_EQ(failureOf([&] { ask({}, "Reset"); }).substr(0, 3), "17 ");
}

TEST_F(DataCollectionTest, ShowsWhatCanBeAskedFor) {
    const auto names = host.get(path)["RegisteredNames"].elements();
    EXPECT_EQ(names.front(), "KT Base Server");
    EXPECT_EQ(names.at(1), "KT Memory");
    EXPECT_EQ(names.at(2), "KT CPU");
    EXPECT_EQ(names.back(), "KT PCI");
}

}  // namespace
