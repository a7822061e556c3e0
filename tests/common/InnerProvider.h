#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "tests/common/Journal.h"
#include "tests/common/TestBroker.h"

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
    std::atomic<CmpiContext const*> context{nullptr};  ///< of the last call
    std::atomic<void const*> path{nullptr};            ///< the address of its path

    CMPIBroker* getBroker() override {
        onCall();
        return host.broker().toRawCMPI();
    }
    int unloadOK(CmpiContext const& ctx) override {
        _called(ctx, nullptr, "unloadOK");
        return unloadAnswer;
    }
    void cleanup(CmpiContext const& ctx, bool terminating) override {
        _called(ctx, nullptr, terminating ? "cleanup at the end" : "cleanup");
    }

    void enumInstanceNames(CmpiContext const& ctx, CmpiObjectPath const& classPath,
                           CmpiObjectPathResult& result) override {
        _called(ctx, &classPath, "enumInstanceNames " + classPath.str());
        _deliverPaths(result);
    }
    void enumInstances(CmpiContext const& ctx, CmpiObjectPath const& classPath,
                       char const** properties, CmpiInstanceResult& result) override {
        _called(ctx, &classPath, "enumInstances " + classPath.str() + " " + list(properties));
        _deliverInstances(result);
    }
    void getInstance(CmpiContext const& ctx, CmpiObjectPath const& instancePath,
                     char const** properties, CmpiInstanceResult& result) override {
        _called(ctx, &instancePath, "getInstance " + instancePath.str() + " " + list(properties));
        _deliverInstances(result);
    }
    void createInstance(CmpiContext const& ctx, CmpiObjectPath const& instancePath,
                        CmpiInstance const& instance, CmpiObjectPathResult& result) override {
        _called(ctx, &instancePath, "createInstance " + instancePath.str() + " " + instance.str());
        _deliverPaths(result);
    }
    void modifyInstance(CmpiContext const& ctx, CmpiObjectPath const& instancePath,
                        CmpiInstance const& instance, char const** properties) override {
        _called(
            ctx, &instancePath,
            "modifyInstance " + instancePath.str() + " " + instance.str() + " " + list(properties));
    }
    void deleteInstance(CmpiContext const& ctx, CmpiObjectPath const& instancePath) override {
        _called(ctx, &instancePath, "deleteInstance " + instancePath.str());
    }
    void execQuery(CmpiContext const& ctx, CmpiObjectPath const& classPath,
                   std::string const& query, std::string const& language,
                   CmpiObjectPathResult& result) override {
        _called(ctx, &classPath, "execQuery " + classPath.str() + " " + query + " " + language);
        _deliverPaths(result);
    }

    void invokeMethod(CmpiContext const& ctx, CmpiObjectPath const& instancePath,
                      CmpiName const& methodName, CmpiArgs const& in,
                      CmpiMethodResult& result) override {
        _called(ctx, &instancePath,
                "invokeMethod " + instancePath.str() + " " + methodName.str() + " " +
                    std::to_string(in.getArgCount()));
        onInvoke(result);
    }

    void associators(CmpiContext const& ctx, CmpiObjectPath const& source,
                     CmpiName const& assocClass, CmpiName const& resultClass, CmpiName const& role,
                     CmpiName const& resultRole, char const** properties,
                     CmpiInstanceResult& result) override {
        _called(ctx, &source,
                "associators " + source.str() + " " + names(assocClass, resultClass) + " " +
                    names(role, resultRole) + " " + list(properties));
        _deliverInstances(result);
    }
    void associatorNames(CmpiContext const& ctx, CmpiObjectPath const& source,
                         CmpiName const& assocClass, CmpiName const& resultClass,
                         CmpiName const& role, CmpiName const& resultRole,
                         CmpiObjectPathResult& result) override {
        _called(ctx, &source,
                "associatorNames " + source.str() + " " + names(assocClass, resultClass) + " " +
                    names(role, resultRole));
        _deliverPaths(result);
    }
    void references(CmpiContext const& ctx, CmpiObjectPath const& source,
                    CmpiName const& resultClass, CmpiName const& role, char const** properties,
                    CmpiInstanceResult& result) override {
        _called(
            ctx, &source,
            "references " + source.str() + " " + names(resultClass, role) + " " + list(properties));
        _deliverInstances(result);
    }
    void referenceNames(CmpiContext const& ctx, CmpiObjectPath const& source,
                        CmpiName const& resultClass, CmpiName const& role,
                        CmpiObjectPathResult& result) override {
        _called(ctx, &source, "referenceNames " + source.str() + " " + names(resultClass, role));
        _deliverPaths(result);
    }

    void authorizeFilter(CmpiContext const& ctx, CMPISelectExp const* filter,
                         std::string const& className, CmpiObjectPath const& classPath,
                         std::string const& owner) override {
        _called(ctx, &classPath, "authorizeFilter " + filterText(filter, className) + " " + owner);
    }
    void mustPoll(CmpiContext const& ctx, CMPISelectExp const* filter, std::string const& className,
                  CmpiObjectPath const& classPath) override {
        _called(ctx, &classPath, "mustPoll " + filterText(filter, className));
    }
    void activateFilter(CmpiContext const& ctx, CMPISelectExp const* filter,
                        std::string const& className, CmpiObjectPath const& classPath,
                        bool last) override {
        _called(ctx, &classPath,
                "activateFilter " + filterText(filter, className) + (last ? " last" : ""));
    }
    void deactivateFilter(CmpiContext const& ctx, CMPISelectExp const* filter,
                          std::string const& className, CmpiObjectPath const& classPath,
                          bool last) override {
        _called(ctx, &classPath,
                "deactivateFilter " + filterText(filter, className) + (last ? " last" : ""));
    }
    void enableIndications(CmpiContext const& ctx) override {
        _called(ctx, nullptr, "enableIndications");
    }
    void disableIndications(CmpiContext const& ctx) override {
        _called(ctx, nullptr, "disableIndications");
    }

    /// The select expression that the tests pass; only its address counts.
    static CMPISelectExp const* filter() {
        static CMPISelectExp const expression{};
        return &expression;
    }

private:
    static std::string list(char const** properties) {
        if (!properties) return "no list";
        std::string text = "list";
        for (; *properties; ++properties) text += std::string(" ") + *properties;
        return text;
    }
    static std::string names(CmpiName const& first, CmpiName const& second) {
        return first.str() + " " + second.str();
    }
    static std::string filterText(CMPISelectExp const* given, std::string const& className) {
        return className + (given == filter() ? "" : " with another filter");
    }

    void _called(CmpiContext const& ctx, void const* pathAddress, std::string const& call) {
        context = &ctx;
        path = pathAddress;
        journal.note("inner " + call);
        onCall();
    }
    void _deliverPaths(CmpiObjectPathResult& result) {
        for (int i = 0; i < deliveries; ++i)
            result.deliver(host.path("PYL_Thing", std::to_string(i)));
    }
    void _deliverInstances(CmpiInstanceResult& result) {
        for (int i = 0; i < deliveries; ++i)
            result.deliver(CmpiCpp::makeCmpiInstance(host.broker(),
                                                     host.path("PYL_Thing", std::to_string(i))));
    }
};
