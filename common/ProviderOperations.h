#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"

#include <string>

/// Declares that a class of all four kinds of provider overrides every operation, in the order of
/// its table, which is part of the binary interface. A macro, because each such class has these
/// members itself: a template between it and its interfaces would change that interface.
#define PYL_PROVIDER_OPERATIONS                                                                    \
    void enumInstanceNames(const CmpiCpp::CmpiContext& context,                                    \
                           const CmpiCpp::CmpiObjectPath& path,                                    \
                           CmpiCpp::CmpiObjectPathResult& result) override;                        \
    void enumInstances(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,   \
                       const char** properties, CmpiCpp::CmpiInstanceResult& result) override;     \
    void getInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,     \
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;       \
    void createInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,  \
                        const CmpiCpp::CmpiInstance& instance,                                     \
                        CmpiCpp::CmpiObjectPathResult& result) override;                           \
    void modifyInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,  \
                        const CmpiCpp::CmpiInstance& instance, const char** properties) override;  \
    void deleteInstance(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path)  \
        override;                                                                                  \
    void execQuery(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,       \
                   const std::string& query, const std::string& language,                          \
                   CmpiCpp::CmpiObjectPathResult& result) override;                                \
    CMPIBroker* getBroker() override;                                                              \
    int unloadOK(const CmpiCpp::CmpiContext& context) override;                                    \
    void cleanup(const CmpiCpp::CmpiContext& context, bool terminating) override;                  \
    void invokeMethod(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,    \
                      const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in,            \
                      CmpiCpp::CmpiMethodResult& result) override;                                 \
    void associators(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,     \
                     const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass,    \
                     const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole,           \
                     const char** properties, CmpiCpp::CmpiInstanceResult& result) override;       \
    void associatorNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path, \
                         const CmpiCpp::CmpiName& assocClass,                                      \
                         const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,      \
                         const CmpiCpp::CmpiName& resultRole,                                      \
                         CmpiCpp::CmpiObjectPathResult& result) override;                          \
    void references(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,      \
                    const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,           \
                    const char** properties, CmpiCpp::CmpiInstanceResult& result) override;        \
    void referenceNames(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,  \
                        const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role,       \
                        CmpiCpp::CmpiObjectPathResult& result) override;                           \
    void authorizeFilter(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,         \
                         const std::string& className, const CmpiCpp::CmpiObjectPath& path,        \
                         const std::string& owner) override;                                       \
    void mustPoll(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,                \
                  const std::string& className, const CmpiCpp::CmpiObjectPath& path) override;     \
    void activateFilter(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,          \
                        const std::string& className, const CmpiCpp::CmpiObjectPath& path,         \
                        bool last) override;                                                       \
    void deactivateFilter(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,        \
                          const std::string& className, const CmpiCpp::CmpiObjectPath& path,       \
                          bool last) override;                                                     \
    void enableIndications(const CmpiCpp::CmpiContext& context) override;                          \
    void disableIndications(const CmpiCpp::CmpiContext& context) override
