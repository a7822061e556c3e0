#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"
#include "tests/support/ScriptedProvider.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost::test {

struct FoundInstance {
    Instance instance;
    const Class* definition = nullptr;
    std::vector<std::string> shown;  ///< the properties that the selection lets through
};

class FoundInstances final : public InstanceSink {
public:
    void deliver(const Instance& instance, const Class* definition,
                 const PropertySelection& selection) override;

    std::vector<FoundInstance> all;
};

class FoundPaths final : public PathSink {
public:
    void deliver(const ObjectPath& path) override { all.push_back(path); }

    /// The class and the first key of each, such as "TST_Fan.a".
    std::vector<std::string> texts() const;

    std::vector<ObjectPath> all;
};

ObjectPath classPath(const std::string& className, const std::string& nameSpace = {});

/// A path with one key.
ObjectPath pathOf(const std::string& className, const std::string& key, Value value,
                  const std::string& nameSpace = {});
/// A path with the key Name.
ObjectPath named(const std::string& className, const std::string& name,
                 const std::string& nameSpace = {});
/// The class and the first key, such as "TST_Fan.a".
std::string textOf(const ObjectPath& path);

Value uint32Value(std::uint64_t number);
Value uint16Value(std::uint64_t number);

/// A repository with the namespaces root/test and interop, and operations over scripted providers.
/// Everything is registered before `start`.
class OperationsTest : public testing::Test {
protected:
    explicit OperationsTest(std::string_view manner = "standard");
    ~OperationsTest() override;

    /// Adds MOF to a namespace.
    void readMof(const std::string& mof, const std::string& nameSpace = "root/test");

    /// Registers a line's class, namespace and types: `TST_Fan root/test instance`.
    ScriptedProvider& serve(const std::string& provider, const std::string& what);

    /// Makes the host and its operations. What is delivered in tests of other things is no more
    /// than they need, and passes.
    void start(ResultPolicy results = ResultPolicy::pass);

    Operations& operations() { return *_operations; }
    ModuleHost& host() { return *_host; }
    const RequestContext& request() const { return _request; }
    void stop() { _host.reset(); }

    const CMPIBroker* handle() const { return broker.handle(); }

    Repository repository;
    CapturingLog log;
    Broker broker;

private:
    Registrations _registrations;
    std::map<std::string, std::unique_ptr<ScriptedProvider>> _providers;
    RequestContext _request;
    std::unique_ptr<ModuleHost> _host;
    std::unique_ptr<Operations> _operations;
};

}  // namespace cimhost::test
