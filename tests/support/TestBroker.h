#pragma once

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiValue.h"
#include "tests/support/BrokerFixture.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

/// A broker in process with a small class tree, a call scope and a context, recorded in PYLUtil:
/// what a provider finds when an object manager calls it. One lives at a time.
///
///     PYL_Thing                 PYL_Link
///      +- PYL_SpecialThing       +- PYL_SpecialLink
///
/// in the namespaces root/ktq, root/other and interop, unless a test names other classes.
class TestBroker {
public:
    /// Classes with their superclasses, which come first.
    using Classes = std::vector<std::pair<const char*, const char*>>;

    explicit TestBroker(const Classes& classes = {{"PYL_Thing", ""},
                                                  {"PYL_SpecialThing", "PYL_Thing"},
                                                  {"PYL_Link", ""},
                                                  {"PYL_SpecialLink", "PYL_Link"}});
    ~TestBroker();
    TestBroker(const TestBroker&) = delete;
    TestBroker& operator=(const TestBroker&) = delete;

    /// Answers an up-call for an instance; while it is empty, CMPI_RC_ERR_NOT_FOUND.
    std::function<CmpiCpp::CmpiInstance(const CmpiCpp::CmpiObjectPath&)> onGetInstance;

    /// Answers an up-call for all instances of a class; while it is empty,
    /// CMPI_RC_ERR_NOT_SUPPORTED.
    std::function<std::vector<CmpiCpp::CmpiInstance>(const CmpiCpp::CmpiObjectPath&)>
        onEnumInstances;

    /// Takes an indication that a provider raises, on whatever thread; while it is empty,
    /// CMPI_RC_ERR_NOT_SUPPORTED.
    std::function<void(const cimhost::Instance&)> onIndication;

    /// Answers an up-call for a method, with the path and the input arguments; while it is empty,
    /// CMPI_RC_ERR_METHOD_NOT_FOUND.
    std::function<void(const CmpiCpp::CmpiObjectPath&, const std::string& method,
                       const CmpiCpp::CmpiArgs&)>
        onInvokeMethod;

    /// The broker that tests and library use: ours, or another that stands before it.
    CmpiCpp::CmpiBroker broker() const { return CmpiCpp::CmpiBroker(_used); }
    const CMPIBroker* real() const noexcept { return &_broker; }
    void use(const CMPIBroker* broker);

    CmpiCpp::CmpiContext context() const { return CmpiCpp::CmpiContext(_context); }

    /// A path with one key, "Id"; in root/ktq and on this host unless others are given.
    CmpiCpp::CmpiObjectPath path(const char* className, const std::string& key) const;
    CmpiCpp::CmpiObjectPath path(const char* nameSpace, const char* className,
                                 const std::string& key, const std::string& host) const;

    /// Its keys as they stand; in root/ktq unless another is given, and on this host. Of two such
    /// paths the texts are the same, though hosts have the keys in orders of their own.
    using Keys = std::initializer_list<std::pair<const char*, CmpiCpp::CmpiValue>>;
    CmpiCpp::CmpiObjectPath path(const char* className, Keys keys,
                                 const char* nameSpace = "root/ktq") const;

    /// A new instance whose one key, "Id", is a property too: some hosts leave that to its maker.
    CmpiCpp::CmpiInstance instance(const CmpiCpp::CmpiObjectPath& path) const;

private:
    struct Indications : cimhost::IndicationSink {
        explicit Indications(const TestBroker& owner) : broker(owner) {}
        void deliver(const cimhost::RequestContext&, std::string_view,
                     const cimhost::Instance& indication) override;
        const TestBroker& broker;
    };

    static CMPIInstance* _upCall(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                 const char**, CMPIStatus*);
    static CMPIEnumeration* _enumCall(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                      const char**, CMPIStatus*);
    static CMPIData _methodCall(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                const char*, const CMPIArgs*, CMPIArgs*, CMPIStatus*);

    Indications _indications{*this};
    cimhost::BrokerCall _call;
    CMPIBrokerFT _functions;
    CMPIBroker _broker;
    const CMPIBroker* _used = nullptr;
    CMPIContext* _context = nullptr;
};
