#include "common/KTAlertIndication.h"

#include "cmpicpp/CmpiMBService.h"
#include "common/PYLUtil.h"
#include "common/detail/EnclosureForwarding.h"
#include "common/detail/IndicationValues.h"

#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace PYL {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiStatus;

namespace {

/// What all providers of the family send, whatever version one of them has.
constexpr const char* familyVersion = "03.02.00";

/// As a stream writes it by default, in whatever locale: 65, 72.5, 1e+06.
std::string textOf(float value) {
    constexpr int streamPrecision = 6;
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::general, streamPrecision);
    return {text.data(), end.ptr};
}

/// The endpoint's property where it has one of this type; an endpoint is another provider's, and
/// what is wrong with one is not to cost the others.
std::optional<CmpiData> givenAs(CMPIType type, const CmpiInstance& endpoint, const char* name) {
    try {
        const auto data = endpoint.getProperty(name);
        if (data.getType() == type && !data.isArray() && !data.isNull()) return data;
    } catch (const CmpiStatus& status) {
        if (status.rc() != CMPI_RC_ERR_NOT_FOUND) throw;
    }
    return std::nullopt;
}

/// The address of an IP endpoint, appended where the endpoint has one of a known kind.
void appendAddress(std::vector<std::string>& addresses, const CmpiInstance& endpoint) {
    // The value map of CIM_IPProtocolEndpoint.ProtocolIFType (CIM schema 2.x).
    constexpr unsigned ipv4 = 4096;
    constexpr unsigned ipv6 = 4097;
    const auto kind = givenAs(CMPI_uint16, endpoint, "ProtocolIFType");
    if (!kind || (kind->asUint64() != ipv4 && kind->asUint64() != ipv6)) return;
    const auto* const name = kind->asUint64() == ipv4 ? "IPv4Address" : "IPv6Address";
    if (const auto address = givenAs(CMPI_string, endpoint, name)) {
        addresses.push_back(address->asString());
    }
}

}  // namespace

KTAlertIndication::KTAlertIndication(Logger& log, const std::string& name,
                                     const std::string& nameSpace, int severity)
    : CIMAlertIndication(log, name, nameSpace, severity) {
    _log.info("KTAlertIndication cxtor()");
}

KTAlertIndication::~KTAlertIndication() { _log.info("KTAlertIndication dxtor()"); }

CmpiInstance KTAlertIndication::getInstance() {
    auto instance = CmpiCpp::makeCmpiInstance(indicationBroker(), getPath());
    // Each layer by itself: none calls the one below.
    CIMIndication::addProperties(instance);  // NOLINT(bugprone-parent-virtual-call)
    CIMAlertIndication::addProperties(instance);
    KTAlertIndication::addProperties(instance);
    return instance;
}

void KTAlertIndication::addProperties(CmpiInstance& instance) {
    _log.info("KTAlertIndication.addProperties()");
    _addEvent(instance);
    _addTemperatures(instance);
    _addDevice(instance);
    _addComputerSystem(instance);
    _addEnclosure(instance);
    instance.setProperty("ImpactedDomain", static_cast<unsigned short>(_impactedDomain));
}

void KTAlertIndication::_addEvent(CmpiInstance& instance) const {
    instance.setProperty("Summary", _summary);
    instance.setProperty("EventCategory", static_cast<unsigned int>(_category));
    instance.setProperty("ProbableCause", static_cast<unsigned short>(_probableCause));
    instance.setProperty("ProbableCauseDescription", _probableCauseDescription);
    instance.setProperty("ProviderVersion", familyVersion);
    if (_subcategory != 0) {
        instance.setProperty("EventSubCategory", static_cast<unsigned int>(_subcategory));
    }
    if (!_IPAddresses.empty()) instance.setProperty("NetworkAddresses", stringArray(_IPAddresses));
}

void KTAlertIndication::_addTemperatures(CmpiInstance& instance) const {
    // The value map of CIM's VariableTypes: real32.
    constexpr unsigned short real = 9;
    if (!_setTemperatureVarNames) return;
    const std::array<std::string, 2> names{"UpperThresholdCritical", "UpperThresholdFatal"};
    const std::array<unsigned short, 2> types{real, real};
    const std::array<std::string, 2> values{textOf(_caution), textOf(_fatal)};
    instance.setProperty("VariableNames", stringArray(names));
    instance.setProperty("VariableTypes", uint16Array(types));
    instance.setProperty("VariableValues", stringArray(values));
}

void KTAlertIndication::_addDevice(CmpiInstance& instance) const {
    const auto add = [&instance](const char* name, const std::string& text) {
        if (!text.empty()) instance.setProperty(name, text);
    };
    const auto addArray = [&instance](const char* name, const std::string& text) {
        if (!text.empty()) instance.setProperty(name, stringArray({&text, 1}));
    };
    // The second element belongs to a partner device, of which there is none.
    const auto addPair = [&instance](const char* name, const std::string& text) {
        if (!text.empty()) instance.setProperty(name, stringArray(std::array{text, std::string()}));
    };
    addArray("HWLogicalLocation", _logicalLocation);
    add("HWPhysicalLocation", _physicalLocation);
    addPair("HWFirmwareVersion", _firmwareVersion);
    add("HWManufacturer", _manufacturer);
    addPair("HWSerialNumber", _serialNumber);
    add("HWPartNumber", _partNumber);
    add("DeviceModel", _deviceModel);
    addArray("DeviceControllerLogicalLocation", _controllerLogicalLocation);
}

void KTAlertIndication::setNetworkIPAddress(const CmpiContext& ctx) {
    const CmpiCpp::CmpiMBService service(PYLUtil::getBroker(), _log);
    const auto path = CmpiCpp::makeCmpiObjectPath(indicationBroker(), BaseServerNameSpace,
                                                  "KT_IPProtocolEndpoint");
    auto addresses = _IPAddresses;
    for (const auto& endpoint : service.enumInstances(ctx, path, nullptr)) {
        appendAddress(addresses, endpoint);
    }
    _IPAddresses = std::move(addresses);
}

int KTAlertIndication::mp_event_gen() {
    forwardToEnclosure({_severity, _providerName, _eventID, _partNumber, _physicalLocation,
                        _systemFirmwareVersion, _IPAddresses},
                       _log);
    return 0;
}

void KTAlertIndication::setTemperatureVariables(float caution, float fatal) {
    _caution = caution;
    _fatal = fatal;
    _setTemperatureVarNames = true;
}

void KTAlertIndication::setSummary(const std::string& summary) { _summary = summary; }

void KTAlertIndication::setEventCategory(int category) { _category = category; }

void KTAlertIndication::setEventSubCategory(int subcategory) { _subcategory = subcategory; }

void KTAlertIndication::setOtherEventCategory(const std::string& category) {
    _othercategory = category;
}

void KTAlertIndication::setProbableCause(int cause) { _probableCause = cause; }

void KTAlertIndication::setProbableCauseDescription(const std::string& description) {
    _probableCauseDescription = description;
}

void KTAlertIndication::setProviderVersion(const std::string& version) {
    _providerVersion = version;
}

void KTAlertIndication::setHWLogicalLocation(const std::string& location) {
    _logicalLocation = location;
}

void KTAlertIndication::setHWFirmwareVersion(const std::string& version) {
    _firmwareVersion = version;
}

void KTAlertIndication::setHWManufacturer(const std::string& manufacturer) {
    _manufacturer = manufacturer;
}

void KTAlertIndication::setHWSerialNumber(const std::string& serialNumber) {
    _serialNumber = serialNumber;
}

void KTAlertIndication::setHWPartNumber(const std::string& partNumber) { _partNumber = partNumber; }

void KTAlertIndication::setDeviceModel(const std::string& model) { _deviceModel = model; }

void KTAlertIndication::setHWPhysicalLocation(const std::string& location) {
    _physicalLocation = location;
}

void KTAlertIndication::setDeviceControllerLogicalLocation(const std::string& location) {
    _controllerLogicalLocation = location;
}

}  // namespace PYL
