#include "cimhost/indications/Subscriptions.h"

#include "tests/cimhost/indications/SubscriptionsFixture.h"

namespace cimhost {
namespace {

TEST_F(SubscriptionsTest, FillInTheKeysThatAllClientsWouldGiveAlike) {
    const ObjectPath path = create(filterOf("SELECT * FROM TST_Alarm"));
    EXPECT_EQ(*path.findKey("SystemCreationClassName")->get<Text>(), "CIM_ComputerSystem");
    EXPECT_FALSE(path.findKey("SystemName")->get<Text>()->empty());
    EXPECT_EQ(*path.findKey("CreationClassName")->get<Text>(), "CIM_IndicationFilter");
    const auto found = subscriptions->find(path);
    ASSERT_TRUE(found);
    EXPECT_TRUE(*found->find("IndividualSubscriptionSupported")->value.get<bool>());

    Instance nameless = filterOf("SELECT * FROM TST_Alarm");
    std::erase_if(nameless.properties, [](const auto& each) { return each.name == "Name"; });
    EXPECT_EQ(errorOf([&] { create(nameless); }), "4: key Name has no value");
    Instance strange = filterOf("SELECT * FROM TST_Alarm", "other");
    strange.set("CreationClassName", Value::string("CIM_Else"));
    EXPECT_EQ(errorCodeOf([&] { create(strange); }), 4);
}

TEST_F(SubscriptionsTest, TakeReferencesWithoutThoseKeys) {
    create(filterOf("SELECT * FROM TST_Alarm"));
    create(destinationOf("http://x/"));
    const ObjectPath filter{{}, "interop", "CIM_IndicationFilter", {{"Name", Value::string("f")}}};
    const ObjectPath handler{
        {}, "interop", "CIM_ListenerDestinationCIMXML", {{"Name", Value::string("d")}}};
    EXPECT_TRUE(subscriptions->find(create(subscriptionOf(filter, handler))));
}

TEST_F(SubscriptionsTest, AreActiveFromTheStartWhenTheMofHasThem) {
    MofReader(repository, "interop")
        .readText(R"(
instance of CIM_IndicationFilter as $Filter {
    SystemCreationClassName = "s"; SystemName = "n"; CreationClassName = "CIM_IndicationFilter";
    Name = "all"; Query = "SELECT * FROM TST_Other"; QueryLanguage = "WQL";
    SourceNamespaces = {"root/test"};
};
instance of CIM_ListenerDestinationCIMXML as $Listener {
    SystemCreationClassName = "s"; SystemName = "n";
    CreationClassName = "CIM_ListenerDestinationCIMXML"; Name = "listener";
    Destination = "http://x/";
};
instance of CIM_IndicationSubscription { Filter = $Filter; Handler = $Listener; };
)",
                  "s");
    start();
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(others.take(), (Texts{"authorize TST_Other for ",
                                    "activate TST_Other in root/test first", "enable"}));
    routes.deliver({}, "root/test", indicationOf("TST_Other", 1));
    EXPECT_EQ(outlet.take(), (Texts{"listener<all:TST_Other.1"}));
    const auto all = subscriptions->all(repository.get("interop"), "CIM_IndicationSubscription");
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(errorCodeOf([&] { remove(all.front().path); }), 1) << "the MOF would bring it back";
}

TEST_F(SubscriptionsTest, RefuseWhatIsWrong) {
    const auto filterFailure = [&](const std::string& query) {
        return errorCodeOf([&] { create(filterOf(query)); });
    };
    EXPECT_EQ(filterFailure("SELECT"), 15);
    EXPECT_EQ(filterFailure("SELECT * FROM TST_Plain"), 15);
    EXPECT_EQ(filterFailure("SELECT * FROM TST_Gone"), 5);
    EXPECT_EQ(filterFailure("SELECT Colour FROM TST_Alarm"), 15);
    EXPECT_EQ(filterFailure("SELECT * FROM TST_Alarm WHERE 1 = Colour"), 15);
    Instance elsewhere = filterOf("SELECT * FROM TST_Alarm");
    elsewhere.set("SourceNamespaces", Value::array(CimType::string, {Value::string("nowhere")}));
    EXPECT_EQ(errorCodeOf([&] { create(elsewhere); }), 3);
    Instance spoken = filterOf("SELECT * FROM TST_Alarm");
    spoken.set("QueryLanguage", Value::string("SQL"));
    EXPECT_EQ(errorCodeOf([&] { create(spoken); }), 14);
    EXPECT_EQ(errorCodeOf([&] { create(destinationOf("nowhere")); }), 4);
    EXPECT_EQ(errorCodeOf([&] { create(destinationOf("https://x/")); }), 7);
    EXPECT_EQ(countOf("CIM_ListenerDestination"), 0U);
}

TEST_F(SubscriptionsTest, TakeComparisonsWithNull) {
    const auto filterFailure = [&](const std::string& name, const std::string& condition) {
        return errorOf(
            [&] { create(filterOf("SELECT * FROM TST_Alarm WHERE " + condition, name)); });
    };
    EXPECT_EQ(filterFailure("a", "Number IS NULL"), "");
    EXPECT_EQ(filterFailure("b", "NOT Number IS NOT NULL OR Number = 1"), "");
    EXPECT_EQ(filterFailure("c", "Colour IS NULL"),
              "15: the query names 'Colour', which class TST_Alarm has not");
}

TEST_F(SubscriptionsTest, RefusePoliciesThatTheyCannotFollow) {
    const ObjectPath filter = create(filterOf("SELECT * FROM TST_Alarm"));
    const ObjectPath handler = create(destinationOf("http://x/"));
    const auto failure = [&](const char* property, std::uint64_t number) {
        Instance subscription = subscriptionOf(filter, handler);
        subscription.set(property, Value::unsignedInteger(CimType::uint64, number));
        return errorCodeOf([&] { create(subscription); });
    };
    EXPECT_EQ(failure("OnFatalErrorPolicy", 4), 7);
    EXPECT_EQ(failure("RepeatNotificationPolicy", 3), 7);
    EXPECT_EQ(failure("SubscriptionDuration", 60), 7);
    EXPECT_EQ(failure("SubscriptionState", 9), 4);
    EXPECT_EQ(failure("OnFatalErrorPolicy", 2), 0);
}

TEST_F(SubscriptionsTest, TellNoProviderOfWhatCannotBeDelivered) {
    outlet.isClosed = true;
    EXPECT_EQ(errorCodeOf([&] { subscribe(); }), 7);
    EXPECT_EQ(alarms.take(), Texts{});
}

TEST_F(SubscriptionsTest, KeepWhatIsInUse) {
    const ObjectPath path = subscribe();
    const Instance subscription = *subscriptions->find(path);
    EXPECT_EQ(errorCodeOf([&] { remove(*referenceOf(subscription, "Filter")); }), 1);
    EXPECT_EQ(errorCodeOf([&] { remove(*referenceOf(subscription, "Handler")); }), 1);
    remove(path);
    EXPECT_EQ(errorCodeOf([&] { remove(path); }), 6);
    remove(*referenceOf(subscription, "Filter"));
    remove(*referenceOf(subscription, "Handler"));
}

TEST_F(SubscriptionsTest, AreTurnedOffAndOnByTheirState) {
    Instance subscription = *subscriptions->find(subscribe());
    alarms.take();
    const auto setState = [&](std::uint64_t state) {
        subscription.set("SubscriptionState", Value::unsignedInteger(CimType::uint16, state));
        subscriptions->modify({}, subscription);
    };
    setState(4);
    EXPECT_EQ(alarms.take(), (Texts{"deactivate TST_Alarm last", "disable"}));
    setState(4);
    EXPECT_EQ(alarms.take(), Texts{});
    setState(2);
    EXPECT_EQ(alarms.take().size(), 3U);
    EXPECT_EQ(errorCodeOf([&] { setState(3); }), 4);
}

TEST_F(SubscriptionsTest, TakeInWhatTheSchemaDefinesAndLeaveItAsItIs) {
    const auto filters = subscriptions->all(repository.get("interop"), "CIM_IndicationFilter");
    ASSERT_EQ(filters.size(), 1U);
    EXPECT_EQ(errorCodeOf([&] { remove(filters[0].path); }), 1);
    EXPECT_EQ(errorCodeOf([&] { subscriptions->modify({}, filters[0]); }), 1);
    create(subscriptionOf(filters[0].path, create(destinationOf("http://x/"))));
    EXPECT_EQ(alarms.take().size(), 3U);
}

TEST_F(SubscriptionsTest, HaveALimit) {
    for (std::size_t i = 0; i < SubscriptionLimits::destinations; ++i) {
        create(destinationOf("http://x/", std::to_string(i)));
    }
    EXPECT_EQ(errorCodeOf([&] { create(destinationOf("http://x/", "more")); }), 27);
}

}  // namespace
}  // namespace cimhost
