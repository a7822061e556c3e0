#include "toolkit/AlertSource.h"

#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLConstants.h"
#include "common/PYLUtil.h"
#include "toolkit/AlertForwarder.h"
#include "toolkit/FailureText.h"
#include "toolkit/TroubleSink.h"

#include <utility>

namespace PYL {

namespace {

constexpr const char* alertClass = "KT_AlertIndication";
constexpr int cimObjectPath = 2;  // CIM_AlertIndication.AlertingElementFormat

void fillFrom(KTAlertIndication& alert, const IndDBRec& record, const std::string& detail) {
    alert.setDescription(record._description);
    alert.setEventID(record._WBEMEventID);
    alert.setAlertType(record._alertType);
    alert.setProviderName(record._WBEMProviderName);
    alert.setRecommendedActions(record._recommendedActions);
    alert.setSummary(record._summary + detail);
    alert.setEventCategory(static_cast<int>(record._eventCategory));
    alert.setEventSubCategory(static_cast<int>(record._eventSubCategory));
    alert.setProbableCause(record._probableCause);
    alert.setProbableCauseDescription(record._probableCauseDescription);
    alert.setSystemCreationClassName(ScopedCentralClassName);
    alert.setAlertingManagedElement(PYLUtil::getComputerSystemPath().str());
    alert.setAlertingElementFormat(cimObjectPath);
}

IndDBRec recordOf(const std::string& indicationName, const AlertDefinition& definition) {
    return {indicationName,
            definition.number,
            std::string(definition.providerName),
            std::string(definition.eventID),
            definition.severity,
            std::string(definition.description),
            std::string(definition.summary),
            definition.eventCategory,
            definition.eventSubCategory,
            {},
            definition.alertType,
            {},
            {},
            definition.probableCause,
            std::string(definition.probableCauseDescription),
            std::string(definition.recommendedActions)};
}

}  // namespace

AlertSource::AlertSource(const CmpiCpp::CmpiBroker& broker, Logger& log,
                         const std::string& indicationName, std::span<const AlertDefinition> own)
    : _broker(broker),
      _log(log),
      _troubles(std::make_shared<TroubleSink>(log)),
      _alertLog(log.logSource(), _troubles, log.level()),
      _definitions(log, indicationName),
      _forwarder(std::make_unique<AlertForwarder>(log)) {
    for (const auto& definition : own) _define(indicationName, definition);
}

AlertSource::~AlertSource() = default;

void AlertSource::_define(const std::string& indicationName, const AlertDefinition& definition) {
    const auto event = "event " + std::to_string(definition.number) + " of " + indicationName;
    if (definition.number < 1) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, event + ": numbers start at 1");
    }
    IndDBRec other;
    if (_definitions.getRecord(definition.number, other) == 0) {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_ALREADY_EXISTS,
                                  event + " is defined already: \"" + other._summary + '"');
    }
    _definitions.make(recordOf(indicationName, definition));
}

void AlertSource::raise(const CmpiCpp::CmpiContext& context, int event, const std::string& detail,
                        const Fill& fill) noexcept {
    try {
        IndDBRec record;
        // The database of an unknown provider has a placeholder, numbered 0.
        if (event < 1 || _definitions.getRecord(event, record) != 0) {
            _log.error("event %d has no definition and is not raised", event);
            return;
        }
        _deliver(context, record, detail, fill);
    } catch (...) {
        _log.error("event %d could not be raised: %s", event, failureText());
    }
}

void AlertSource::_deliver(const CmpiCpp::CmpiContext& context, const IndDBRec& record,
                           const std::string& detail, const Fill& fill) {
    _alertLog.setLevel(_log.level());
    auto alert = std::make_unique<KTAlertIndication>(_alertLog, alertClass, BaseServerNameSpace,
                                                     record._severity);
    fillFrom(*alert, record, detail);
    if (fill) fill(*alert);
    const auto instance = _makeInstanceAndForward(std::move(alert));
    CmpiCpp::CmpiMBService(_broker.toCMPI(), _log)
        .deliverIndication(context, BaseServerNameSpace, instance);
}

/// Making the instance completes the alert. The enclosure is told of it even when the object
/// manager refuses to make one.
CmpiCpp::CmpiInstance AlertSource::_makeInstanceAndForward(Alert alert) {
    struct Forwarding {
        AlertSource& source;
        Alert alert;
        ~Forwarding() {
            source._troubles->endAlert();
            source._forwarder->forward(std::move(alert));
        }
    };
    const Forwarding forwarding{*this, std::move(alert)};
    return forwarding.alert->getInstance();
}

void AlertSource::waitUntilForwarded() { _forwarder->waitUntilIdle(); }

}  // namespace PYL
