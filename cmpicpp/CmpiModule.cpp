#include "cmpicpp/CmpiModule.h"

#include "cmpicpp/CmpiStatus.h"
#include "cmpicpp/detail/MiTables.h"

#include <exception>
#include <memory>
#include <string>
#include <type_traits>

namespace CmpiCpp {

// The object manager unloads a module when it likes: no destructor may be left to run then.
static_assert(std::is_trivially_destructible_v<CmpiModule>);

namespace {

CMPIStatus toC(const CMPIBroker* broker, CMPIrc rc, const char* message) noexcept {
    CMPIStatus status{rc, nullptr};
    if (broker != nullptr && *message != '\0') {
        status.msg = broker->eft->newString(broker, message, nullptr);
    }
    return status;
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
        mi = _createLocked<Kind>(broker, context);
    });
    if (status != nullptr) *status = outcome;
    return mi;
}

template <typename Kind>
typename Kind::Mi* CmpiModule::_createLocked(const CMPIBroker* broker, const CMPIContext* context) {
    if (!_provider) _provider = _factory(CmpiBroker(broker), context);
    if (!_provider) {
        throw CmpiStatus(CMPI_RC_ERR_FAILED, std::string(_name) + ": there is no provider object");
    }
    try {
        auto* const served = dynamic_cast<typename Kind::Provider*>(_provider);
        if (!served) {
            throw CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED,
                             std::string(_name) + " is no " + Kind::name + " provider");
        }
        auto* const mi = new ServedMi<Kind>(*this, *served, broker);
        ++_provider->_sharingMIs;
        return &mi->mi;
    } catch (...) {
        // Without an MI nobody would ever clean up.
        if (_provider->_sharingMIs == 0) enter(broker, [&] { _dispose(context, false); });
        throw;
    }
}

// Takes the share of one MI, unless the provider wants to stay. When even the question fails, the
// object manager is told so and regards the MI as gone.
CMPIStatus CmpiModule::_leave(const CMPIBroker* broker, const CMPIContext* context,
                              bool terminating) noexcept {
    const std::lock_guard lock(_mutex);
    int answer = 0;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (!terminating) {
        status = enter(broker, [&] { answer = _provider->unloadOK(CmpiContext(context)); });
    }
    if (answer == 2) return {CMPI_RC_NEVER_UNLOAD, nullptr};
    if (answer != 0) return {CMPI_RC_DO_NOT_UNLOAD, nullptr};

    if (--_provider->_sharingMIs == 0) {
        const CMPIStatus end = enter(broker, [&] { _dispose(context, terminating); });
        if (end.rc != CMPI_RC_OK) status = end;
    }
    return afterTheEnd(status);
}

void CmpiModule::_dispose(const CMPIContext* context, bool terminating) {
    const std::unique_ptr<CmpiProvider> last(std::exchange(_provider, nullptr));
    last->cleanup(CmpiContext(context), terminating);
}

}  // namespace CmpiCpp
