#pragma once

#include "testing/cimhost/testing/HostName.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/InnerProvider.h"

#include <functional>
#include <string>
#include <vector>

/// What the operations of a provider are called with in tests.
struct Request {
    TestBroker& host;
    CmpiCpp::CmpiContext context;
    CmpiCpp::CmpiObjectPath path;
    CmpiCpp::CmpiInstance instance;
    CmpiCpp::CmpiArgs arguments;
    CapturedPaths paths;
    CapturedInstances instances;
    CapturedMethodResult method;

    Request(TestBroker& broker, Journal& journal)
        : host(broker),
          context(broker.context()),
          path(broker.path("PYL_Thing", "a")),
          instance(broker.instance(path)),
          arguments(CmpiCpp::makeCmpiArgs(broker.broker())),
          paths(journal),
          instances(journal),
          method(journal) {}
};

constexpr const char* requestPath = "//server-1/root/ktq:PYL_Thing.Id=\"a\"";

inline const char** requestProperties() {
    static const char* properties[] = {"Id", nullptr};
    return properties;
}

/// A provider of all kinds, whichever it is, through its interfaces.
struct AnyProvider {
    template <typename Provider>
    AnyProvider(Provider& provider)  // NOLINT(google-explicit-constructor): stands for the provider
        : instances(provider), methods(provider), associations(provider), indications(provider) {}

    CmpiCpp::CmpiInstanceProvider& instances;
    CmpiCpp::CmpiMethodProvider& methods;
    CmpiCpp::CmpiAssociationProvider& associations;
    CmpiCpp::CmpiIndicationProvider& indications;
};

/// One operation of every provider, as a row: its lines, and how the inner provider sees it.
struct ProviderOperation {
    enum class Kind { instance, association, method, indication, any };
    enum class Delivers { nothing, paths, instances };

    std::string name;
    Kind kind;
    Delivers delivers;
    std::string entry;      ///< the line before
    std::string inner;      ///< the call that the inner provider notes
    std::string exception;  ///< the start of the line for a status
    std::string returned;   ///< the line after, for operations that deliver nothing
    std::function<void(AnyProvider, Request&)> run;
};

inline void PrintTo(const ProviderOperation& operation, std::ostream* out) {
    *out << operation.name;
}

const std::vector<ProviderOperation>& providerOperations();
