#include "providers/alerts/AlertSource.h"

#include "cmpicpp/CmpiMBService.h"
#include "common/PYLConstants.h"
#include "common/PYLUtil.h"
#include "providers/alerts/FailureText.h"

namespace alerts {

using PYL::IndDBRec;
using PYL::KTAlertIndication;

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
    alert.setSystemCreationClassName(PYL::ScopedCentralClassName);
    alert.setAlertingManagedElement(PYL::PYLUtil::getComputerSystemPath().str());
    alert.setAlertingElementFormat(cimObjectPath);
}

}  // namespace

AlertSource::AlertSource(const CmpiCpp::CmpiBroker& broker, Logger& log,
                         const std::string& indicationName)
    : _broker(broker), _log(log), _definitions(log, indicationName) {}

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
    KTAlertIndication alert(_log, alertClass, PYL::BaseServerNameSpace, record._severity);
    fillFrom(alert, record, detail);
    if (fill) fill(alert);
    const auto instance = alert.getInstance();
    CmpiCpp::CmpiMBService(_broker.toCMPI(), _log)
        .deliverIndication(context, PYL::BaseServerNameSpace, instance);
    alert.mp_event_gen();
}

}  // namespace alerts
