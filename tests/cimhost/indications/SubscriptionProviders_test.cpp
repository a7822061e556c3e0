#include "tests/cimhost/indications/SubscriptionsFixture.h"

#include <future>
#include <semaphore>
#include <thread>

namespace cimhost {
namespace {

TEST_F(SubscriptionsTest, AskProvidersInOrderAndOnceForEachFilter) {
    const ObjectPath first = subscribe();
    EXPECT_EQ(alarms.take(), (Texts{"authorize TST_Alarm for fred",
                                    "activate TST_Alarm in root/test first", "enable"}));
    EXPECT_EQ(others.take(), Texts{});
    const ObjectPath second = subscribe("SELECT * FROM TST_Alarm WHERE Number = 1", "g");
    EXPECT_EQ(alarms.take(),
              (Texts{"authorize TST_Alarm for fred", "activate TST_Alarm in root/test"}));
    // The same filter again, for another destination.
    const ObjectPath filter = create(filterOf("SELECT * FROM TST_Loud", "h"));
    const ObjectPath third =
        create(subscriptionOf(filter, create(destinationOf("http://x/", "h1"))));
    EXPECT_EQ(alarms.take(),
              (Texts{"authorize TST_Loud for fred", "activate TST_Loud in root/test first"}));
    const ObjectPath fourth =
        create(subscriptionOf(filter, create(destinationOf("http://x/", "h2"))));
    EXPECT_EQ(alarms.take(), Texts{});

    remove(third);
    EXPECT_EQ(alarms.take(), Texts{});
    remove(fourth);
    EXPECT_EQ(alarms.take(), (Texts{"deactivate TST_Loud last"}));
    remove(first);
    EXPECT_EQ(alarms.take(), (Texts{"deactivate TST_Alarm"}));
    remove(second);
    EXPECT_EQ(alarms.take(), (Texts{"deactivate TST_Alarm last", "disable"}));
}

class SubscriptionsAsSfcb : public SubscriptionsTest {
protected:
    SubscriptionsAsSfcb() : SubscriptionsTest("sfcb") {}
};

TEST_F(SubscriptionsAsSfcb, NameNoClassAndDisableBeforeTheLastFilterGoes) {
    const ObjectPath first = subscribe();
    EXPECT_EQ(alarms.take(), (Texts{"authorize TST_Alarm for fred",
                                    "activate null in root/test first", "enable"}));
    const ObjectPath second = subscribe("SELECT * FROM TST_Loud", "g");
    alarms.take();
    remove(first);
    EXPECT_EQ(alarms.take(), Texts{"deactivate  last"});
    remove(second);
    EXPECT_EQ(alarms.take(), (Texts{"disable", "deactivate  last"}));
}

class SubscriptionsAsOpenPegasus : public SubscriptionsTest {
protected:
    SubscriptionsAsOpenPegasus() : SubscriptionsTest("openpegasus") {}
};

TEST_F(SubscriptionsAsOpenPegasus, AskNobodyBeforehand) {
    alarms.insistsOnPolling = true;
    alarms.refused = "authorize";
    const ObjectPath path = subscribe();
    EXPECT_EQ(alarms.take(), (Texts{"activate TST_Alarm in root/test first", "enable"}));
    EXPECT_EQ(log.countOf("polled"), 0U);
    remove(path);
    EXPECT_EQ(alarms.take(), (Texts{"deactivate TST_Alarm last", "disable"}));
}

TEST_F(SubscriptionsTest, TurnEverythingOffAtTheEnd) {
    subscribe();
    alarms.take();
    EXPECT_TRUE(subscriptions->stop(std::chrono::seconds(10)));
    EXPECT_EQ(alarms.take(), (Texts{"deactivate TST_Alarm last", "disable"}));
    routes.deliver({}, "root/test", indicationOf("TST_Alarm", 1));
    EXPECT_EQ(outlet.take(), Texts{});
    EXPECT_EQ(errorCodeOf([&] { create(destinationOf("http://x/", "late")); }), 28);
    EXPECT_TRUE(modules->shutDown(std::chrono::seconds(10)));
}

TEST_F(SubscriptionsTest, LayTheRouteBeforeTheProviderMayRaise) {
    alarms.whenTold = [this] { routes.deliver({}, "root/test", indicationOf("TST_Alarm", 1)); };
    subscribe();
    // While it authorizes and activates nobody has subscribed yet.
    EXPECT_EQ(outlet.take(), (Texts{"f<f:TST_Alarm.1"}));
}

TEST_F(SubscriptionsTest, AreRefusedAsTheProviderRefuses) {
    for (const char* const moment : {"authorize", "activate"}) {
        alarms.refused = moment;
        const ObjectPath filter = create(filterOf("SELECT * FROM TST_Alarm", moment));
        const ObjectPath handler = create(destinationOf("http://x/", moment));
        const std::string failure = errorOf([&] { create(subscriptionOf(filter, handler)); });
        EXPECT_EQ(failure.find("2: not " + std::string(moment)), 0U) << failure;
        EXPECT_EQ(countOf("CIM_IndicationSubscription"), 0U);
        remove(filter);
        remove(handler);
    }
    EXPECT_TRUE(modules->shutDown(std::chrono::seconds(0)));
}

TEST_F(SubscriptionsTest, EnableAProviderAgainThatCouldNotBeEnabled) {
    alarms.refused = "enable";
    const ObjectPath first = subscribe();
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_NE(log.lines()[0].message.find("enableIndications: not enable"), std::string::npos);
    remove(first);
    EXPECT_EQ(alarms.take().back(), "deactivate TST_Alarm last") << "it has nothing to disable";
    subscribe("SELECT * FROM TST_Alarm", "second");
    alarms.refused.clear();
    alarms.take();
    subscribe("SELECT * FROM TST_Loud", "third");
    EXPECT_EQ(alarms.take().back(), "enable");
    subscribe("SELECT Number FROM TST_Loud", "fourth");
    EXPECT_NE(alarms.take().back(), "enable") << "it is by now";
}

TEST_F(SubscriptionsTest, AreNotHeldBackByAProviderThatWantsToBePolled) {
    alarms.insistsOnPolling = true;
    subscribe();
    EXPECT_EQ(countOf("CIM_IndicationSubscription"), 1U);
    ASSERT_FALSE(log.lines().empty());
    EXPECT_EQ(log.lines()[0].message, "wants to be polled for class TST_Alarm, which is not done");
}

TEST_F(SubscriptionsTest, CannotBeChangedFromWithinAChange) {
    std::string failure;
    alarms.whenTold = [&] { failure = errorOf([&] { create(destinationOf("http://x/", "in")); }); };
    subscribe();
    alarms.whenTold = nullptr;
    EXPECT_EQ(failure, "1: subscriptions cannot be changed while a provider is asked about one");
}

TEST_F(SubscriptionsTest, DoNotWaitForeverForAProviderThatAnotherChangeAsks) {
    subscriptions = std::make_unique<Subscriptions>(broker, *modules, routes, outlet,
                                                    std::chrono::milliseconds(1));
    subscriptions->restore({});
    std::counting_semaphore<> isAsked(0);
    std::promise<void> answer;
    alarms.whenTold = [&, answered = answer.get_future().share()] {
        isAsked.release();
        answered.wait();
    };
    std::thread other([&] { subscribe(); });
    isAsked.acquire();
    const std::string failure = errorOf([&] { create(destinationOf("http://x/", "late")); });
    answer.set_value();
    other.join();
    alarms.whenTold = nullptr;
    EXPECT_EQ(failure, "1: another change of subscriptions has not ended for 0 s");
    create(destinationOf("http://x/", "late"));
}

}  // namespace
}  // namespace cimhost
