#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiProvider.h"
#include "pylcommon_export.h"

#include <array>
#include <cstddef>
#include <mutex>

namespace CmpiCpp {

template <typename Kind>
struct ServedMi;

/// One provider of a module as the object manager loads it: the CMPI entry points and MI tables
/// over one C++ provider object.
///
/// The object is made by the first entry point that is called and shared by the MIs of all kinds.
/// An entry point answers CMPI_RC_ERR_NOT_SUPPORTED for a kind that the object is not, and what the
/// factory threw when there is no object; the next call tries again.
///
/// There is one MI of a kind, however often its entry point is called: some object managers make
/// one for each class and clean one up for all.
///
/// The clean-up of the first kind asks unloadOK, unless the object manager is ending, and the
/// answer is that of all kinds until one is cleaned up again: 1 keeps them for now, 2 for ever.
/// Otherwise each kind gives up its share of the object, and the clean-up of the last one calls the
/// object's cleanup and deletes it.
///
/// An MI stays valid as long as the module is loaded, since some object managers go on with one
/// when another kind has refused, or when its clean-up has failed. Its next call takes a share of
/// the object again, which is made anew when it has ended; a clean-up may be repeated.
///
/// Safe from several threads; the factory and cleanup run under the module's lock and must not call
/// its entry points. Constant-initialised static data: see PYL_CMPI_PROVIDER.
class PYL_EXPORT CmpiModule {
public:
    /// Makes the provider; the module owns it. Throws to refuse loading.
    using Factory = CmpiProvider* (*)(const CmpiBroker& broker, const CMPIContext* context);

    /// `name` is the provider's name in words about it, and must outlive the module.
    constexpr CmpiModule(const char* name, Factory factory) noexcept
        : _name(name), _factory(factory) {}
    CmpiModule(const CmpiModule&) = delete;
    CmpiModule& operator=(const CmpiModule&) = delete;

    /// @{
    /// The entry points, as CMPI declares them: the MI, or nullptr with the reason in the status.
    CMPIInstanceMI* createInstanceMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*) noexcept;
    CMPIAssociationMI* createAssociationMI(const CMPIBroker*, const CMPIContext*,
                                           CMPIStatus*) noexcept;
    CMPIMethodMI* createMethodMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*) noexcept;
    CMPIIndicationMI* createIndicationMI(const CMPIBroker*, const CMPIContext*,
                                         CMPIStatus*) noexcept;
    /// @}

private:
    template <typename Kind>
    friend struct ServedMi;

    /// Where the MI of a kind stands, once it was asked for.
    struct Place {
        alignas(std::max_align_t) std::array<std::byte, 40 * sizeof(void*)> bytes{};
        bool isTaken = false;
    };

    template <typename Kind>
    typename Kind::Mi* _create(const CMPIBroker*, const CMPIContext*, CMPIStatus*) noexcept;
    template <typename Kind>
    ServedMi<Kind>& _served(const CMPIBroker*);
    template <typename Kind>
    typename Kind::Provider& _join(ServedMi<Kind>&, const CMPIContext*);
    template <typename Kind>
    typename Kind::Provider& _rejoin(ServedMi<Kind>&, const CMPIContext*);
    template <typename Kind>
    CMPIStatus _leave(ServedMi<Kind>&, const CMPIContext*, bool terminating) noexcept;

    int _askToLeave(unsigned kind, const CMPIContext*);
    void _dispose(const CMPIContext*, bool terminating);

    const char* _name;
    Factory _factory;
    std::mutex _mutex;
    CmpiProvider* _provider = nullptr;  // owned; as its share count, guarded by _mutex
    std::array<Place, 4> _places{};
    // The unload in progress: the kinds that were asked to leave, as bits, and what they answer.
    unsigned _askedKinds = 0;
    int _unloadAnswer = 0;
};

}  // namespace CmpiCpp

/// The entry point of one kind, such as PYL_FanProvider_Create_InstanceMI. PYL_CMPI_PROVIDER has
/// all four.
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
