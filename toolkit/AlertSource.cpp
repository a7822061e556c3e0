#include "toolkit/AlertSource.h"

#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLConstants.h"
#include "common/PYLUtil.h"
#include "toolkit/FailureText.h"

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
    : _broker(broker), _log(log), _definitions(log, indicationName) {
    for (const auto& definition : own) _define(indicationName, definition);
}

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
        if (_definitions.getRecord(event, record) != 0) {
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
    KTAlertIndication alert(_log, alertClass, BaseServerNameSpace, record._severity);
    fillFrom(alert, record, detail);
    if (fill) fill(alert);
    const auto instance = alert.getInstance();
    CmpiCpp::CmpiMBService(_broker.toCMPI(), _log)
        .deliverIndication(context, BaseServerNameSpace, instance);
    alert.mp_event_gen();
}

}  // namespace PYL
