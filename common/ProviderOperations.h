#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"

#include <string>

// clang-format off

/// The operations of a class of all four kinds of provider, in the order of its table, which is part
/// of the binary interface. Those that go to an interface of an inner provider are
/// forwarded(interface, operation, (arguments), parameters...); own(result, operation,
/// parameters...) are those that every provider answers.
#define PYL_EACH_PROVIDER_OPERATION(forwarded, own) \
    forwarded(Instance, enumInstanceNames, (context, path, result), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, CmpiCpp::CmpiObjectPathResult& result) \
    forwarded(Instance, enumInstances, (context, path, properties, result), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, const char** properties, CmpiCpp::CmpiInstanceResult& result) \
    forwarded(Instance, getInstance, (context, path, properties, result), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, const char** properties, CmpiCpp::CmpiInstanceResult& result) \
    forwarded(Instance, createInstance, (context, path, instance, result), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiInstance& instance, \
              CmpiCpp::CmpiObjectPathResult& result) \
    forwarded(Instance, modifyInstance, (context, path, instance, properties), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiInstance& instance, const char** properties) \
    forwarded(Instance, deleteInstance, (context, path), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path) \
    forwarded(Instance, execQuery, (context, path, query, language, result), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, const std::string& query, const std::string& language, \
              CmpiCpp::CmpiObjectPathResult& result) \
    own(CMPIBroker*, getBroker) \
    own(int, unloadOK, const CmpiCpp::CmpiContext& context) \
    own(void, cleanup, const CmpiCpp::CmpiContext& context, bool terminating) \
    forwarded(Method, invokeMethod, (context, path, methodName, in, result), const CmpiCpp::CmpiContext& context, \
              const CmpiCpp::CmpiObjectPath& path, const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in, \
              CmpiCpp::CmpiMethodResult& result) \
    forwarded(Association, associators, \
              (context, path, assocClass, resultClass, role, resultRole, properties, result), \
              const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path, \
              const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass, \
              const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole, const char** properties, \
              CmpiCpp::CmpiInstanceResult& result) \
    forwarded(Association, associatorNames, (context, path, assocClass, resultClass, role, resultRole, result), \
              const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path, \
              const CmpiCpp::CmpiName& assocClass, const CmpiCpp::CmpiName& resultClass, \
              const CmpiCpp::CmpiName& role, const CmpiCpp::CmpiName& resultRole, \
              CmpiCpp::CmpiObjectPathResult& result) \
    forwarded(Association, references, (context, path, resultClass, role, properties, result), \
              const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path, \
              const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role, const char** properties, \
              CmpiCpp::CmpiInstanceResult& result) \
    forwarded(Association, referenceNames, (context, path, resultClass, role, result), \
              const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path, \
              const CmpiCpp::CmpiName& resultClass, const CmpiCpp::CmpiName& role, \
              CmpiCpp::CmpiObjectPathResult& result) \
    forwarded(Indication, authorizeFilter, (context, filter, className, path, owner), \
              const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter, const std::string& className, \
              const CmpiCpp::CmpiObjectPath& path, const std::string& owner) \
    forwarded(Indication, mustPoll, (context, filter, className, path), const CmpiCpp::CmpiContext& context, \
              const CMPISelectExp* filter, const std::string& className, const CmpiCpp::CmpiObjectPath& path) \
    forwarded(Indication, activateFilter, (context, filter, className, path, last), \
              const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter, const std::string& className, \
              const CmpiCpp::CmpiObjectPath& path, bool last) \
    forwarded(Indication, deactivateFilter, (context, filter, className, path, last), \
              const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter, const std::string& className, \
              const CmpiCpp::CmpiObjectPath& path, bool last) \
    forwarded(Indication, enableIndications, (context), const CmpiCpp::CmpiContext& context) \
    forwarded(Indication, disableIndications, (context), const CmpiCpp::CmpiContext& context)

/// @{
/// How PYL_PROVIDER_OPERATIONS declares one operation.
#define PYL_DECLARE_FORWARDED(interface, operation, arguments, ...) void operation(__VA_ARGS__) override;
#define PYL_DECLARE_OWN(result, operation, ...) result operation(__VA_ARGS__) override;
/// @}

/// Declares that a class of all four kinds of provider overrides every operation. A macro, because
/// each such class has these members itself: a template between it and its interfaces would change
/// its binary interface.
#define PYL_PROVIDER_OPERATIONS \
    PYL_EACH_PROVIDER_OPERATION(PYL_DECLARE_FORWARDED, PYL_DECLARE_OWN) \
    static_assert(true)
