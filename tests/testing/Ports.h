#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"
#include "toolkit/TwoEndedAssociation.h"
#include "toolkit/WatchingProvider.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <functional>

/// A class, an association, a method, an alert and a status, and a provider of them in which a test
/// puts wrong what it likes.
namespace ports {

constexpr const char* classes = R"(
class ACME_Port {
    [Key] string Name;
    uint32 Speed;
    uint16 GroupOperationalStatus[];
    string Identify([In] uint32 Seconds, [In(false), Out] string Led);
};
class ACME_Slot { [Key] string Name; };
[Association] class ACME_SlotPort {
    [Key] ACME_Slot REF Antecedent;
    [Key] ACME_Port REF Dependent;
};
[Indication] class ACME_LinkAlert { string Port; };
)";

class Thing : public PYL::CmpiManagedInstance {
public:
    Thing(const char* className, std::string name)
        : _className(className), _name(std::move(name)) {}

    CmpiCpp::CmpiName getClassName() override { return _className; }
    CmpiCpp::CmpiObjectPath getPath() override { return path(_className, _name); }
    CmpiCpp::CmpiInstance getInstance() override {
        auto instance = PYL::makeInstanceAt(getPath());
        fill(instance);
        return instance;
    }
    void invokeMethod(const CmpiCpp::CmpiName&, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& out) override {
        out.deliver("Led", "led of " + _name);
        out.deliver(std::to_string(in.getArg("Seconds").asUint64()) + " seconds");
    }
    static CmpiCpp::CmpiObjectPath path(const char* className, const std::string& name) {
        return PYL::makeLocalPath(className, {{"Name", name}}, "root/acme");
    }

    std::function<void(CmpiCpp::CmpiInstance&)> fill = [](auto&) {};

private:
    const char* _className;
    std::string _name;
};

class Provider : public PYL::CollectionProvider, public PYL::WatchingProvider {
public:
    Provider(const CmpiCpp::CmpiBroker& broker, Logger& log) : CollectionProvider(broker, log) {
        auto made = std::make_unique<Thing>("ACME_Port", "a");
        port = made.get();
        PYL::add(_instances, std::move(made));
        PYL::add(_instances, std::make_unique<Thing>("ACME_Slot", "s"));
        constexpr PYL::AssociationClass link{"ACME_SlotPort", "Antecedent", "Dependent"};
        const auto end = [](const char* className, const char* name) {
            return [=] { return Thing::path(className, name); };
        };
        PYL::add(_instances, std::make_unique<PYL::TwoEndedAssociation>(
                                 link, end("ACME_Slot", "s"), end("ACME_Port", "a"), "root/acme"));
    }

    Thing* port;
    std::function<void(const CmpiCpp::CmpiContext&)> onRequest = [](const auto&) {};
    std::function<void(const CmpiCpp::CmpiContext&)> onWatch = [](const auto&) {};
    bool isWatching = false;

protected:
    void refresh(const CmpiCpp::CmpiContext& context) override { onRequest(context); }
    void startWatching(const CmpiCpp::CmpiContext& context) override {
        isWatching = true;
        onWatch(context);
    }
    void stopWatching() override { isWatching = false; }
};

/// A host that serves them.
struct Fixture : testing::Test {
    Fixture() { host.readMofText(classes); }

    cimtest::FakeHost machine;
    cimtest::ProviderHost host{"root/acme"};
    Provider* provider = nullptr;
    const cimtest::Path port{"ACME_Port.Name=\"a\""};
    const cimtest::Path slot{"ACME_Slot.Name=\"s\""};

    void serve() {
        provider = &host.serve(std::make_unique<Provider>(host.broker(), host.logger()),
                               {"ACME_Port", "ACME_Slot", "ACME_SlotPort", "ACME_LinkAlert"});
    }
    void raise(const CmpiCpp::CmpiContext& context, const char* property, const char* text) const {
        auto alert = CmpiCpp::makeCmpiInstance(
            host.broker(),
            CmpiCpp::makeCmpiObjectPath(host.broker(), "root/acme", "ACME_LinkAlert"));
        alert.setProperty(property, text);
        Logger log = hostedLogger("ports");
        CmpiCpp::CmpiMBService(host.handle(), log).deliverIndication(context, "root/acme", alert);
    }
};

}  // namespace ports
