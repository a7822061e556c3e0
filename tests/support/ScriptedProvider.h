#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/objects/Objects.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cimhost::test {

/// What an MI function was called with. Good during the call.
struct ProviderCalled {
    const CMPIContext* context = nullptr;
    const CMPIResult* result = nullptr;
    ObjectPath path;
    std::optional<std::vector<std::string>> propertyList;
    std::optional<Instance> instance;
    std::vector<std::optional<std::string>> texts;  ///< filters; query and language; method
    std::optional<Arguments> inputs;
    CMPIArgs* outputs = nullptr;

    RequestContext request() const { return modelOf(context); }
};

using Behaviour = std::function<CMPIStatus(const ProviderCalled&)>;

/// A provider behind the C interface that does what a test says. It knows nothing of the library's
/// C++, as cimhost knows nothing of it: providers in C++ are EverythingProvider.
///
/// A behaviour that is not set is a null slot when its MI is made. Behaviours are set before the
/// first call and may be called from several threads.
class ScriptedProvider {
public:
    explicit ScriptedProvider(const Broker& broker) : _broker(broker) {}

    Behaviour enumerateInstanceNames;
    Behaviour enumerateInstances;
    Behaviour getInstance;
    Behaviour createInstance;
    Behaviour modifyInstance;
    Behaviour deleteInstance;
    Behaviour execQuery;
    Behaviour associators;
    Behaviour associatorNames;
    Behaviour references;
    Behaviour referenceNames;
    Behaviour invokeMethod;
    /// The status of cleanup; called with `terminating`.
    std::function<CMPIStatus(bool)> cleanUp;

    /// Where the slots deliver to and how statuses are made.
    CMPIStatus deliver(const CMPIResult* result, Instance instance) const;
    CMPIStatus deliver(const CMPIResult* result, ObjectPath path) const;
    CMPIStatus deliver(const CMPIResult* result, const Value& value) const;
    CMPIStatus fail(int code, const char* message = nullptr) const;
    static CMPIStatus succeed() { return {CMPI_RC_OK, nullptr}; }

    const Broker& broker() const noexcept { return _broker; }

    /// Fresh MI structs over this provider; they live as long as it.
    CMPIInstanceMI* instanceMi();
    CMPIAssociationMI* associationMi();
    CMPIMethodMI* methodMi();
    CMPIIndicationMI* indicationMi();

    /// All four, for ModuleHost::addStatic; good as long as the provider.
    StaticModule module();

private:
    const Broker& _broker;
    CMPIInstanceMIFT _instanceTable{};
    CMPIAssociationMIFT _associationTable{};
    CMPIMethodMIFT _methodTable{};
    CMPIIndicationMIFT _indicationTable{};
    CMPIInstanceMI _instanceMi{};
    CMPIAssociationMI _associationMi{};
    CMPIMethodMI _methodMi{};
    CMPIIndicationMI _indicationMi{};
};

}  // namespace cimhost::test
