#include "common/KTAlertIndication.h"

#include <array>
#include <charconv>
#include <utility>

#include "cmpicpp/CmpiMBService.h"
#include "common/IndicationValues.h"
#include "common/PYLUtil.h"

namespace PYL {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstance;

namespace {

/// What all providers of the family send, whatever version one of them has.
constexpr char const* familyVersion = "03.02.00";

/// As a stream writes it by default, in whatever locale: 65, 72.5, 1e+06.
std::string textOf(float value) {
    constexpr int streamPrecision = 6;
    std::array<char, 32> text;
    auto const end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::general, streamPrecision);
    return {text.data(), end.ptr};
}

/// The address of an IP endpoint, appended where the endpoint has one of a known kind.
void appendAddress(std::vector<std::string>& addresses, CmpiInstance const& endpoint) {
    // The value map of CIM_IPProtocolEndpoint.ProtocolIFType (CIM schema 2.x).
    constexpr unsigned ipv4 = 4096;
    constexpr unsigned ipv6 = 4097;
    auto const kind = endpoint.getProperty("ProtocolIFType").asUint64();
    if (kind == ipv4) addresses.push_back(endpoint.getProperty("IPv4Address").asString());
    if (kind == ipv6) addresses.push_back(endpoint.getProperty("IPv6Address").asString());
}

}  // namespace

KTAlertIndication::KTAlertIndication(Logger& log, std::string const& name,
                                     std::string const& nameSpace, int severity)
    : CIMAlertIndication(log, name, nameSpace, severity) {
    _log.info("KTAlertIndication cxtor()");
}

KTAlertIndication::~KTAlertIndication() {
    _log.info("KTAlertIndication dxtor()");
}

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
    if (_subcategory != 0)
        instance.setProperty("EventSubCategory", static_cast<unsigned int>(_subcategory));
    if (!_IPAddresses.empty()) instance.setProperty("NetworkAddresses", stringArray(_IPAddresses));
}

void KTAlertIndication::_addTemperatures(CmpiInstance& instance) const {
    // The value map of CIM's VariableTypes: real32.
    constexpr unsigned short real = 9;
    if (!_setTemperatureVarNames) return;
    std::array<std::string, 2> const names{"UpperThresholdCritical", "UpperThresholdFatal"};
    std::array<unsigned short, 2> const types{real, real};
    std::array<std::string, 2> const values{textOf(_caution), textOf(_fatal)};
    instance.setProperty("VariableNames", stringArray(names));
    instance.setProperty("VariableTypes", uint16Array(types));
    instance.setProperty("VariableValues", stringArray(values));
}

void KTAlertIndication::_addDevice(CmpiInstance& instance) const {
    auto const add = [&instance](char const* name, std::string const& text) {
        if (!text.empty()) instance.setProperty(name, text);
    };
    auto const addArray = [&instance](char const* name, std::string const& text) {
        if (!text.empty()) instance.setProperty(name, stringArray({&text, 1}));
    };
    // The second element belongs to a partner device, of which there is none.
    auto const addPair = [&instance](char const* name, std::string const& text) {
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

void KTAlertIndication::setNetworkIPAddress(CmpiContext const& ctx) {
    CmpiCpp::CmpiMBService const service(PYLUtil::getBroker(), _log);
    auto const path = CmpiCpp::makeCmpiObjectPath(indicationBroker(), BaseServerNameSpace,
                                                  "KT_IPProtocolEndpoint");
    auto addresses = _IPAddresses;
    for (auto const& endpoint : service.enumInstances(ctx, path, nullptr))
        appendAddress(addresses, endpoint);
    _IPAddresses = std::move(addresses);
}

void KTAlertIndication::setTemperatureVariables(float caution, float fatal) {
    _caution = caution;
    _fatal = fatal;
    _setTemperatureVarNames = true;
}

void KTAlertIndication::setSummary(std::string const& summary) {
    _summary = summary;
}

void KTAlertIndication::setEventCategory(int category) {
    _category = category;
}

void KTAlertIndication::setEventSubCategory(int subcategory) {
    _subcategory = subcategory;
}

void KTAlertIndication::setOtherEventCategory(std::string const& category) {
    _othercategory = category;
}

void KTAlertIndication::setProbableCause(int cause) {
    _probableCause = cause;
}

void KTAlertIndication::setProbableCauseDescription(std::string const& description) {
    _probableCauseDescription = description;
}

void KTAlertIndication::setProviderVersion(std::string const& version) {
    _providerVersion = version;
}

void KTAlertIndication::setHWLogicalLocation(std::string const& location) {
    _logicalLocation = location;
}

void KTAlertIndication::setHWFirmwareVersion(std::string const& version) {
    _firmwareVersion = version;
}

void KTAlertIndication::setHWManufacturer(std::string const& manufacturer) {
    _manufacturer = manufacturer;
}

void KTAlertIndication::setHWSerialNumber(std::string const& serialNumber) {
    _serialNumber = serialNumber;
}

void KTAlertIndication::setHWPartNumber(std::string const& partNumber) {
    _partNumber = partNumber;
}

void KTAlertIndication::setDeviceModel(std::string const& model) {
    _deviceModel = model;
}

void KTAlertIndication::setHWPhysicalLocation(std::string const& location) {
    _physicalLocation = location;
}

void KTAlertIndication::setDeviceControllerLogicalLocation(std::string const& location) {
    _controllerLogicalLocation = location;
}

}  // namespace PYL
