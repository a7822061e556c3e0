#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiModule.h"

/// The four kinds of MI, and what stands behind one that the object manager got. Not installed.
namespace CmpiCpp {

/// Each kind names the types of both sides, and gives its table without name and cleanup.
struct InstanceKind {
    using Mi = CMPIInstanceMI;
    using Table = CMPIInstanceMIFT;
    using Provider = CmpiInstanceProvider;
    static constexpr const char* name = "instance";
    static Table table() noexcept;
};

struct AssociationKind {
    using Mi = CMPIAssociationMI;
    using Table = CMPIAssociationMIFT;
    using Provider = CmpiAssociationProvider;
    static constexpr const char* name = "association";
    static Table table() noexcept;
};

struct MethodKind {
    using Mi = CMPIMethodMI;
    using Table = CMPIMethodMIFT;
    using Provider = CmpiMethodProvider;
    static constexpr const char* name = "method";
    static Table table() noexcept;
};

struct IndicationKind {
    using Mi = CMPIIndicationMI;
    using Table = CMPIIndicationMIFT;
    using Provider = CmpiIndicationProvider;
    static constexpr const char* name = "indication";
    static Table table() noexcept;
};

/// One MI: what the object manager sees, and the way from there to the provider object.
template <typename Kind>
struct ServedMi {
    typename Kind::Mi mi;
    typename Kind::Table table;
    CmpiModule& module;
    typename Kind::Provider& provider;
    const CMPIBroker* broker;

    ServedMi(CmpiModule& owner, typename Kind::Provider& served, const CMPIBroker* from) noexcept
        : table(Kind::table()), module(owner), provider(served), broker(from) {
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

private:
    static CMPIStatus _cleanup(typename Kind::Mi* mi, const CMPIContext* context,
                               CMPIBoolean terminating) noexcept {
        ServedMi& served = of(mi);
        const CMPIStatus status = served.module._leave(served.broker, context, terminating != 0);
        if (status.rc != CMPI_RC_DO_NOT_UNLOAD && status.rc != CMPI_RC_NEVER_UNLOAD) delete &served;
        return status;
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
