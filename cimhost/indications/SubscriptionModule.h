#pragma once

#include "cimhost/modules/Module.h"
#include "cimhost/modules/Registration.h"
#include "cimhost/repository/Repository.h"

#include <string_view>

namespace cimhost {

class Broker;
class Subscriptions;

/// The provider of filters, destinations and subscriptions: a module that is part of this program,
/// served by the same road as any other. It outlives the host of modules.
class SubscriptionModule {
public:
    static constexpr std::string_view moduleName = "cimhostSubscriptions";
    static constexpr std::string_view providerName = "SubscriptionProvider";

    SubscriptionModule();
    SubscriptionModule(const SubscriptionModule&) = delete;
    SubscriptionModule& operator=(const SubscriptionModule&) = delete;

    /// Registers the provider for the classes that interop namespaces have. A class that another
    /// provider serves stays that provider's. False when there is none to serve.
    static bool registerIn(Registrations& registrations, const Repository& repository);

    /// From now on requests are answered from these. Before the first one.
    void serve(const Broker& broker, Subscriptions& subscriptions) noexcept;

    StaticModule factories();

    const Broker& broker() const noexcept { return *_broker; }
    Subscriptions& subscriptions() const noexcept { return *_subscriptions; }

private:
    const Broker* _broker = nullptr;
    Subscriptions* _subscriptions = nullptr;
    CMPIInstanceMI _instanceMi;
    CMPIAssociationMI _associationMi;
};

/// The association MI of the module; its `hdl` is the module.
extern const CMPIAssociationMIFT subscriptionAssociations;

}  // namespace cimhost
