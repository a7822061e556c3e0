#include "tests/cimhost/indications/SubscriptionsFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>

namespace cimhost {
namespace {

TEST_F(SubscriptionsTest, AreThereAgainAfterARestart) {
    const TemporaryFolder folder;
    start(folder / "state");
    const ObjectPath path = subscribe("SELECT * FROM TST_Alarm WHERE Number > 0");
    const Instance before = *subscriptions->find(path);
    alarms.take();
    start(folder / "state");
    EXPECT_EQ(alarms.take(),
              (Texts{"deactivate TST_Alarm last", "disable", "authorize TST_Alarm for ",
                     "activate TST_Alarm in root/test first", "enable"}));
    const auto after = subscriptions->find(path);
    ASSERT_TRUE(after);
    EXPECT_EQ(describe(*after), describe(before));
    remove(path);
    start(folder / "state");
    EXPECT_EQ(countOf("CIM_IndicationSubscription"), 0U);
    EXPECT_EQ(countOf("CIM_ListenerDestination"), 1U);
}

TEST_F(SubscriptionsTest, EndWithTheServerWhenTheyLeadToTheConsole) {
    const TemporaryFolder folder;
    start(folder / "state");
    const ObjectPath filter = create(filterOf("SELECT * FROM TST_Alarm"));
    const ObjectPath page = create(destinationOf("console:", "page"));
    create(subscriptionOf(filter, page));
    create(subscriptionOf(filter, create(destinationOf("http://x/"))));
    const ObjectPath moved = create(destinationOf("http://y/", "moved"));
    Instance destination = *subscriptions->find(moved);
    destination.set("Destination", Value::string("console:"));
    subscriptions->modify({}, destination);
    EXPECT_EQ(countOf("CIM_IndicationSubscription"), 2U);
    start(folder / "state");
    EXPECT_FALSE(subscriptions->find(page));
    EXPECT_FALSE(subscriptions->find(moved));
    EXPECT_TRUE(subscriptions->find(filter)) << "one may use it again";
    EXPECT_EQ(countOf("CIM_IndicationSubscription"), 1U);
}

TEST_F(SubscriptionsTest, AreRefusedWhenTheirStateCannotBeKept) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "gone");
    start(folder / "gone" / "state");
    const ObjectPath path = subscribe();
    const ObjectPath filter = *referenceOf(*subscriptions->find(path), "Filter");
    alarms.take();
    std::filesystem::remove_all(folder / "gone");

    EXPECT_EQ(errorCodeOf([&] { create(destinationOf("http://x/", "new")); }), 1);
    EXPECT_EQ(countOf("CIM_ListenerDestination"), 1U);
    EXPECT_EQ(errorCodeOf([&] { create(filterOf("SELECT * FROM TST_Loud", "new")); }), 1);
    EXPECT_EQ(errorCodeOf([&] { remove(path); }), 1);
    EXPECT_TRUE(subscriptions->find(path));
    Instance changed = *subscriptions->find(filter);
    changed.set("Caption", Value::string("new"));
    EXPECT_EQ(errorCodeOf([&] { subscriptions->modify({}, changed); }), 1);
    EXPECT_EQ(subscriptions->find(filter)->find("Caption"), nullptr);
    EXPECT_EQ(alarms.take(), Texts{});
}

TEST_F(SubscriptionsTest, AreRefusedWhenTheStateFileCannotHoldThem) {
    const TemporaryFolder folder;
    start(folder / "state");
    Instance destination = destinationOf("http://x/");
    destination.set("Name", Value::string("\xFF"));
    EXPECT_EQ(errorCodeOf([&] { create(destination); }), 1);
    EXPECT_EQ(countOf("CIM_ListenerDestination"), 0U);
    start(folder / "state");
}

TEST_F(SubscriptionsTest, NameTheLineOfADamagedStateFile) {
    const TemporaryFolder folder;
    const auto file = folder / "state";
    const auto failure = [&](const std::string& text) {
        std::ofstream(file, std::ios::trunc) << text;
        try {
            start(file);
        } catch (const std::runtime_error& error) {
            return std::string(error.what()).substr(file.string().size());
        }
        return std::string();
    };
    const std::string old = "cimhost subscriptions 1\n";
    const std::string head = "// cimhost subscriptions 2\n#pragma namespace (\"interop\")\n";
    const std::string tail = "};\n// end of 1 instances\n";
    EXPECT_EQ(failure(old + "CIM_IndicationFilter in nowhere\nend of 1 instances\n").substr(0, 3),
              ":2:");
    EXPECT_EQ(failure(old + "CIM_Gone in interop\nend of 1 instances\n").substr(0, 3), ":2:");
    EXPECT_EQ(failure(head + "instance of CIM_Gone {" + tail).substr(0, 6), ":3:13:");
    EXPECT_EQ(
        failure(head + "instance of CIM_IndicationFilter {\n    Colour = 5;\n" + tail).substr(0, 5),
        ":4:5:");
    const std::string nameless = "instance of CIM_IndicationFilter {\n    Name = \"a\";\n";
    EXPECT_EQ(failure(head + nameless + tail), ":3:13: property Query has no value");
    // A file that is refused stays as it is.
    EXPECT_EQ(readWholeFile(file), head + nameless + tail);
}

TEST_F(SubscriptionsTest, AreWrittenAnewWhenTheirStateFileIsInTheOldForm) {
    const TemporaryFolder folder;
    const auto file = folder / "state";
    std::ofstream(file) << R"(cimhost subscriptions 1
CIM_ListenerDestinationCIMXML in interop
    Name = "a \"b\"\x0a"
    Destination = "http://localhost:1/"
    SystemCreationClassName = "s"
    SystemName = "n"
    CreationClassName = "CIM_ListenerDestinationCIMXML"
end of 1 instances
)";
    start(file);
    const auto before = subscriptions->all(repository.get("interop"), "CIM_ListenerDestination");
    ASSERT_EQ(before.size(), 1U);
    EXPECT_EQ(before[0].find("Name")->value, Value::string("a \"b\"\n"));
    EXPECT_TRUE(readWholeFile(file)->starts_with("// cimhost subscriptions 2\n"));
    start(file);
    const auto after = subscriptions->all(repository.get("interop"), "CIM_ListenerDestination");
    ASSERT_EQ(after.size(), 1U);
    EXPECT_EQ(describe(after[0]), describe(before[0]));
}

TEST_F(SubscriptionsTest, AreKeptWhenAProviderRefusesThemAfterARestart) {
    const TemporaryFolder folder;
    start(folder / "state");
    const ObjectPath path = subscribe();
    alarms.refused = "activate";
    start(folder / "state");
    const auto stateOf = [&] {
        return *subscriptions->find(path)->find("SubscriptionState")->value.get<std::uint64_t>();
    };
    EXPECT_EQ(stateOf(), 4U);
    alarms.refused.clear();
    start(folder / "state");
    EXPECT_EQ(stateOf(), 2U);
}

}  // namespace
}  // namespace cimhost
