#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <sys/time.h>

#include <string>

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
    using Factory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&);
    using ContextFactory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&,
                                                      const CMPIContext*);

    /// Makes the inner provider with the factory and owns it. What the factory throws goes on.
    PerfmonDecorator(const CmpiCpp::CmpiBroker& broker, Logger& logger, Factory factory);
    /// The same, with the raw context of the load call for the factory.
    PerfmonDecorator(const CmpiCpp::CmpiBroker& broker, Logger& logger, ContextFactory factory,
                     const CMPIContext* context);
    ~PerfmonDecorator() override;

    void enumInstanceNames(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                       const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void createInstance(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                        const CmpiCpp::CmpiInstance& instance,
                        CmpiCpp::CmpiObjectPathResult& result) override;
    void modifyInstance(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                        const CmpiCpp::CmpiInstance& instance, const char** properties) override;
    void deleteInstance(const CmpiCpp::CmpiContext& ctx,
                        const CmpiCpp::CmpiObjectPath& path) override;
    void execQuery(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                   const std::string& query, const std::string& language,
                   CmpiCpp::CmpiObjectPathResult& result) override;

    CMPIBroker* getBroker() override;
    int unloadOK(const CmpiCpp::CmpiContext& ctx) override;
    void cleanup(const CmpiCpp::CmpiContext& ctx, bool terminating) override;

    void invokeMethod(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& result) override;

    void associators(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                     const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,
                     const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void associatorNames(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                         const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,
                         const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,
                         CmpiCpp::CmpiObjectPathResult& result) override;
    void references(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                    const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                    const char** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void referenceNames(const CmpiCpp::CmpiContext& ctx, const CmpiCpp::CmpiObjectPath& path,
                        const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,
                        CmpiCpp::CmpiObjectPathResult& result) override;

    void authorizeFilter(const CmpiCpp::CmpiContext& ctx, const CMPISelectExp* filter,
                         const std::string& className, const CmpiCpp::CmpiObjectPath& path,
                         const std::string& owner) override;
    void mustPoll(const CmpiCpp::CmpiContext& ctx, const CMPISelectExp* filter,
                  const std::string& className, const CmpiCpp::CmpiObjectPath& path) override;
    void activateFilter(const CmpiCpp::CmpiContext& ctx, const CMPISelectExp* filter,
                        const std::string& className, const CmpiCpp::CmpiObjectPath& path,
                        bool last) override;
    void deactivateFilter(const CmpiCpp::CmpiContext& ctx, const CMPISelectExp* filter,
                          const std::string& className, const CmpiCpp::CmpiObjectPath& path,
                          bool last) override;
    void enableIndications(const CmpiCpp::CmpiContext& ctx) override;
    void disableIndications(const CmpiCpp::CmpiContext& ctx) override;

protected:
    /// Writes the line for one operation, in whole seconds and hundredths, cut and not rounded.
    /// The seconds are those of the clock's two readings: they do not go down where the
    /// microseconds borrow, so that 1.9 s to 3.1 s reads 2.20s. Evaluations of these logs reckon
    /// with it.
    void _logTimeTaken(const std::string& name, timeval* start, timeval* end);

private:
    class Timing;

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    CmpiCpp::CmpiProvider* _p = nullptr;
};

}  // namespace PYL
