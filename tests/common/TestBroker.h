#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cimhost/broker/Broker.h"
#include "cimhost/repository/Repository.h"
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"

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
    using Classes = std::vector<std::pair<char const*, char const*>>;

    explicit TestBroker(Classes const& classes = {{"PYL_Thing", ""},
                                                  {"PYL_SpecialThing", "PYL_Thing"},
                                                  {"PYL_Link", ""},
                                                  {"PYL_SpecialLink", "PYL_Link"}});
    ~TestBroker();
    TestBroker(TestBroker const&) = delete;
    TestBroker& operator=(TestBroker const&) = delete;

    /// Answers an up-call for an instance; while it is empty, CMPI_RC_ERR_NOT_FOUND.
    std::function<CmpiCpp::CmpiInstance(CmpiCpp::CmpiObjectPath const&)> onGetInstance;

    /// Answers an up-call for all instances of a class; while it is empty,
    /// CMPI_RC_ERR_NOT_SUPPORTED.
    std::function<std::vector<CmpiCpp::CmpiInstance>(CmpiCpp::CmpiObjectPath const&)>
        onEnumInstances;

    /// Takes an indication that a provider raises, on whatever thread; while it is empty,
    /// CMPI_RC_ERR_NOT_SUPPORTED.
    std::function<void(cimhost::Instance const&)> onIndication;

    /// Answers an up-call for a method, with the path and the input arguments; while it is empty,
    /// CMPI_RC_ERR_METHOD_NOT_FOUND.
    std::function<void(CmpiCpp::CmpiObjectPath const&, std::string const& method,
                       CmpiCpp::CmpiArgs const&)>
        onInvokeMethod;

    /// The broker that tests and library use: ours, or another that stands before it.
    CmpiCpp::CmpiBroker broker() const { return CmpiCpp::CmpiBroker(_used); }
    CMPIBroker const* real() const noexcept { return &_broker; }
    void use(CMPIBroker const* broker);

    CmpiCpp::CmpiContext context() const { return CmpiCpp::CmpiContext(_context); }

    /// A path with one key, "Id"; in root/ktq and on this host unless others are given.
    CmpiCpp::CmpiObjectPath path(char const* className, std::string const& key) const;
    CmpiCpp::CmpiObjectPath path(char const* nameSpace, char const* className,
                                 std::string const& key, std::string const& host) const;

private:
    struct SilentLog : cimhost::BrokerLog {
        void write(Level, std::string_view, std::string_view) noexcept override {}
    };

    struct Indications : cimhost::IndicationSink {
        explicit Indications(TestBroker const& owner) : broker(owner) {}
        void deliver(cimhost::RequestContext const&, std::string_view,
                     cimhost::Instance const& indication) override;
        TestBroker const& broker;
    };

    static CMPIInstance* upCall(CMPIBroker const*, CMPIContext const*, CMPIObjectPath const*,
                                char const**, CMPIStatus*);
    static CMPIEnumeration* enumCall(CMPIBroker const*, CMPIContext const*, CMPIObjectPath const*,
                                     char const**, CMPIStatus*);
    static CMPIData methodCall(CMPIBroker const*, CMPIContext const*, CMPIObjectPath const*,
                               char const*, CMPIArgs const*, CMPIArgs*, CMPIStatus*);

    cimhost::Repository _repository;
    SilentLog _log;
    Indications _indications{*this};
    std::unique_ptr<cimhost::Broker> _host;
    std::unique_ptr<cimhost::CallScope> _scope;
    CMPIBrokerFT _functions;
    CMPIBroker _broker;
    CMPIBroker const* _used = nullptr;
    CMPIContext* _context = nullptr;
};
