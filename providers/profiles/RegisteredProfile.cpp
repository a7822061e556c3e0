#include "providers/profiles/RegisteredProfile.h"

#include "cmpicpp/CmpiArray.h"
#include "common/PYLUtil.h"

#include <string>

namespace profiles {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PRPDBRec;
using PYL::PYLUtil;

namespace {

// CIM_RegisteredProfile.AdvertiseTypes (CIM schema 2.x): clients find the profiles here, and
// nothing tells them elsewhere.
constexpr unsigned short notAdvertised = 2;

/// Sets an array of texts, `at(i)` for each index; it stays NULL when there are none.
template <typename At>
void setTexts(CmpiInstance& instance, const char* property, unsigned int size, At at) {
    if (size == 0) return;
    auto array = CmpiCpp::makeCmpiArray(CmpiBroker(PYLUtil::getBroker()), size, CMPI_string);
    for (unsigned int i = 0; i < size; ++i) array.setElementAt(i, at(i));
    instance.setProperty(property, array);
}

void setImplementation(CmpiInstance& instance, const PRPDBRec& record) {
    setTexts(instance, "ImplementationClassNames", record.getSizeofImpClassNames(),
             [&](unsigned int i) { return record.getImpClassName(i); });
    setTexts(instance, "ImplementationNameSpaces", record.getSizeofImpNameSpaces(),
             [&](unsigned int i) { return record.getImpNameSpace(i); });
    setTexts(instance, "ImplementationProfiles", record.getSizeofImpProfiles(),
             [&](unsigned int i) { return record.getImpProfile(i); });
}

}  // namespace

CmpiObjectPath pathOf(const PYL::ProfileDB& profiles, const PRPDBRec& record) {
    return profiles.getECTPpath(record.getRegOrgId(), record.getOtherRegOrg(), record.getRegName(),
                                record.getRegVersion());
}

CmpiName RegisteredProfile::getClassName() {
    return PYL::PRPRegisteredClassName;
}

CmpiInstance RegisteredProfile::getInstance() {
    const auto path = getPath();
    const CmpiBroker broker(PYLUtil::getBroker());
    auto instance = CmpiCpp::makeCmpiInstance(broker, path);
    instance.setProperty("InstanceID", path.getKey("InstanceID"));
    instance.setProperty("ElementName", _record.getRegName());
    instance.setProperty("RegisteredOrganization",
                         static_cast<unsigned short>(_record.getRegOrgId()));
    const auto owner = _record.getOtherRegOrg();
    if (!owner.empty()) instance.setProperty("OtherRegisteredOrganization", owner);
    instance.setProperty("RegisteredName", _record.getRegName());
    instance.setProperty("RegisteredVersion", _record.getRegVersion());
    auto advertised = CmpiCpp::makeCmpiArray(broker, 1, CMPI_uint16);
    advertised.setElementAt(0, notAdvertised);
    instance.setProperty("AdvertiseTypes", advertised);
    setImplementation(instance, _record);
    return instance;
}

}  // namespace profiles
