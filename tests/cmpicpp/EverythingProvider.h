#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"

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
class EverythingProvider : public CmpiInstanceProvider,
                           public CmpiMethodProvider,
                           public CmpiAssociationProvider,
                           public CmpiIndicationProvider {
public:
    EverythingProvider(CMPIBroker* broker, Script& script) : _cmpiBroker(broker), _script(script) {
        ++_script.made;
    }
    ~EverythingProvider() override { ++_script.deleted; }

    void enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& path,
                           CmpiObjectPathResult& result) override {
        deliver(result, "enumInstanceNames", context, path);
    }
    void enumInstances(const CmpiContext& context, const CmpiObjectPath& path,
                       const char** properties, CmpiInstanceResult& result) override {
        deliver(result, "enumInstances" + list(properties), context, path);
    }
    void getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                     const char** properties, CmpiInstanceResult& result) override {
        deliver(result, "getInstance" + list(properties), context, path);
    }
    void createInstance(const CmpiContext& context, const CmpiObjectPath& path,
                        const CmpiInstance& instance, CmpiObjectPathResult& result) override {
        deliver(result, "createInstance " + instance.str(), context, path);
    }
    void modifyInstance(const CmpiContext& context, const CmpiObjectPath& path,
                        const CmpiInstance& instance, const char** properties) override {
        note("modifyInstance " + instance.str() + list(properties), context, path);
    }
    void deleteInstance(const CmpiContext& context, const CmpiObjectPath& path) override {
        note("deleteInstance", context, path);
    }
    void execQuery(const CmpiContext& context, const CmpiObjectPath& path, const std::string& query,
                   const std::string& language, CmpiObjectPathResult& result) override {
        deliver(result, "execQuery " + language + ":" + query, context, path);
    }

    void associators(const CmpiContext& context, const CmpiObjectPath& path,
                     const CmpiName& assocClass, const CmpiName& resultClass, const CmpiName& role,
                     const CmpiName& resultRole, const char** properties,
                     CmpiInstanceResult& result) override {
        deliver(
            result,
            "associators" + names({assocClass, resultClass, role, resultRole}) + list(properties),
            context, path);
    }
    void associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                         const CmpiName& assocClass, const CmpiName& resultClass,
                         const CmpiName& role, const CmpiName& resultRole,
                         CmpiObjectPathResult& result) override {
        deliver(result, "associatorNames" + names({assocClass, resultClass, role, resultRole}),
                context, path);
    }
    void references(const CmpiContext& context, const CmpiObjectPath& path,
                    const CmpiName& resultClass, const CmpiName& role, const char** properties,
                    CmpiInstanceResult& result) override {
        deliver(result, "references" + names({resultClass, role}) + list(properties), context,
                path);
    }
    void referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                        const CmpiName& resultClass, const CmpiName& role,
                        CmpiObjectPathResult& result) override {
        deliver(result, "referenceNames" + names({resultClass, role}), context, path);
    }

    void invokeMethod(const CmpiContext& context, const CmpiObjectPath& path,
                      const CmpiName& methodName, const CmpiArgs& in,
                      CmpiMethodResult& result) override {
        note("invokeMethod " + methodName.str() + "/" + std::to_string(in.getArgCount()), context,
             path);
        result.deliver(0U);
        result.deliver(CmpiName("Out"), "done");
    }

    void authorizeFilter(const CmpiContext& context, const CMPISelectExp*,
                         const std::string& className, const CmpiObjectPath& path,
                         const std::string& owner) override {
        note("authorizeFilter " + className + "/" + owner, context, path);
    }
    void mustPoll(const CmpiContext& context, const CMPISelectExp*, const std::string&,
                  const CmpiObjectPath& path) override {
        note("mustPoll", context, path);
    }
    void activateFilter(const CmpiContext& context, const CMPISelectExp*,
                        const std::string& className, const CmpiObjectPath& path,
                        bool last) override {
        note("activateFilter " + className + "/" + std::to_string(last), context, path);
    }
    void deactivateFilter(const CmpiContext& context, const CMPISelectExp*,
                          const std::string& className, const CmpiObjectPath& path,
                          bool last) override {
        note("deactivateFilter " + className + "/" + std::to_string(last), context, path);
    }
    void enableIndications(const CmpiContext& context) override {
        note("enableIndications", context, CmpiObjectPath());
    }
    void disableIndications(const CmpiContext& context) override {
        note("disableIndications", context, CmpiObjectPath());
    }

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

private:
    static std::string names(const std::vector<CmpiName>& all) {
        std::string text;
        for (const CmpiName& name : all) text += " " + (name.empty() ? "-" : name.str());
        return text;
    }
    static std::string list(const char** properties) {
        if (!properties) return " all";
        std::string text = " [";
        for (; *properties != nullptr; ++properties) text += *properties;
        return text + "]";
    }

    void record(const std::string& call, const CmpiContext& context, const CmpiObjectPath& path) {
        _script.calls.push_back(call + " " + path.str() + " for " + context.principal());
    }
    void note(const std::string& call, const CmpiContext& context, const CmpiObjectPath& path) {
        record(call, context, path);
        _script.act();
    }
    template <typename Item>
    void deliverAll(auto& result, const std::vector<Item>& items) {
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
    void deliver(CmpiObjectPathResult& result, const std::string& call, const CmpiContext& context,
                 const CmpiObjectPath& path) {
        record(call, context, path);
        deliverAll(result, _script.paths);
    }
    void deliver(CmpiInstanceResult& result, const std::string& call, const CmpiContext& context,
                 const CmpiObjectPath& path) {
        record(call, context, path);
        deliverAll(result, _script.instances);
    }

    CMPIBroker* _cmpiBroker;
    Script& _script;
};

}  // namespace CmpiCpp::test
