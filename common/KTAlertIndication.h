#pragma once

#include <string>
#include <vector>

#include "cmpicpp/CmpiContext.h"
#include "common/CIMAlertIndication.h"

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
    KTAlertIndication(Logger& log, std::string const& name, std::string const& nameSpace,
                      int severity);
    ~KTAlertIndication() override;

    CmpiCpp::CmpiInstance getInstance() override;

    void addProperties(CmpiCpp::CmpiInstance& instance) override;

    void setSummary(std::string const& summary);
    void setEventCategory(int category);
    /// 0, as at first, leaves the property out.
    void setEventSubCategory(int subcategory);
    /// Kept, but not sent: the class has no property for it.
    void setOtherEventCategory(std::string const& category);
    void setProbableCause(int cause);
    void setProbableCauseDescription(std::string const& description);
    /// Kept, but not sent: consoles want the version that the whole family of providers goes by.
    void setProviderVersion(std::string const& version);
    void setHWLogicalLocation(std::string const& location);
    void setHWFirmwareVersion(std::string const& version);
    void setHWManufacturer(std::string const& manufacturer);
    void setHWSerialNumber(std::string const& serialNumber);
    void setHWPartNumber(std::string const& partNumber);
    void setDeviceModel(std::string const& model);
    void setHWPhysicalLocation(std::string const& location);
    void setDeviceControllerLogicalLocation(std::string const& location);

    /// The thresholds of a temperature sensor, in degrees Celsius.
    void setTemperatureVariables(float caution, float fatal);

    /// Appends the addresses of all IP endpoints that the object manager knows, in its order, by an
    /// up-call. Throws the CmpiStatus of the up-call, or of an endpoint that does not tell its kind
    /// or its address; nothing is appended then.
    void setNetworkIPAddress(CmpiCpp::CmpiContext const& ctx);

    /// Forwards the event, if it is one of those that the enclosure's management module wants, by
    /// the IPMI channel of the server. Always 0: what became of it is in the log.
    int mp_event_gen();

protected:
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
    /// Known once an instance has been made of a server that tells its BIOS version.
    std::string _systemFirmwareVersion;

private:
    void _addEvent(CmpiCpp::CmpiInstance& instance) const;
    void _addTemperatures(CmpiCpp::CmpiInstance& instance) const;
    void _addDevice(CmpiCpp::CmpiInstance& instance) const;
    void _addComputerSystem(CmpiCpp::CmpiInstance& instance);
    void _addComputerSystem(CmpiCpp::CmpiInstance& instance,
                            ComputerSystemMRADataObject const& data);
    void _addEnclosure(CmpiCpp::CmpiInstance& instance);
    void _addEnclosure(CmpiCpp::CmpiInstance& instance, BladeMRADataObject const& data);
};

}  // namespace PYL
