#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <atomic>
#include <functional>
#include <string>

/// A provider of all kinds for a decorator to wrap. Notes each call with all its arguments, then
/// does what the test set, then delivers `deliveries` objects with the keys "0", "1" ...
class InnerProvider : public CmpiCpp::CmpiInstanceProvider,
                      public CmpiCpp::CmpiMethodProvider,
                      public CmpiCpp::CmpiAssociationProvider,
                      public CmpiCpp::CmpiIndicationProvider {
public:
    using CmpiArgs = CmpiCpp::CmpiArgs;
    using CmpiContext = CmpiCpp::CmpiContext;
    using CmpiInstance = CmpiCpp::CmpiInstance;
    using CmpiInstanceResult = CmpiCpp::CmpiInstanceResult;
    using CmpiMethodResult = CmpiCpp::CmpiMethodResult;
    using CmpiName = CmpiCpp::CmpiName;
    using CmpiObjectPath = CmpiCpp::CmpiObjectPath;
    using CmpiObjectPathResult = CmpiCpp::CmpiObjectPathResult;

    InnerProvider(TestBroker& broker, Journal& events) : host(broker), journal(events) {}
    ~InnerProvider() override { journal.note("inner deleted"); }

    TestBroker& host;
    Journal& journal;
    int deliveries = 0;
    int unloadAnswer = 0;
    std::function<void()> onCall = [] {};
    std::function<void(CmpiMethodResult&)> onInvoke = [](CmpiMethodResult&) {};
    std::atomic<const CmpiContext*> context{nullptr};  ///< of the last call
    std::atomic<const void*> path{nullptr};            ///< the address of its path

    CMPIBroker* getBroker() override {
        onCall();
        return host.broker().toRawCMPI();
    }
    int unloadOK(const CmpiContext& ctx) override {
        _called(ctx, nullptr, "unloadOK");
        return unloadAnswer;
    }
    void cleanup(const CmpiContext& ctx, bool terminating) override {
        _called(ctx, nullptr, terminating ? "cleanup at the end" : "cleanup");
    }

    void enumInstanceNames(const CmpiContext& ctx, const CmpiObjectPath& classPath,
                           CmpiObjectPathResult& result) override {
        _called(ctx, &classPath, "enumInstanceNames " + classPath.str());
        _deliverPaths(result);
    }
    void enumInstances(const CmpiContext& ctx, const CmpiObjectPath& classPath,
                       const char** properties, CmpiInstanceResult& result) override {
        _called(ctx, &classPath, "enumInstances " + classPath.str() + " " + list(properties));
        _deliverInstances(result);
    }
    void getInstance(const CmpiContext& ctx, const CmpiObjectPath& instancePath,
                     const char** properties, CmpiInstanceResult& result) override {
        _called(ctx, &instancePath, "getInstance " + instancePath.str() + " " + list(properties));
        _deliverInstances(result);
    }
    void createInstance(const CmpiContext& ctx, const CmpiObjectPath& instancePath,
                        const CmpiInstance& instance, CmpiObjectPathResult& result) override {
        _called(ctx, &instancePath, "createInstance " + instancePath.str() + " " + instance.str());
        _deliverPaths(result);
    }
    void modifyInstance(const CmpiContext& ctx, const CmpiObjectPath& instancePath,
                        const CmpiInstance& instance, const char** properties) override {
        _called(
            ctx, &instancePath,
            "modifyInstance " + instancePath.str() + " " + instance.str() + " " + list(properties));
    }
    void deleteInstance(const CmpiContext& ctx, const CmpiObjectPath& instancePath) override {
        _called(ctx, &instancePath, "deleteInstance " + instancePath.str());
    }
    void execQuery(const CmpiContext& ctx, const CmpiObjectPath& classPath,
                   const std::string& query, const std::string& language,
                   CmpiObjectPathResult& result) override {
        _called(ctx, &classPath, "execQuery " + classPath.str() + " " + query + " " + language);
        _deliverPaths(result);
    }

    void invokeMethod(const CmpiContext& ctx, const CmpiObjectPath& instancePath,
                      const CmpiName& methodName, const CmpiArgs& in,
                      CmpiMethodResult& result) override {
        _called(ctx, &instancePath,
                "invokeMethod " + instancePath.str() + " " + methodName.str() + " " +
                    std::to_string(in.getArgCount()));
        onInvoke(result);
    }

    void associators(const CmpiContext& ctx, const CmpiObjectPath& source,
                     const CmpiName& assocClass, const CmpiName& resultClass, const CmpiName& role,
                     const CmpiName& resultRole, const char** properties,
                     CmpiInstanceResult& result) override {
        _called(ctx, &source,
                "associators " + source.str() + " " + names(assocClass, resultClass) + " " +
                    names(role, resultRole) + " " + list(properties));
        _deliverInstances(result);
    }
    void associatorNames(const CmpiContext& ctx, const CmpiObjectPath& source,
                         const CmpiName& assocClass, const CmpiName& resultClass,
                         const CmpiName& role, const CmpiName& resultRole,
                         CmpiObjectPathResult& result) override {
        _called(ctx, &source,
                "associatorNames " + source.str() + " " + names(assocClass, resultClass) + " " +
                    names(role, resultRole));
        _deliverPaths(result);
    }
    void references(const CmpiContext& ctx, const CmpiObjectPath& source,
                    const CmpiName& resultClass, const CmpiName& role, const char** properties,
                    CmpiInstanceResult& result) override {
        _called(
            ctx, &source,
            "references " + source.str() + " " + names(resultClass, role) + " " + list(properties));
        _deliverInstances(result);
    }
    void referenceNames(const CmpiContext& ctx, const CmpiObjectPath& source,
                        const CmpiName& resultClass, const CmpiName& role,
                        CmpiObjectPathResult& result) override {
        _called(ctx, &source, "referenceNames " + source.str() + " " + names(resultClass, role));
        _deliverPaths(result);
    }

    void authorizeFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                         const std::string& className, const CmpiObjectPath& classPath,
                         const std::string& owner) override {
        _called(ctx, &classPath, "authorizeFilter " + filterText(filter, className) + " " + owner);
    }
    void mustPoll(const CmpiContext& ctx, const CMPISelectExp* filter, const std::string& className,
                  const CmpiObjectPath& classPath) override {
        _called(ctx, &classPath, "mustPoll " + filterText(filter, className));
    }
    void activateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                        const std::string& className, const CmpiObjectPath& classPath,
                        bool last) override {
        _called(ctx, &classPath,
                "activateFilter " + filterText(filter, className) + (last ? " last" : ""));
    }
    void deactivateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                          const std::string& className, const CmpiObjectPath& classPath,
                          bool last) override {
        _called(ctx, &classPath,
                "deactivateFilter " + filterText(filter, className) + (last ? " last" : ""));
    }
    void enableIndications(const CmpiContext& ctx) override {
        _called(ctx, nullptr, "enableIndications");
    }
    void disableIndications(const CmpiContext& ctx) override {
        _called(ctx, nullptr, "disableIndications");
    }

    /// The select expression that the tests pass; only its address counts.
    static const CMPISelectExp* filter() {
        static const CMPISelectExp expression{};
        return &expression;
    }

private:
    static std::string list(const char** properties) {
        if (!properties) return "no list";
        std::string text = "list";
        for (; *properties; ++properties) text += std::string(" ") + *properties;
        return text;
    }
    static std::string names(const CmpiName& first, const CmpiName& second) {
        return first.str() + " " + second.str();
    }
    static std::string filterText(const CMPISelectExp* given, const std::string& className) {
        return className + (given == filter() ? "" : " with another filter");
    }

    void _called(const CmpiContext& ctx, const void* pathAddress, const std::string& call) {
        context = &ctx;
        path = pathAddress;
        journal.note("inner " + call);
        onCall();
    }
    void _deliverPaths(CmpiObjectPathResult& result) {
        for (int i = 0; i < deliveries; ++i) {
            result.deliver(host.path("PYL_Thing", std::to_string(i)));
        }
    }
    void _deliverInstances(CmpiInstanceResult& result) {
        for (int i = 0; i < deliveries; ++i) {
            result.deliver(CmpiCpp::makeCmpiInstance(host.broker(),
                                                     host.path("PYL_Thing", std::to_string(i))));
        }
    }
};
