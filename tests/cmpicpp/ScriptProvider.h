#pragma once

#include "tests/support/EverythingProvider.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace CmpiCpp::test {

/// What a provider object did and is to do, seen by the test while the module owns the object.
struct Script {
    /// Runs in every operation, before the delivery of the item with the number `actAt` or, when
    /// there are fewer, at the end.
    std::function<void()> act = [] {};
    std::size_t actAt = 0;

    std::vector<CmpiObjectPath> paths;
    std::vector<CmpiInstance> instances;
    std::function<void()> unload = [] {};
    int unloadAnswer = 0;
    std::function<void()> clean = [] {};

    std::vector<std::string> calls;  ///< operations with their arguments
    std::atomic<int> made{0};
    std::atomic<int> cleaned{0};
    std::atomic<int> deleted{0};
    bool terminating = false;
};

/// A provider of all four kinds that follows a script.
class ScriptProvider : public EverythingProvider {
public:
    ScriptProvider(CMPIBroker* broker, Script& script) : _cmpiBroker(broker), _script(script) {
        ++_script.made;
    }
    ~ScriptProvider() override { ++_script.deleted; }

    int unloadOK(const CmpiContext&) override {
        _script.unload();
        return _script.unloadAnswer;
    }
    void cleanup(const CmpiContext&, bool terminating) override {
        ++_script.cleaned;
        _script.terminating = terminating;
        _script.clean();
    }
    CMPIBroker* getBroker() override { return _cmpiBroker; }

protected:
    void called(const Context& context, const Path*, const std::string& call) override {
        _script.calls.push_back(call + " for " + context.principal());
    }
    void deliverPaths(Paths& result) override { _deliverAll(result, _script.paths); }
    void deliverInstances(Instances& result) override { _deliverAll(result, _script.instances); }
    void deliverResult(CmpiMethodResult& result) override {
        _script.act();
        result.deliver(0U);
        result.deliver(CmpiName("Out"), "done");
    }
    void deliverNothing() override { _script.act(); }

private:
    template <typename Item>
    void _deliverAll(auto& result, const std::vector<Item>& items) {
        bool acted = false;
        for (std::size_t number = 0; number < items.size(); ++number) {
            if (number == _script.actAt) {
                acted = true;
                _script.act();
            }
            result.deliver(items[number]);
        }
        if (!acted) _script.act();
    }

    CMPIBroker* _cmpiBroker;
    Script& _script;
};

}  // namespace CmpiCpp::test
