#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Instance.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// A provider in this program whose doings tests read and change. Must outlive the module host.
class TestProvider {
public:
    explicit TestProvider(const Broker& broker) : _broker(broker) {}

    /// For ModuleHost::addStatic.
    StaticModule module();

    std::vector<Instance> instances;       ///< what enumerations and look-ups find
    std::optional<std::size_t> failAfter;  ///< enumerations fail after that many instances
    CMPIrc failureCode = CMPI_RC_ERR_FAILED;
    std::string failureText = "the fans are \"out\" & <gone>";
    std::function<void()> beforeFailure;  ///< may throw
    MethodResult methodResult;

    std::optional<Instance> created;
    std::optional<Instance> modified;
    std::optional<std::vector<std::string>> modifiedProperties;
    std::optional<ObjectPath> deleted;
    std::optional<ObjectPath> methodTarget;
    std::string method;
    Arguments methodArguments;
    std::string principal;
    CMPIFlags flags = 0;

private:
    friend struct TestProviderTables;

    const Broker& _broker;
    CMPIInstanceMI _instanceMi{};
    CMPIMethodMI _methodMi{};
};

}  // namespace cimhost
