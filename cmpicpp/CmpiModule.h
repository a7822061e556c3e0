#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiProvider.h"
#include "pylcommon_export.h"

#include <mutex>

namespace CmpiCpp {

/// One provider of a module as the object manager loads it: the CMPI entry points and MI tables
/// over one C++ provider object.
///
/// The object is made by the first entry point that is called and shared by the MIs of all kinds.
/// An entry point answers CMPI_RC_ERR_NOT_SUPPORTED for a kind that the object is not, and what the
/// factory threw when there is no object; the next call tries again.
///
/// The clean-up of each MI asks unloadOK, unless the object manager is ending: 1 keeps this MI for
/// now, 2 for ever. Otherwise the MI gives up its share of the object, and the clean-up of the last
/// one calls the object's cleanup and deletes it.
///
/// Safe from several threads; the factory and cleanup run under the module's lock and must not call
/// its entry points. Constant-initialised static data: see PYL_CMPI_PROVIDER.
class PYL_EXPORT CmpiModule {
public:
    /// Makes the provider; the module owns it. Throws to refuse loading.
    using Factory = CmpiProvider* (*)(const CmpiBroker& broker, const CMPIContext* context);

    constexpr CmpiModule(const char* name, Factory factory) noexcept
        : _name(name), _factory(factory) {}
    CmpiModule(const CmpiModule&) = delete;
    CmpiModule& operator=(const CmpiModule&) = delete;

    CMPIInstanceMI* createInstanceMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*) noexcept;
    CMPIAssociationMI* createAssociationMI(const CMPIBroker*, const CMPIContext*,
                                           CMPIStatus*) noexcept;
    CMPIMethodMI* createMethodMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*) noexcept;
    CMPIIndicationMI* createIndicationMI(const CMPIBroker*, const CMPIContext*,
                                         CMPIStatus*) noexcept;

private:
    template <typename Kind>
    friend struct ServedMi;

    template <typename Kind>
    typename Kind::Mi* _create(const CMPIBroker*, const CMPIContext*, CMPIStatus*) noexcept;
    template <typename Kind>
    typename Kind::Mi* _createLocked(const CMPIBroker*, const CMPIContext*);

    CMPIStatus _leave(const CMPIBroker*, const CMPIContext*, bool terminating) noexcept;
    void _dispose(const CMPIContext*, bool terminating);

    const char* _name;
    Factory _factory;
    std::mutex _mutex;
    CmpiProvider* _provider = nullptr;  // owned; as its share count, guarded by _mutex
};

}  // namespace CmpiCpp

#define PYL_CMPI_ENTRY_POINT(provider, kind)                                                       \
    extern "C" __attribute__((visibility("default")))                                              \
    CMPI##kind##MI* provider##_Create_##kind##MI(const CMPIBroker* broker,                         \
                                                 const CMPIContext* context, CMPIStatus* status) { \
        return provider##_cmpiModule.create##kind##MI(broker, context, status);                    \
    }

/// The entry points of a module for one provider, as the registration names it:
///
///     PYL_CMPI_PROVIDER(PYL_FanProvider, makeFanProvider)
///
/// at namespace scope of one source, with `makeFanProvider` a CmpiCpp::CmpiModule::Factory.
#define PYL_CMPI_PROVIDER(provider, factory)                                 \
    namespace {                                                              \
    constinit CmpiCpp::CmpiModule provider##_cmpiModule(#provider, factory); \
    }                                                                        \
    PYL_CMPI_ENTRY_POINT(provider, Instance)                                 \
    PYL_CMPI_ENTRY_POINT(provider, Association)                              \
    PYL_CMPI_ENTRY_POINT(provider, Method)                                   \
    PYL_CMPI_ENTRY_POINT(provider, Indication)
