#pragma once

#include "tests/support/EverythingProvider.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <atomic>
#include <functional>
#include <string>

/// A provider of all kinds for a decorator to wrap. Notes each call with all its arguments, then
/// does what the test set, then delivers `deliveries` objects with the keys "0", "1" ...
class InnerProvider : public EverythingProvider {
public:
    InnerProvider(TestBroker& broker, Journal& events) : host(broker), journal(events) {}
    ~InnerProvider() override { journal.note("inner deleted"); }

    TestBroker& host;
    Journal& journal;
    int deliveries = 0;
    int unloadAnswer = 0;
    std::function<void()> onCall = [] {};
    std::function<void(CmpiCpp::CmpiMethodResult&)> onInvoke = [](CmpiCpp::CmpiMethodResult&) {};
    std::atomic<const Context*> context{nullptr};  ///< of the last call
    std::atomic<const void*> path{nullptr};        ///< the address of its path

    CMPIBroker* getBroker() override {
        onCall();
        return host.broker().toRawCMPI();
    }
    int unloadOK(const Context& ctx) override {
        called(ctx, nullptr, "unloadOK");
        return unloadAnswer;
    }
    void cleanup(const Context& ctx, bool terminating) override {
        called(ctx, nullptr, terminating ? "cleanup at the end" : "cleanup");
    }

protected:
    void called(const Context& ctx, const Path* pathOfCall, const std::string& call) override {
        context = &ctx;
        path = pathOfCall;
        journal.note("inner " + call);
        onCall();
    }
    void deliverPaths(Paths& result) override {
        for (int i = 0; i < deliveries; ++i) {
            result.deliver(host.path("PYL_Thing", std::to_string(i)));
        }
    }
    void deliverInstances(Instances& result) override {
        for (int i = 0; i < deliveries; ++i) {
            result.deliver(host.instance(host.path("PYL_Thing", std::to_string(i))));
        }
    }
    void deliverResult(CmpiCpp::CmpiMethodResult& result) override { onInvoke(result); }
};
