#include "providers/profiles/RegisteredProfile.h"

#include "toolkit/Properties.h"

#include <array>
#include <string>
#include <vector>

namespace profiles {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PRPDBRec;

namespace {

// CIM_RegisteredProfile.AdvertiseTypes (CIM schema 2.x): clients find the profiles here, and
// nothing tells them elsewhere.
constexpr unsigned short notAdvertised = 2;

/// Sets an array of texts, `at(i)` for each index; it stays NULL when there are none.
template <typename At>
void setTexts(CmpiInstance& instance, const char* property, unsigned int size, At at) {
    std::vector<std::string> texts;
    for (unsigned int i = 0; i < size; ++i) texts.push_back(at(i));
    PYL::setArray(instance, property, texts);
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
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", _record.getRegName());
    instance.setProperty("RegisteredOrganization",
                         static_cast<unsigned short>(_record.getRegOrgId()));
    PYL::setKnown(instance, "OtherRegisteredOrganization", _record.getOtherRegOrg());
    instance.setProperty("RegisteredName", _record.getRegName());
    instance.setProperty("RegisteredVersion", _record.getRegVersion());
    PYL::setArray(instance, "AdvertiseTypes", std::array{notAdvertised});
    setImplementation(instance, _record);
    return instance;
}

}  // namespace profiles
