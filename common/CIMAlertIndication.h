#pragma once

#include "common/CIMIndication.h"
#include "common/IndicationTypes.h"

#include <string>

namespace PYL {

/// An indication with the properties of the DMTF's alert indication.
///
/// Each setter replaces what its property is to say; the fields below hold what it says otherwise.
class PYL_EXPORT CIMAlertIndication : public CIMIndication {
public:
    /// As CIMIndication's. What no setter is called for is as the fields below say.
    CIMAlertIndication(Logger& log, const std::string& name, const std::string& nameSpace,
                       int severity);
    ~CIMAlertIndication() override;

    /// A new instance with the properties of every layer, good until the provider's call returns.
    virtual CmpiCpp::CmpiInstance getInstance();

    void addProperties(CmpiCpp::CmpiInstance& instance) override;

    /// The object path, as text, of the element that the alert is about.
    void setAlertingManagedElement(const std::string& element);
    /// The value map of CIM_AlertIndication.AlertingElementFormat (CIM schema 2.x): 2 is an object
    /// path.
    void setAlertingElementFormat(int format);
    /// @{
    /// Replaces the property of that name. An alert type is a CIMAlertType.
    void setDescription(const std::string& description);
    void setEventID(const std::string& eventID);
    void setAlertType(int alertType);
    void setProviderName(const std::string& providerName);
    void setRecommendedActions(const std::string& recommendedAction);
    void setSystemCreationClassName(const std::string& className);
    /// @}

protected:
    /// @{
    /// What the properties say, unless a setter was called.
    std::string _description = "unknown";
    std::string _eventID = "0";
    int _alertType = alertTypeOther;
    std::string _providerName = "unknown";
    std::string _recommendedAction = "none";
    std::string _systemCreationClassName = "unknown";
    std::string _element;
    int _format = 0;
    /// @}
};

}  // namespace PYL
