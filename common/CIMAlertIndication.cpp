#include "common/CIMAlertIndication.h"

#include "common/PYLUtil.h"
#include "common/detail/IndicationValues.h"

namespace PYL {

using CmpiCpp::CmpiInstance;

CIMAlertIndication::CIMAlertIndication(Logger& log, const std::string& name,
                                       const std::string& nameSpace, int severity)
    : CIMIndication(log, name, nameSpace, severity) {
    _log.info("CIMAlertIndication cxtor()");
}

CIMAlertIndication::~CIMAlertIndication() { _log.info("CIMAlertIndication dxtor()"); }

CmpiInstance CIMAlertIndication::getInstance() {
    auto instance = CmpiCpp::makeCmpiInstance(indicationBroker(), getPath());
    CIMIndication::addProperties(instance);
    CIMAlertIndication::addProperties(instance);
    return instance;
}

void CIMAlertIndication::addProperties(CmpiInstance& instance) {
    _log.info("CIMAlertIndication.addProperties()");
    instance.setProperty("Description", _description);
    instance.setProperty("EventID", _eventID);
    instance.setProperty("EventTime", presentSecond());
    instance.setProperty("AlertType", static_cast<unsigned short>(_alertType));
    instance.setProperty("ProviderName", _providerName);
    instance.setProperty("RecommendedActions", stringArray({&_recommendedAction, 1}));
    instance.setProperty("SystemName", PYLUtil::getHostName());
    instance.setProperty("SystemCreationClassName", _systemCreationClassName);
    instance.setProperty("AlertingManagedElement", _element);
    instance.setProperty("AlertingElementFormat", static_cast<unsigned short>(_format));
}

void CIMAlertIndication::setAlertingManagedElement(const std::string& element) {
    _element = element;
}

void CIMAlertIndication::setAlertingElementFormat(int format) { _format = format; }

void CIMAlertIndication::setDescription(const std::string& description) {
    _description = description;
}

void CIMAlertIndication::setEventID(const std::string& eventID) { _eventID = eventID; }

void CIMAlertIndication::setAlertType(int alertType) { _alertType = alertType; }

void CIMAlertIndication::setProviderName(const std::string& providerName) {
    _providerName = providerName;
}

void CIMAlertIndication::setRecommendedActions(const std::string& recommendedAction) {
    _recommendedAction = recommendedAction;
}

void CIMAlertIndication::setSystemCreationClassName(const std::string& className) {
    _systemCreationClassName = className;
}

}  // namespace PYL
