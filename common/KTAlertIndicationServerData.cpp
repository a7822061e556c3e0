// What KTAlertIndication tells of the server and of its enclosure, read when an instance is made.

#include "common/KTAlertIndication.h"
#include "common/detail/IndicationValues.h"
#include "platform/host/BladeMRA.h"
#include "platform/host/ComputerSystemMRA.h"

#include <array>
#include <memory>
#include <string>

namespace PYL {

using CmpiCpp::CmpiInstance;

namespace {

/// The form in which a text is sent, and whether an empty one is.
enum class Form { text, array, nonEmptyText, nonEmptyArray };

template <typename Data>
struct TextRow {
    const char* property;
    MRAStatusEnum (Data::*getter)(std::string&) const;
    Form form;
};

using Server = ComputerSystemMRADataObject;
constexpr auto serverTexts = std::to_array<TextRow<Server>>({
    {"OSVersion", &Server::getHostOSVersion, Form::text},
    {"SystemFirmwareVersion", &Server::getBiosVersion, Form::array},
    {"SystemSerialNumber", &Server::getSystemSerialNumber, Form::text},
    {"SystemVirtualSerialNumber", &Server::getSystemVirtualSerialNumber, Form::nonEmptyArray},
    {"SystemProductID", &Server::getSystemProductID, Form::text},
    {"SystemModel", &Server::getSystemProductName, Form::text},
    {"SystemGUID", &Server::getSystemUUID, Form::text},
    {"SystemVirtualUUID", &Server::getSystemVirtualUUID, Form::nonEmptyArray},
    {"SolutionProductModel", &Server::getSolutionName, Form::nonEmptyText},
});

using Blade = BladeMRADataObject;
constexpr auto enclosureTexts = std::to_array<TextRow<Blade>>({
    {"EnclosureName", &Blade::getEnclosureName, Form::text},
    {"RackName", &Blade::getRackName, Form::text},
    {"RackUUID", &Blade::getRackUUID, Form::text},
});

template <typename Data>
void addText(CmpiInstance& instance, const Data& data, const TextRow<Data>& row) {
    std::string text;
    if ((data.*row.getter)(text) != MRA_STATUS_SUCCESS) return;
    const bool isOptional = row.form == Form::nonEmptyText || row.form == Form::nonEmptyArray;
    if (isOptional && text.empty()) return;
    if (row.form == Form::array || row.form == Form::nonEmptyArray) {
        instance.setProperty(row.property, stringArray({&text, 1}));
    } else {
        instance.setProperty(row.property, text);
    }
}

CIMOSType osTypeOf(operatingSystemEnum type) noexcept {
    if (type == OSvm) return osTypeVM;
    if (type == OSlinux) return osTypeLinux;
    return osTypeUnknown;
}

}  // namespace

void KTAlertIndication::_addComputerSystem(CmpiInstance& instance) {
    ComputerSystemMRADataObject data(_log);
    const std::unique_ptr<ComputerSystemMRA> source(computerSystemMRAFactory(_log));
    if (source && source->getFirstData(ComputerSystemMRA::systemData, data) == MRA_STATUS_SUCCESS) {
        _addComputerSystem(instance, data);
    } else {
        _log.error("failed to _computerSystemMRA::getFirstData()");
    }
}

void KTAlertIndication::_addComputerSystem(CmpiInstance& instance,
                                           const ComputerSystemMRADataObject& data) {
    operatingSystemEnum type = OSunkown;
    if (data.getOSType(type) == MRA_STATUS_SUCCESS) {
        instance.setProperty("OSType", static_cast<unsigned short>(osTypeOf(type)));
    }
    for (const auto& row : serverTexts) addText(instance, data, row);
    static_cast<void>(data.getBiosVersion(_systemFirmwareVersion));
}

void KTAlertIndication::_addEnclosure(CmpiInstance& instance) {
    BladeMRADataObject data(_log);
    const std::unique_ptr<BladeMRA> source(BladeMRAFactory(_log));
    if (source && source->getEnclosureData(data) == MRA_STATUS_SUCCESS) {
        _addEnclosure(instance, data);
    } else {
        _log.error("failed to _BladeMRA::getFirstData()");
    }
}

void KTAlertIndication::_addEnclosure(CmpiInstance& instance, const BladeMRADataObject& data) {
    if (!data.isBlade()) return;
    if (!data.isSLServer()) _impactedDomain = ImpactedDomainEnclosure;
    for (const auto& row : enclosureTexts) addText(instance, data, row);
}

}  // namespace PYL
