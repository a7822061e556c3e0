#include "cimhost/indications/Subscriptions.h"
#include "tests/cimhost/indications/IndicationFixture.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <gmock/gmock.h>

// Filters, destinations and subscriptions as clients and providers meet them: through operations.

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr const char* subscriptionClassesMof = R"(
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
class CIM_IndicationFilter {
    [Key] string Name; [Key] string CreationClassName;
    string SourceNamespace; string Query; string QueryLanguage; string Caption;
};
class TST_SubFilter : CIM_IndicationFilter { string Extra; };
class CIM_ListenerDestination {
    [Key] string Name; [Key] string CreationClassName; string Destination; string Caption;
};
class CIM_ListenerDestinationCIMXML : CIM_ListenerDestination {};
[Association] class TST_AnySubscription {
    [Key] CIM_IndicationFilter REF Filter; [Key] CIM_ListenerDestination REF Handler;
};
[Association] class CIM_IndicationSubscription : TST_AnySubscription { uint16 SubscriptionState; };
class CIM_IndicationService { [Key] string Name; [Key] string CreationClassName; };
instance of CIM_IndicationFilter {
    Name = "static"; CreationClassName = "CIM_IndicationFilter";
    Query = "SELECT * FROM TST_Alarm"; QueryLanguage = "WQL"; SourceNamespace = "root/test";
};
)";

constexpr const char* alarmMof = R"(
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
[Indication] class TST_Alarm { uint32 Number; };
)";

class SubscriptionOperations : public OperationsTest {
protected:
    SubscriptionOperations() {
        readMof(subscriptionClassesMof, "interop");
        readMof(alarmMof);
    }

    void TearDown() override { stopServing(); }

    void serveSubscriptions();
    void stopServing();

    ObjectPath make(const std::string& className,
                    const std::vector<std::pair<std::string, Value>>& properties) {
        Instance instance;
        instance.path = classPath(className, "interop");
        for (const auto& [name, value] : properties) instance.set(name, value);
        return operations().createInstance(request(), instance);
    }

    ObjectPath makeFilter(const std::string& name,
                          const std::string& className = "CIM_IndicationFilter") {
        return make(className, {{"Name", Value::string(name)},
                                {"Query", Value::string("SELECT * FROM TST_Alarm")},
                                {"QueryLanguage", Value::string("WQL")},
                                {"SourceNamespace", Value::string("root/test")}});
    }

    ObjectPath makeDestination(const std::string& name) {
        return make("CIM_ListenerDestinationCIMXML",
                    {{"Name", Value::string(name)}, {"Destination", Value::string("http://x/")}});
    }

    ObjectPath subscribe(const ObjectPath& filter, const ObjectPath& destination) {
        return make("CIM_IndicationSubscription", {{"Filter", Value::reference(filter)},
                                                   {"Handler", Value::reference(destination)}});
    }

    std::vector<std::string> namesOf(const std::string& className) {
        FoundPaths names;
        operations().enumerateInstanceNames(request(), classPath(className, "interop"), names);
        FoundInstances found;
        operations().enumerateInstances(request(), classPath(className, "interop"), {}, found);
        EXPECT_EQ(names.all.size(), found.all.size());
        return names.texts();
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

    std::size_t referencesTo(const ObjectPath& path, const AssociationFilter& filter = {}) {
        FoundPaths names;
        operations().referenceNames(request(), path, filter, names);
        FoundInstances found;
        operations().references(request(), path, filter, {}, found);
        EXPECT_EQ(names.all.size(), found.all.size());
        return names.all.size();
    }

    Instance get(const ObjectPath& path, const InstanceOptions& options = {}) {
        FoundInstances found;
        operations().getInstance(request(), path, options, found);
        return found.all.at(0).instance;
    }

    RecordingOutlet outlet;
    IndicationRoutes routes{repository, log};

private:
    std::unique_ptr<Subscriptions> _subscriptions;
};

void SubscriptionOperations::serveSubscriptions() {
    start();
    _subscriptions = std::make_unique<Subscriptions>(broker, host(), routes, outlet);
    operations().add(*_subscriptions);
    _subscriptions->restore({});
}

void SubscriptionOperations::stopServing() {
    _subscriptions.reset();
    stop();
}

TEST_F(SubscriptionOperations, EnumerationsHaveSubclassesAndWhatCameWithTheMof) {
    serveSubscriptions();
    makeFilter("f");
    makeFilter("s", "TST_SubFilter");
    makeDestination("d");
    EXPECT_THAT(namesOf("CIM_IndicationFilter"),
                UnorderedElementsAre("CIM_IndicationFilter.static", "CIM_IndicationFilter.f",
                                     "TST_SubFilter.s"));
    EXPECT_THAT(namesOf("TST_SubFilter"), ElementsAre("TST_SubFilter.s"));
    EXPECT_THAT(namesOf("CIM_ListenerDestination"), ElementsAre("CIM_ListenerDestinationCIMXML.d"));
    EXPECT_THAT(namesOf("CIM_IndicationService"), ElementsAre("CIM_IndicationService.cimhost"));
    EXPECT_THAT(namesOf("CIM_IndicationSubscription"), ElementsAre());
}

TEST_F(SubscriptionOperations, AnEnumerationShowsTheChosenPropertiesOfTheClassAlone) {
    serveSubscriptions();
    makeFilter("s", "TST_SubFilter");
    FoundInstances found;
    InstanceOptions options;
    options.propertyList = {"Query", "Extra"};
    options.deepInheritance = false;
    operations().enumerateInstances(request(), classPath("CIM_IndicationFilter", "interop"),
                                    options, found);
    ASSERT_EQ(found.all.size(), 2U);
    EXPECT_THAT(found.all[1].shown, ElementsAre("Query"));
    EXPECT_EQ(found.all[1].definition->name, "TST_SubFilter");
}

TEST_F(SubscriptionOperations, InstancesAreReadByPath) {
    serveSubscriptions();
    const ObjectPath path = makeFilter("f");
    EXPECT_EQ(path.nameSpace, "interop");
    FoundInstances found;
    InstanceOptions options;
    options.propertyList = {"Query"};
    operations().getInstance(request(), path, options, found);
    ASSERT_EQ(found.all.size(), 1U);
    EXPECT_THAT(found.all[0].shown, ElementsAre("Query"));
    EXPECT_EQ(found.all[0].definition->name, "CIM_IndicationFilter");
    ObjectPath missing = path;
    missing.setKey("Name", Value::string("missing"));
    EXPECT_EQ(errorOf([&] { get(missing); }), "6: CIM_ERR_NOT_FOUND");
}

TEST_F(SubscriptionOperations, OnlyTheListedPropertiesAreModified) {
    serveSubscriptions();
    Instance change;
    change.path = makeFilter("f");
    change.set("Caption", Value::string("new"));
    change.set("Query", Value::string("not a query"));
    operations().modifyInstance(request(), change, std::vector<std::string>{"caption"});
    EXPECT_EQ(get(change.path).find("Caption")->value, Value::string("new"));
    EXPECT_EQ(get(change.path).find("Query")->value, Value::string("SELECT * FROM TST_Alarm"));
    EXPECT_EQ(errorCodeOf([&] { operations().modifyInstance(request(), change, {}); }), 15);
    change.path.setKey("Name", Value::string("missing"));
    EXPECT_THAT(errorOf([&] { operations().modifyInstance(request(), change, {}); }),
                testing::StartsWith("6: there is no "));
}

TEST_F(SubscriptionOperations, InstancesAreDeletedOnce) {
    serveSubscriptions();
    const ObjectPath path = makeFilter("f");
    operations().deleteInstance(request(), path);
    EXPECT_THAT(errorOf([&] { operations().deleteInstance(request(), path); }),
                testing::StartsWith("6: there is no "));
    EXPECT_THAT(namesOf("CIM_IndicationFilter"), ElementsAre("CIM_IndicationFilter.static"));
}

TEST_F(SubscriptionOperations, WhatCameWithTheMofAndTheServiceStayAsTheyAre) {
    serveSubscriptions();
    FoundPaths found;
    operations().enumerateInstanceNames(request(), classPath("CIM_IndicationFilter", "interop"),
                                        found);
    EXPECT_THAT(errorOf([&] { operations().deleteInstance(request(), found.all.at(0)); }),
                testing::EndsWith("came with the schema and stays as it is"));
    operations().enumerateInstanceNames(request(), classPath("CIM_IndicationService", "interop"),
                                        found);
    EXPECT_EQ(errorOf([&] { operations().deleteInstance(request(), found.all.at(1)); }),
              "7: instances of class CIM_IndicationService can only be read");
    EXPECT_EQ(errorOf([&] {
                  make("CIM_IndicationService", {{"Name", Value::string("second")}});
              }),
              "7: instances of class CIM_IndicationService can only be read");
}

TEST_F(SubscriptionOperations, WalksLeadFromFilterToDestinationAndBack) {
    serveSubscriptions();
    const ObjectPath filter = makeFilter("f");
    const ObjectPath destination = makeDestination("d");
    const ObjectPath other = makeDestination("other");
    const ObjectPath subscription = subscribe(filter, destination);
    const std::string destinationText = "CIM_ListenerDestinationCIMXML.d";

    EXPECT_THAT(associatorsOf(filter), ElementsAre(destinationText));
    EXPECT_THAT(associatorsOf(destination), ElementsAre("CIM_IndicationFilter.f"));
    EXPECT_THAT(associatorsOf(other), ElementsAre());
    EXPECT_THAT(associatorsOf(filter, {"TST_AnySubscription", "CIM_ListenerDestination", {}, {}}),
                ElementsAre(destinationText));
    EXPECT_THAT(associatorsOf(filter, {"CIM_IndicationService", {}, {}, {}}), ElementsAre());
    EXPECT_THAT(associatorsOf(filter, {{}, "CIM_IndicationFilter", {}, {}}), ElementsAre());
    EXPECT_THAT(associatorsOf(filter, {{}, {}, "filter", "handler"}), ElementsAre(destinationText));
    EXPECT_THAT(associatorsOf(filter, {{}, {}, "Handler", {}}), ElementsAre());

    EXPECT_EQ(referencesTo(filter), 1U);
    EXPECT_EQ(referencesTo(destination), 1U);
    EXPECT_EQ(referencesTo(filter, {{}, "TST_AnySubscription", "Filter", {}}), 1U);
    EXPECT_EQ(referencesTo(filter, {{}, {}, "Handler", {}}), 0U);
    FoundInstances found;
    InstanceOptions options;
    options.propertyList = {"SubscriptionState"};
    operations().references(request(), filter, {}, options, found);
    EXPECT_THAT(found.all.at(0).shown, ElementsAre("SubscriptionState"));
    EXPECT_TRUE(sameModelPath(found.all[0].instance.path, subscription));
}

TEST_F(SubscriptionOperations, SubscriptionsOfTheMofAreWalkedOnce) {
    readMof(R"(
instance of CIM_ListenerDestinationCIMXML as $Listener {
    Name = "d"; CreationClassName = "CIM_ListenerDestinationCIMXML"; Destination = "http://x/";
};
instance of CIM_IndicationFilter as $Filter {
    Name = "all"; CreationClassName = "CIM_IndicationFilter";
    Query = "SELECT * FROM TST_Alarm"; QueryLanguage = "WQL"; SourceNamespace = "root/test";
};
instance of CIM_IndicationSubscription { Filter = $Filter; Handler = $Listener; };
)",
            "interop");
    serveSubscriptions();
    FoundPaths found;
    operations().enumerateInstanceNames(
        request(), classPath("CIM_ListenerDestinationCIMXML", "interop"), found);
    ASSERT_EQ(found.all.size(), 1U);
    EXPECT_THAT(associatorsOf(found.all[0]), ElementsAre("CIM_IndicationFilter.all"));
    EXPECT_EQ(referencesTo(found.all[0]), 1U);
}

TEST_F(SubscriptionOperations, ASubclassInstanceOfTheMofIsThereOnceAndStaysAsItIs) {
    readMof(R"(
instance of TST_SubFilter {
    Name = "special"; CreationClassName = "TST_SubFilter"; Query = "SELECT * FROM TST_Alarm";
    QueryLanguage = "WQL"; SourceNamespace = "root/test";
};
)",
            "interop");
    serveSubscriptions();
    EXPECT_THAT(namesOf("TST_SubFilter"), ElementsAre("TST_SubFilter.special"));
    EXPECT_THAT(namesOf("CIM_IndicationFilter"),
                ElementsAre("CIM_IndicationFilter.static", "TST_SubFilter.special"));
    FoundPaths found;
    operations().enumerateInstanceNames(request(), classPath("TST_SubFilter", "interop"), found);
    EXPECT_EQ(get(found.all.at(0)).find("Query")->value, Value::string("SELECT * FROM TST_Alarm"));
    EXPECT_THAT(errorOf([&] { operations().deleteInstance(request(), found.all[0]); }),
                testing::EndsWith("came with the schema and stays as it is"));
}

TEST_F(SubscriptionOperations, QueriesAreNotSupported) {
    serveSubscriptions();
    RequestContext inInterop = request();
    inInterop.nameSpace = "interop";
    FoundInstances found;
    EXPECT_EQ(errorOf([&] {
                  operations().execQuery(inInterop, "WQL", "SELECT * FROM CIM_IndicationFilter",
                                         found);
              }),
              "7: CIM_ERR_NOT_SUPPORTED");
}

TEST_F(SubscriptionOperations, AClassThatAProviderServesStaysThatProviders) {
    ScriptedProvider& provider = serve("P", "CIM_IndicationFilter interop instance");
    provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
        provider.deliver(called.result, named("CIM_IndicationFilter", "live", "interop"));
        return provider.succeed();
    };
    provider.createInstance = [&](const ProviderCalled&) { return provider.fail(2); };
    serveSubscriptions();
    FoundPaths found;
    operations().enumerateInstanceNames(request(), classPath("CIM_IndicationFilter", "interop"),
                                        found);
    EXPECT_THAT(found.texts(), ElementsAre("CIM_IndicationFilter.live"));
    EXPECT_EQ(errorCodeOf([&] { makeFilter("f"); }), 2);
    makeDestination("d");
    EXPECT_THAT(namesOf("CIM_ListenerDestination"), ElementsAre("CIM_ListenerDestinationCIMXML.d"));
}

TEST_F(SubscriptionOperations, AProviderOfAnAncestorLeavesTheSubclassesToTheirOwn) {
    ScriptedProvider& destinations = serve("P", "CIM_ListenerDestination interop instance");
    destinations.enumerateInstanceNames = [&](const ProviderCalled& called) {
        for (const char* const className :
             {"CIM_ListenerDestination", "CIM_ListenerDestinationCIMXML"}) {
            destinations.deliver(called.result, named(className, "p", "interop"));
        }
        return destinations.succeed();
    };
    ScriptedProvider& associations = serve("Q", "TST_AnySubscription interop association");
    std::size_t asked = 0;
    associations.referenceNames = [&](const ProviderCalled&) {
        ++asked;
        return associations.succeed();
    };
    serveSubscriptions();
    const ObjectPath filter = makeFilter("f");
    subscribe(filter, makeDestination("d"));
    FoundPaths found;
    operations().enumerateInstanceNames(request(), classPath("CIM_ListenerDestination", "interop"),
                                        found);
    EXPECT_THAT(found.texts(),
                ElementsAre("CIM_ListenerDestination.p", "CIM_ListenerDestinationCIMXML.d"));

    FoundPaths references;
    operations().referenceNames(request(), filter, {{}, "CIM_IndicationSubscription", {}, {}},
                                references);
    EXPECT_EQ(references.all.size(), 1U);
    EXPECT_EQ(asked, 0U);
    operations().referenceNames(request(), filter, {}, references);
    EXPECT_EQ(references.all.size(), 2U);
    EXPECT_EQ(asked, 1U);
}

TEST_F(SubscriptionOperations, OtherNamespacesHaveNone) {
    readMof("class CIM_IndicationFilter { [Key] string Name; };");
    serveSubscriptions();
    FoundPaths found;
    EXPECT_EQ(errorOf([&] {
                  operations().enumerateInstanceNames(request(), classPath("CIM_IndicationFilter"),
                                                      found);
              }),
              "7: no provider serves class CIM_IndicationFilter in namespace root/test");
}

TEST_F(SubscriptionOperations, ProvidersReachThemByUpCalls) {
    ScriptedProvider& provider = serve("P", "TST_Fan root/test instance");
    std::size_t seen = 0;
    CMPIrc deleted = CMPI_RC_OK;
    provider.enumerateInstanceNames = [&](const ProviderCalled& called) {
        CMPIStatus status{};
        CMPIObjectPath* const path =
            makeObjectPath(broker, classPath("CIM_IndicationFilter", "interop"));
        CMPIEnumeration* const filters =
            handle()->bft->enumerateInstanceNames(handle(), called.context, path, &status);
        while (filters && filters->ft->hasNext(filters, nullptr)) {
            const CMPIData next = filters->ft->getNext(filters, nullptr);
            deleted = handle()->bft->deleteInstance(handle(), called.context, next.value.ref).rc;
            ++seen;
        }
        return provider.succeed();
    };
    serveSubscriptions();
    makeFilter("f");
    FoundPaths none;
    operations().enumerateInstanceNames(request(), classPath("TST_Fan"), none);
    EXPECT_EQ(seen, 2U);
    EXPECT_EQ(deleted, CMPI_RC_OK);
    EXPECT_THAT(namesOf("CIM_IndicationFilter"), ElementsAre("CIM_IndicationFilter.static"));
}

}  // namespace
}  // namespace cimhost::test
