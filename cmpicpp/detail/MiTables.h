#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiModule.h"

#include <atomic>
#include <cstddef>

/// The four kinds of MI, and what stands behind one that the object manager got. Not installed.
namespace CmpiCpp {

/// What a kind names: its number, and the types of both sides.
template <std::size_t kind, typename Interface, typename Functions, typename Served>
struct MiKind {
    static constexpr std::size_t number = kind;
    using Mi = Interface;
    using Table = Functions;
    using Provider = Served;
};

/// @{
/// Each kind gives its table without name and cleanup.
struct InstanceKind : MiKind<0, CMPIInstanceMI, CMPIInstanceMIFT, CmpiInstanceProvider> {
    static constexpr const char* name = "instance";
    static Table table() noexcept;
};

struct AssociationKind
    : MiKind<1, CMPIAssociationMI, CMPIAssociationMIFT, CmpiAssociationProvider> {
    static constexpr const char* name = "association";
    static Table table() noexcept;
};

struct MethodKind : MiKind<2, CMPIMethodMI, CMPIMethodMIFT, CmpiMethodProvider> {
    static constexpr const char* name = "method";
    static Table table() noexcept;
};

struct IndicationKind : MiKind<3, CMPIIndicationMI, CMPIIndicationMIFT, CmpiIndicationProvider> {
    static constexpr const char* name = "indication";
    static Table table() noexcept;
};
/// @}

/// One MI: what the object manager sees, and the way from there to the provider object. It stands
/// in the module and is never ended: a host may call an MI that it has cleaned up.
template <typename Kind>
struct ServedMi {
    typename Kind::Mi mi;
    typename Kind::Table table;
    CmpiModule& module;
    std::atomic<typename Kind::Provider*> provider = nullptr;  ///< while the kind has its share
    const CMPIBroker* broker;

    ServedMi(CmpiModule& owner, const CMPIBroker* from) noexcept
        : table(Kind::table()), module(owner), broker(from) {
        table.miName = owner._name;
        table.cleanup = _cleanup;
        mi.hdl = this;
        mi.ft = &table;
    }
    ServedMi(const ServedMi&) = delete;
    ServedMi& operator=(const ServedMi&) = delete;

    static ServedMi& of(const typename Kind::Mi* mi) noexcept {
        return *static_cast<ServedMi*>(const_cast<void*>(static_cast<const void*>(mi->hdl)));
    }

    /// The provider object, made anew or shared again where this kind was cleaned up.
    typename Kind::Provider& object(const CMPIContext* context) {
        auto* const served = provider.load(std::memory_order_acquire);
        return served ? *served : module._rejoin(*this, context);
    }

private:
    static CMPIStatus _cleanup(typename Kind::Mi* mi, const CMPIContext* context,
                               CMPIBoolean terminating) noexcept {
        ServedMi& served = of(mi);
        return served.module._leave(served, context, terminating != 0);
    }
};

/// The exception in flight as the object manager is to see it. For catch clauses only.
CMPIStatus currentExceptionToC(const CMPIBroker* broker) noexcept;

/// The body of every MI function.
template <typename Body>
CMPIStatus enter(const CMPIBroker* broker, Body&& body) noexcept try {
    body();
    return {CMPI_RC_OK, nullptr};
} catch (...) {
    return currentExceptionToC(broker);
}

}  // namespace CmpiCpp
