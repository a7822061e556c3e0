#pragma once

#include "cimhost/indications/Subscriptions.h"
#include "cimhost/mof/MofReader.h"
#include "cimhost/objects/Description.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "tests/cimhost/indications/IndicationFixture.h"
#include "tests/support/BrokerFixture.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cimhost {

using Texts = std::vector<std::string>;

inline constexpr const char* qualifiers = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Indication : boolean = false, Scope(class, indication), Flavor(DisableOverride, ToSubclass);
)";

inline constexpr const char* interopClasses = R"(
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

inline constexpr const char* testClasses = R"(
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

}  // namespace cimhost
