#include "cmpicpp/CmpiModule.h"

#include "cmpicpp/CmpiStatus.h"
#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/MiTables.h"

#include <exception>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

namespace CmpiCpp {

// The object manager unloads a module when it likes: no destructor may be left to run then.
static_assert(std::is_trivially_destructible_v<CmpiModule>);

namespace {

CMPIStatus toC(const CMPIBroker* broker, CMPIrc rc, const char* message) noexcept {
    if (!broker || *message == '\0') return {rc, nullptr};
    try {
        return {rc, call(broker->eft->newString, broker, message, nullptr)};
    } catch (const CmpiStatus&) {
        return {rc, nullptr};
    }
}

// An MI that is gone cannot ask to be kept.
CMPIStatus afterTheEnd(CMPIStatus status) noexcept {
    if (status.rc == CMPI_RC_DO_NOT_UNLOAD || status.rc == CMPI_RC_NEVER_UNLOAD) {
        status.rc = CMPI_RC_ERR_FAILED;
    }
    return status;
}

}  // namespace

CMPIStatus currentExceptionToC(const CMPIBroker* broker) noexcept {
    try {
        throw;
    } catch (const CmpiStatus& status) {
        // An operation that threw has not succeeded, whatever it says.
        return toC(broker, status.rc() == CMPI_RC_OK ? CMPI_RC_ERR_FAILED : status.rc(),
                   status.what());
    } catch (const std::exception& exception) {
        return toC(broker, CMPI_RC_ERR_FAILED, exception.what());
    } catch (...) {
        return toC(broker, CMPI_RC_ERR_FAILED, "unknown exception");
    }
}

CMPIInstanceMI* CmpiModule::createInstanceMI(const CMPIBroker* broker, const CMPIContext* context,
                                             CMPIStatus* status) noexcept {
    return _create<InstanceKind>(broker, context, status);
}

CMPIAssociationMI* CmpiModule::createAssociationMI(const CMPIBroker* broker,
                                                   const CMPIContext* context,
                                                   CMPIStatus* status) noexcept {
    return _create<AssociationKind>(broker, context, status);
}

CMPIMethodMI* CmpiModule::createMethodMI(const CMPIBroker* broker, const CMPIContext* context,
                                         CMPIStatus* status) noexcept {
    return _create<MethodKind>(broker, context, status);
}

CMPIIndicationMI* CmpiModule::createIndicationMI(const CMPIBroker* broker,
                                                 const CMPIContext* context,
                                                 CMPIStatus* status) noexcept {
    return _create<IndicationKind>(broker, context, status);
}

template <typename Kind>
typename Kind::Mi* CmpiModule::_create(const CMPIBroker* broker, const CMPIContext* context,
                                       CMPIStatus* status) noexcept {
    typename Kind::Mi* mi = nullptr;
    const CMPIStatus outcome = enter(broker, [&] {
        const std::lock_guard lock(_mutex);
        ServedMi<Kind>& served = _served<Kind>(broker);
        _join(served, context);
        mi = &served.mi;
    });
    if (status != nullptr) *status = outcome;
    return mi;
}

template <typename Kind>
ServedMi<Kind>& CmpiModule::_served(const CMPIBroker* broker) {
    using Served = ServedMi<Kind>;
    Place& place = _places[Kind::number];
    static_assert(sizeof(Served) <= sizeof place.bytes && std::is_trivially_destructible_v<Served>);
    if (!place.isTaken) new (place.bytes.data()) Served(*this, broker);
    place.isTaken = true;
    auto& served = *std::launder(reinterpret_cast<Served*>(place.bytes.data()));
    // Calls read it without the lock; the broker of a process is always the same.
    if (served.broker != broker && !served.provider) served.broker = broker;
    return served;
}

// Takes a share of the object for a kind that has none.
template <typename Kind>
typename Kind::Provider& CmpiModule::_join(ServedMi<Kind>& served, const CMPIContext* context) {
    if (auto* const provider = served.provider.load(std::memory_order_relaxed)) return *provider;
    if (!_provider) _provider = _factory(CmpiBroker(served.broker), context);
    if (!_provider) {
        throw CmpiStatus(CMPI_RC_ERR_FAILED, std::string(_name) + ": there is no provider object");
    }
    auto* const provider = dynamic_cast<typename Kind::Provider*>(_provider);
    if (!provider) {
        // Without an MI nobody would ever clean up.
        if (_provider->_sharingMIs == 0) enter(served.broker, [&] { _dispose(context, false); });
        throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED,
                         std::string(_name) + " is no " + Kind::name + " provider");
    }
    ++_provider->_sharingMIs;
    _askedKinds = 0;
    served.provider.store(provider, std::memory_order_release);
    return *provider;
}

template <typename Kind>
typename Kind::Provider& CmpiModule::_rejoin(ServedMi<Kind>& served, const CMPIContext* context) {
    const std::lock_guard lock(_mutex);
    return _join(served, context);
}

template InstanceKind::Provider& CmpiModule::_rejoin(ServedMi<InstanceKind>&, const CMPIContext*);
template AssociationKind::Provider& CmpiModule::_rejoin(ServedMi<AssociationKind>&,
                                                        const CMPIContext*);
template MethodKind::Provider& CmpiModule::_rejoin(ServedMi<MethodKind>&, const CMPIContext*);
template IndicationKind::Provider& CmpiModule::_rejoin(ServedMi<IndicationKind>&,
                                                       const CMPIContext*);

// Gives up the share of a kind, unless the provider wants to stay. When even the question fails,
// the object manager is told so and may regard the MI as gone.
template <typename Kind>
CMPIStatus CmpiModule::_leave(ServedMi<Kind>& served, const CMPIContext* context,
                              bool terminating) noexcept {
    const std::lock_guard lock(_mutex);
    if (!served.provider.load(std::memory_order_relaxed)) return {CMPI_RC_OK, nullptr};
    int answer = 0;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (!terminating) {
        status = enter(served.broker, [&] { answer = _askToLeave(1U << Kind::number, context); });
    }
    if (answer == 2) return {CMPI_RC_NEVER_UNLOAD, nullptr};
    if (answer != 0) return {CMPI_RC_DO_NOT_UNLOAD, nullptr};

    served.provider.store(nullptr, std::memory_order_release);
    if (--_provider->_sharingMIs == 0) {
        const CMPIStatus end = enter(served.broker, [&] { _dispose(context, terminating); });
        if (end.rc != CMPI_RC_OK) status = end;
    }
    return afterTheEnd(status);
}

// One unload asks the kinds one after the other: what the provider says to the first holds for all,
// lest one goes and another stays. A kind that is asked again begins another unload.
int CmpiModule::_askToLeave(unsigned kind, const CMPIContext* context) {
    if (_askedKinds == 0 || (_askedKinds & kind) != 0) {
        _askedKinds = 0;
        _unloadAnswer = _provider->unloadOK(CmpiContext(context));
    }
    _askedKinds |= kind;
    return _unloadAnswer;
}

void CmpiModule::_dispose(const CMPIContext* context, bool terminating) {
    const std::unique_ptr<CmpiProvider> last(std::exchange(_provider, nullptr));
    _askedKinds = 0;
    last->cleanup(CmpiContext(context), terminating);
}

}  // namespace CmpiCpp
