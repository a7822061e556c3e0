#pragma once

#include <sys/time.h>

#include <string>

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

namespace PYL {

/// A provider that measures the wall-clock time of every operation of an inner provider, of its
/// construction and of its destruction: one information line for each, such as
/// "enumInstances completed in 0.04s", under the source name with ":perfmon" behind it.
///
/// Requests go on unchanged, and so does whatever they throw, after its line. getBroker() is not
/// timed. A request of a kind that the inner provider is not fails with CMPI_RC_ERROR_SYSTEM, timed
/// as well. PYLUtil::PerfmonEnabled() is the switch by which a provider decides whether to wrap
/// itself in this. Adds no state and no locks: as safe from several threads as the inner provider.
class PYL_EXPORT PerfmonDecorator : public CmpiCpp::CmpiInstanceProvider,
                                    public CmpiCpp::CmpiMethodProvider,
                                    public CmpiCpp::CmpiAssociationProvider,
                                    public CmpiCpp::CmpiIndicationProvider {
public:
    using Factory = CmpiCpp::CmpiProvider* (*)(CmpiCpp::CmpiBroker const&, Logger&);
    using ContextFactory = CmpiCpp::CmpiProvider* (*)(CmpiCpp::CmpiBroker const&, Logger&,
                                                      CMPIContext const*);

    /// Makes the inner provider with the factory and owns it. What the factory throws goes on.
    PerfmonDecorator(CmpiCpp::CmpiBroker const& broker, Logger& logger, Factory factory);
    /// The same, with the raw context of the load call for the factory.
    PerfmonDecorator(CmpiCpp::CmpiBroker const& broker, Logger& logger, ContextFactory factory,
                     CMPIContext const* context);
    ~PerfmonDecorator() override;

    void enumInstanceNames(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                       char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void createInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiInstance const& instance,
                        CmpiCpp::CmpiObjectPathResult& result) override;
    void modifyInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiInstance const& instance, char const** properties) override;
    void deleteInstance(CmpiCpp::CmpiContext const& ctx,
                        CmpiCpp::CmpiObjectPath const& path) override;
    void execQuery(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                   std::string const& query, std::string const& language,
                   CmpiCpp::CmpiObjectPathResult& result) override;

    CMPIBroker* getBroker() override;
    int unloadOK(CmpiCpp::CmpiContext const& ctx) override;
    void cleanup(CmpiCpp::CmpiContext const& ctx, bool terminating) override;

    void invokeMethod(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                      CmpiCpp::CmpiName const& methodName, CmpiCpp::CmpiArgs const& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                     CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                     CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                         CmpiCpp::CmpiName const& assocClass, CmpiCpp::CmpiName const& resultClass,
                         CmpiCpp::CmpiName const& role, CmpiCpp::CmpiName const& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                    CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                    char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path,
                        CmpiCpp::CmpiName const& resultClass, CmpiCpp::CmpiName const& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

    void authorizeFilter(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                         std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                         std::string const& owner) override;
    void mustPoll(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                  std::string const& className, CmpiCpp::CmpiObjectPath const& path) override;
    void activateFilter(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                        std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                        bool last) override;
    void deactivateFilter(CmpiCpp::CmpiContext const& ctx, CMPISelectExp const* filter,
                          std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                          bool last) override;
    void enableIndications(CmpiCpp::CmpiContext const& ctx) override;
    void disableIndications(CmpiCpp::CmpiContext const& ctx) override;

protected:
    /// Writes the line for one operation, in whole seconds and hundredths, cut and not rounded.
    /// The seconds are those of the clock's two readings: they do not go down where the
    /// microseconds borrow, so that 1.9 s to 3.1 s reads 2.20s. Evaluations of these logs reckon
    /// with it.
    void _logTimeTaken(std::string const& name, timeval* start, timeval* end);

private:
    class Timing;

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    CmpiCpp::CmpiProvider* _p = nullptr;
};

}  // namespace PYL
