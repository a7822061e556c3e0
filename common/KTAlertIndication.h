#pragma once

#include "cmpicpp/CmpiContext.h"
#include "common/CIMAlertIndication.h"

#include <string>
#include <vector>

class BladeMRADataObject;
class ComputerSystemMRADataObject;

namespace PYL {

/// An alert indication with the maker's properties: summary, category and cause, the identity of
/// the device, of the server and of its blade enclosure.
///
/// The properties of the device are left out of the instance while they are empty. Those of the
/// server and of its enclosure are read when the instance is made; what cannot be read is left out,
/// and an instance is made all the same.
class PYL_EXPORT KTAlertIndication : public CIMAlertIndication {
public:
    /// As CIMAlertIndication's.
    KTAlertIndication(Logger& log, const std::string& name, const std::string& nameSpace,
                      int severity);
    ~KTAlertIndication() override;

    CmpiCpp::CmpiInstance getInstance() override;

    void addProperties(CmpiCpp::CmpiInstance& instance) override;

    /// @{
    /// Replaces the property of that name.
    void setSummary(const std::string& summary);
    void setEventCategory(int category);
    /// 0, as at first, leaves the property out.
    void setEventSubCategory(int subcategory);
    /// Kept, but not sent: the class has no property for it.
    void setOtherEventCategory(const std::string& category);
    void setProbableCause(int cause);
    void setProbableCauseDescription(const std::string& description);
    /// Kept, but not sent: consoles want the version that the whole family of providers goes by.
    void setProviderVersion(const std::string& version);
    void setHWLogicalLocation(const std::string& location);
    void setHWFirmwareVersion(const std::string& version);
    void setHWManufacturer(const std::string& manufacturer);
    void setHWSerialNumber(const std::string& serialNumber);
    void setHWPartNumber(const std::string& partNumber);
    void setDeviceModel(const std::string& model);
    void setHWPhysicalLocation(const std::string& location);
    void setDeviceControllerLogicalLocation(const std::string& location);
    /// @}

    /// The thresholds of a temperature sensor, in degrees Celsius.
    void setTemperatureVariables(float caution, float fatal);

    /// Appends the addresses of all IP endpoints that the object manager knows, in its order, by an
    /// up-call. An endpoint without a kind (uint16) or without its address (string) is passed over.
    /// Throws the CmpiStatus of the object manager; nothing is appended then.
    void setNetworkIPAddress(const CmpiCpp::CmpiContext& ctx);

    /// Forwards the event, if it is one of those that the enclosure's management module wants, by
    /// the IPMI channel of the server. Always 0: what became of it is in the log.
    int mp_event_gen();

protected:
    /// @{
    /// What the setters were given, and what the server and its enclosure told.
    std::string _summary = "unknown";
    int _category = 0;
    std::string _othercategory;
    int _subcategory = 0;
    int _probableCause = 0;
    std::string _probableCauseDescription = "unknown";
    std::string _providerVersion = "unknown";
    bool _setTemperatureVarNames = false;
    float _caution = 0;
    float _fatal = 0;
    std::vector<std::string> _IPAddresses;  // NOLINT(bugprone-reserved-identifier)
    std::string _logicalLocation;
    std::string _firmwareVersion;
    std::string _manufacturer;
    std::string _serialNumber;
    std::string _partNumber;
    std::string _deviceModel;
    std::string _physicalLocation;
    std::string _controllerLogicalLocation;
    int _impactedDomain = ImpactedDomainSystem;
    /// @}
    /// Known once an instance has been made of a server that tells its BIOS version.
    std::string _systemFirmwareVersion;

private:
    void _addEvent(CmpiCpp::CmpiInstance& instance) const;
    void _addTemperatures(CmpiCpp::CmpiInstance& instance) const;
    void _addDevice(CmpiCpp::CmpiInstance& instance) const;
    void _addComputerSystem(CmpiCpp::CmpiInstance& instance);
    void _addComputerSystem(CmpiCpp::CmpiInstance& instance,
                            const ComputerSystemMRADataObject& data);
    void _addEnclosure(CmpiCpp::CmpiInstance& instance);
    void _addEnclosure(CmpiCpp::CmpiInstance& instance, const BladeMRADataObject& data);
};

}  // namespace PYL
