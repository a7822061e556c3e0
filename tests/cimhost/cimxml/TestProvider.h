#pragma once

#include "cimhost/operations/Operations.h"
#include "tests/support/ScriptedProvider.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// A scripted provider that keeps instances, and what it was asked. Must outlive the module host.
class TestProvider {
public:
    explicit TestProvider(const Broker& broker);

    /// For ModuleHost::addStatic.
    StaticModule module() { return _provider.module(); }

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
    CMPIStatus _fail() const;
    void _remember(const test::ProviderCalled& called);
    /// Every instance of the class through `deliver`, up to the failure that the test asked for.
    CMPIStatus _walk(const test::ProviderCalled& called,
                     const std::function<CMPIStatus(const Instance&)>& deliver);
    CMPIStatus _invoke(const test::ProviderCalled& called);

    test::ScriptedProvider _provider;
};

}  // namespace cimhost
