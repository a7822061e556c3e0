#include "cimhost/indications/Subscriptions.h"

#include "cimhost/indications/SubscriptionFile.h"
#include "cimhost/mof/MofReader.h"
#include "cimhost/objects/Description.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "tests/cimhost/indications/IndicationFixture.h"
#include "tests/support/BrokerFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <optional>

namespace cimhost {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* qualifiers = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
)";

constexpr const char* interopClasses = R"(
class CIM_IndicationFilter {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string CreationClassName; [Key] string Name;
    string SourceNamespace; string SourceNamespaces[]; string Query; string QueryLanguage;
    string Caption; boolean IndividualSubscriptionSupported = true;
};
class CIM_ListenerDestination {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string CreationClassName; [Key] string Name;
    string Destination; uint16 Protocol;
};
class CIM_ListenerDestinationCIMXML : CIM_ListenerDestination {};
[Association] class CIM_IndicationSubscription {
    [Key] CIM_IndicationFilter REF Filter; [Key] CIM_ListenerDestination REF Handler;
    uint16 SubscriptionState; uint16 OnFatalErrorPolicy; uint64 SubscriptionDuration;
    uint16 RepeatNotificationPolicy; datetime SubscriptionStartTime;
};
instance of CIM_IndicationFilter {
    SystemCreationClassName = "s"; SystemName = "n"; CreationClassName = "CIM_IndicationFilter";
    Name = "static"; Query = "SELECT * FROM TST_Alarm"; QueryLanguage = "WQL";
    SourceNamespaces = {"root/test"};
};
)";

constexpr const char* testClasses = R"(
[Indication] class TST_Alarm { uint32 Number; };
[Indication] class TST_Loud : TST_Alarm {};
[Indication] class TST_Other { uint32 Number; };
class TST_Plain { uint32 Number; };
)";

/// An indication MI that notes what it is told and answers what the test says.
class FakeProvider {
public:
    explicit FakeProvider(const Broker& broker) : _broker(broker) {
        _table.ftVersion = CMPIVersion210;
        _table.cleanup = [](CMPIIndicationMI*, const CMPIContext*, CMPIBoolean) { return ok; };
        _table.authorizeFilter = [](CMPIIndicationMI* mi, const CMPIContext*, const CMPISelectExp*,
                                    const char* className, const CMPIObjectPath*,
                                    const char* owner) {
            return _of(mi)._note("authorize " + std::string(className) + " for " + owner);
        };
        _table.mustPoll = [](CMPIIndicationMI* mi, const CMPIContext*, const CMPIResult* result,
                             const CMPISelectExp*, const char*, const CMPIObjectPath*) {
            CMPIValue value{};
            value.boolean = _of(mi).insistsOnPolling ? 1 : 0;
            result->ft->returnData(result, &value, CMPI_boolean);
            return ok;
        };
        _table.activateFilter = [](CMPIIndicationMI* mi, const CMPIContext*, const CMPISelectExp*,
                                   const char* className, const CMPIObjectPath* path,
                                   CMPIBoolean first) {
            return _of(mi)._note("activate " + std::string(className ? className : "null") +
                                 " in " + modelOf(path).nameSpace + (first ? " first" : ""));
        };
        _table.deActivateFilter = [](CMPIIndicationMI* mi, const CMPIContext*, const CMPISelectExp*,
                                     const char* className, const CMPIObjectPath*,
                                     CMPIBoolean last) {
            return _of(mi)._note("deactivate " + std::string(className) + (last ? " last" : ""));
        };
        _table.enableIndications = [](CMPIIndicationMI* mi, const CMPIContext*) {
            return _of(mi)._note("enable");
        };
        _table.disableIndications = [](CMPIIndicationMI* mi, const CMPIContext*) {
            return _of(mi)._note("disable");
        };
        _mi = {this, &_table};
    }

    CMPIIndicationMI* mi() noexcept { return &_mi; }
    Texts take() { return std::exchange(_told, {}); }

    bool insistsOnPolling = false;
    std::string refused;  ///< what begins with this is refused
    std::function<void()> whenTold;

private:
    static constexpr CMPIStatus ok{CMPI_RC_OK, nullptr};

    static FakeProvider& _of(const CMPIIndicationMI* mi) {
        return *static_cast<FakeProvider*>(const_cast<void*>(mi->hdl));
    }

    CMPIStatus _note(const std::string& text) {
        _told.push_back(text);
        if (whenTold) whenTold();
        if (refused.empty() || !text.starts_with(refused)) return ok;
        return {CMPI_RC_ERR_ACCESS_DENIED, makeString(_broker, "not " + text)};
    }

    const Broker& _broker;
    CMPIIndicationMIFT _table{};
    CMPIIndicationMI _mi{};
    Texts _told;
};

/// Providers "Alarms" for TST_Alarm and TST_Loud, and "Others" for TST_Other.
class SubscriptionsTest : public testing::Test {
protected:
    explicit SubscriptionsTest(const char* manner = "standard")
        : broker(repository, log, fillUpCalls, Manner(manner)) {
        MofReader(repository, "interop").readText(qualifiers, "q");
        MofReader(repository, "root/test").readText(qualifiers, "q");
        MofReader(repository, "root/test").readText(testClasses, "t");
        MofReader(repository, "interop").readText(interopClasses, "i");
        start();
    }

    void start(const std::optional<std::filesystem::path>& file = {}) {
        subscriptions.reset();
        modules.reset();
        Registrations registrations;
        registrations.readText(
            "TST_Alarm root/test Alarms alarms indication\n"
            "TST_Loud root/test Alarms alarms indication\n"
            "TST_Other root/test Others others indication\n",
            "test");
        modules = std::make_unique<ModuleHost>(broker, std::move(registrations),
                                               std::vector<std::filesystem::path>{});
        modules->addStatic("alarms", {{}, {}, {}, [this](auto...) { return alarms.mi(); }});
        modules->addStatic("others", {{}, {}, {}, [this](auto...) { return others.mi(); }});
        subscriptions = std::make_unique<Subscriptions>(broker, *modules, routes, outlet);
        subscriptions->restore(file);
    }

    static Instance instanceOf(const std::string& className,
                               const std::vector<std::pair<std::string, Value>>& properties) {
        Instance instance;
        instance.path.nameSpace = "interop";
        instance.path.className = className;
        for (const auto& [name, value] : properties) instance.set(name, value);
        return instance;
    }

    static Instance filterOf(const std::string& query, const std::string& name = "f") {
        return instanceOf(
            "CIM_IndicationFilter",
            {{"Name", Value::string(name)},
             {"Query", Value::string(query)},
             {"QueryLanguage", Value::string("WQL")},
             {"SourceNamespaces", Value::array(CimType::string, {Value::string("root/test")})}});
    }

    static Instance destinationOf(const std::string& url, const std::string& name = "d") {
        return instanceOf("CIM_ListenerDestinationCIMXML",
                          {{"Name", Value::string(name)}, {"Destination", Value::string(url)}});
    }

    static Instance subscriptionOf(const ObjectPath& filter, const ObjectPath& handler) {
        return instanceOf("CIM_IndicationSubscription", {{"Filter", Value::reference(filter)},
                                                         {"Handler", Value::reference(handler)}});
    }

    ObjectPath create(const Instance& instance) {
        RequestContext request;
        request.nameSpace = "interop";
        request.principal = "fred";
        return subscriptions->create(request, instance);
    }

    ObjectPath subscribe(const std::string& query = "SELECT * FROM TST_Alarm",
                         const std::string& name = "f") {
        const ObjectPath filter = create(filterOf(query, name));
        return create(subscriptionOf(filter, create(destinationOf("http://x/", name))));
    }

    void remove(const ObjectPath& path) { subscriptions->remove({}, path); }

    std::string failureOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const CimError& error) {
            return std::to_string(static_cast<int>(error.code())) + ": " + error.what();
        }
        return {};
    }
    int codeOf(const std::function<void()>& action) {
        const std::string failure = failureOf(action);
        return failure.empty() ? 0 : std::stoi(failure);
    }

    std::size_t countOf(const std::string& className) {
        return subscriptions->all(repository.get("interop"), className).size();
    }

    Repository repository;
    CapturingLog log;
    Broker broker;
    RecordingOutlet outlet;
    IndicationRoutes routes{repository, log};
    FakeProvider alarms{broker};
    FakeProvider others{broker};
    std::unique_ptr<ModuleHost> modules;
    std::unique_ptr<Subscriptions> subscriptions;
};

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
    EXPECT_EQ(failureOf([&] { create(nameless); }), "4: key Name has no value");
    Instance strange = filterOf("SELECT * FROM TST_Alarm", "other");
    strange.set("CreationClassName", Value::string("CIM_Else"));
    EXPECT_EQ(codeOf([&] { create(strange); }), 4);
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
    EXPECT_EQ(codeOf([&] { remove(all.front().path); }), 1) << "the MOF would bring it back";
}

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
    EXPECT_EQ(codeOf([&] { create(destinationOf("http://x/", "late")); }), 28);
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
        const std::string failure = failureOf([&] { create(subscriptionOf(filter, handler)); });
        EXPECT_EQ(failure.find("2: not " + std::string(moment)), 0U) << failure;
        EXPECT_EQ(countOf("CIM_IndicationSubscription"), 0U);
        remove(filter);
        remove(handler);
    }
    EXPECT_TRUE(modules->shutDown(std::chrono::seconds(0)));
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
    alarms.whenTold = [&] {
        failure = failureOf([&] { create(destinationOf("http://x/", "in")); });
    };
    subscribe();
    alarms.whenTold = nullptr;
    EXPECT_EQ(failure, "1: subscriptions cannot be changed while a provider is asked about one");
}

TEST_F(SubscriptionsTest, RefuseWhatIsWrong) {
    const auto filterFailure = [&](const std::string& query) {
        return codeOf([&] { create(filterOf(query)); });
    };
    EXPECT_EQ(filterFailure("SELECT"), 15);
    EXPECT_EQ(filterFailure("SELECT * FROM TST_Plain"), 15);
    EXPECT_EQ(filterFailure("SELECT * FROM TST_Gone"), 5);
    EXPECT_EQ(filterFailure("SELECT Colour FROM TST_Alarm"), 15);
    EXPECT_EQ(filterFailure("SELECT * FROM TST_Alarm WHERE 1 = Colour"), 15);
    Instance elsewhere = filterOf("SELECT * FROM TST_Alarm");
    elsewhere.set("SourceNamespaces", Value::array(CimType::string, {Value::string("nowhere")}));
    EXPECT_EQ(codeOf([&] { create(elsewhere); }), 3);
    Instance spoken = filterOf("SELECT * FROM TST_Alarm");
    spoken.set("QueryLanguage", Value::string("SQL"));
    EXPECT_EQ(codeOf([&] { create(spoken); }), 14);
    EXPECT_EQ(codeOf([&] { create(destinationOf("nowhere")); }), 4);
    EXPECT_EQ(codeOf([&] { create(destinationOf("https://x/")); }), 7);
    EXPECT_EQ(countOf("CIM_ListenerDestination"), 0U);
}

TEST_F(SubscriptionsTest, TakeComparisonsWithNull) {
    const auto filterFailure = [&](const std::string& name, const std::string& condition) {
        return failureOf(
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
        return codeOf([&] { create(subscription); });
    };
    EXPECT_EQ(failure("OnFatalErrorPolicy", 4), 7);
    EXPECT_EQ(failure("RepeatNotificationPolicy", 3), 7);
    EXPECT_EQ(failure("SubscriptionDuration", 60), 7);
    EXPECT_EQ(failure("SubscriptionState", 9), 4);
    EXPECT_EQ(failure("OnFatalErrorPolicy", 2), 0);
}

TEST_F(SubscriptionsTest, KeepWhatIsInUse) {
    const ObjectPath path = subscribe();
    const Instance subscription = *subscriptions->find(path);
    EXPECT_EQ(codeOf([&] { remove(*referenceOf(subscription, "Filter")); }), 1);
    EXPECT_EQ(codeOf([&] { remove(*referenceOf(subscription, "Handler")); }), 1);
    remove(path);
    EXPECT_EQ(codeOf([&] { remove(path); }), 6);
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
    EXPECT_EQ(codeOf([&] { setState(3); }), 4);
}

TEST_F(SubscriptionsTest, TakeInWhatTheSchemaDefinesAndLeaveItAsItIs) {
    const auto filters = subscriptions->all(repository.get("interop"), "CIM_IndicationFilter");
    ASSERT_EQ(filters.size(), 1U);
    EXPECT_EQ(codeOf([&] { remove(filters[0].path); }), 1);
    EXPECT_EQ(codeOf([&] { subscriptions->modify({}, filters[0]); }), 1);
    create(subscriptionOf(filters[0].path, create(destinationOf("http://x/"))));
    EXPECT_EQ(alarms.take().size(), 3U);
}

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

    EXPECT_EQ(codeOf([&] { create(destinationOf("http://x/", "new")); }), 1);
    EXPECT_EQ(countOf("CIM_ListenerDestination"), 1U);
    EXPECT_EQ(codeOf([&] { create(filterOf("SELECT * FROM TST_Loud", "new")); }), 1);
    EXPECT_EQ(codeOf([&] { remove(path); }), 1);
    EXPECT_TRUE(subscriptions->find(path));
    Instance changed = *subscriptions->find(filter);
    changed.set("Caption", Value::string("new"));
    EXPECT_EQ(codeOf([&] { subscriptions->modify({}, changed); }), 1);
    EXPECT_EQ(subscriptions->find(filter)->find("Caption"), nullptr);
    EXPECT_EQ(alarms.take(), Texts{});
}

TEST_F(SubscriptionsTest, AreRefusedWhenTheStateFileCannotHoldThem) {
    const TemporaryFolder folder;
    start(folder / "state");
    Instance destination = destinationOf("http://x/");
    destination.set("Name", Value::string("\xFF"));
    EXPECT_EQ(codeOf([&] { create(destination); }), 1);
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

TEST_F(SubscriptionsTest, HaveALimit) {
    for (std::size_t i = 0; i < SubscriptionLimits::destinations; ++i) {
        create(destinationOf("http://x/", std::to_string(i)));
    }
    EXPECT_EQ(codeOf([&] { create(destinationOf("http://x/", "more")); }), 27);
}

}  // namespace
}  // namespace cimhost
