#pragma once

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

/// A provider that logs every request, forwards it unchanged to an inner provider, and logs what came
/// back: how many objects were delivered, or the CmpiStatus that the inner provider threw.
///
/// All lines are information lines of the decorator's own copy of the logger. A CmpiStatus is logged and
/// goes on unchanged; other exceptions pass unlogged. A request of a kind that the inner provider is not
/// fails with CMPI_RC_ERROR_SYSTEM. Adds no state and no locks: as safe from several threads as the
/// inner provider.
class PYL_EXPORT LoggedProvider : public CmpiCpp::CmpiInstanceProvider,
                                  public CmpiCpp::CmpiMethodProvider,
                                  public CmpiCpp::CmpiAssociationProvider,
                                  public CmpiCpp::CmpiIndicationProvider {
public:
    using Factory = CmpiCpp::CmpiProvider* (*)(CmpiCpp::CmpiBroker const&, Logger&);
    using ContextFactory = CmpiCpp::CmpiProvider* (*)(CmpiCpp::CmpiBroker const&, Logger&,
                                                      CMPIContext const*);

    /// Makes the inner provider with the factory and owns it. What the factory throws goes on.
    LoggedProvider(CmpiCpp::CmpiBroker const& broker, Logger& logger, Factory factory);
    /// The same, with the raw context of the load call for the factory.
    LoggedProvider(CmpiCpp::CmpiBroker const& broker, Logger& logger, ContextFactory factory,
                   CMPIContext const* context);
    ~LoggedProvider() override;

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
    void deleteInstance(CmpiCpp::CmpiContext const& ctx, CmpiCpp::CmpiObjectPath const& path) override;
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

private:
    template <typename Call>
    auto _forward(char const* exceptionLine, Call call);
    void _logReturned(int count, char const* operation);

    Logger _log;
    CmpiCpp::CmpiProvider* _p = nullptr;
};

}  // namespace PYL
