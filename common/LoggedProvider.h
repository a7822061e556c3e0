#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <string>

namespace PYL {

/// A provider that logs every request, forwards it unchanged to an inner provider, and logs what
/// came back: how many objects were delivered, or the CmpiStatus that the inner provider threw.
///
/// All lines are information lines of the decorator's own copy of the logger. A CmpiStatus is
/// logged and goes on unchanged; other exceptions pass unlogged. A request of a kind that the inner
/// provider is not fails with CMPI_RC_ERROR_SYSTEM. Adds no state and no locks: as safe from
/// several threads as the inner provider.
class PYL_EXPORT LoggedProvider : public CmpiCpp::CmpiInstanceProvider,
                                  public CmpiCpp::CmpiMethodProvider,
                                  public CmpiCpp::CmpiAssociationProvider,
                                  public CmpiCpp::CmpiIndicationProvider {
public:
    using Factory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&);
    using ContextFactory = CmpiCpp::CmpiProvider* (*)(const CmpiCpp::CmpiBroker&, Logger&,
                                                      const CMPIContext*);

    /// Makes the inner provider with the factory and owns it. What the factory throws goes on.
    LoggedProvider(const CmpiCpp::CmpiBroker& broker, Logger& logger, Factory factory);
    /// The same, with the raw context of the load call for the factory.
    LoggedProvider(const CmpiCpp::CmpiBroker& broker, Logger& logger, ContextFactory factory,
                   const CMPIContext* context);
    ~LoggedProvider() override;

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

private:
    template <typename Call>
    auto _forward(const char* exceptionLine, Call call);
    void _logReturned(int count, const char* operation);

    Logger _log;
    CmpiCpp::CmpiProvider* _p = nullptr;
};

}  // namespace PYL
