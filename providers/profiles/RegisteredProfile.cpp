#include "providers/profiles/RegisteredProfile.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLConstants.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"

#include <algorithm>
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

/// Whether the namespace is there and has the class of the registered profiles. Asked for the
/// superclass: that a class is itself, a broker may say without looking.
bool hasProfiles(const char* nameSpace) {
    const auto broker = PYL::localBroker();
    try {
        return CmpiCpp::makeCmpiObjectPath(broker, nameSpace, PYL::PRPRegisteredClassName)
            .classPathIsA(broker, "CIM_RegisteredProfile");
    } catch (const CmpiCpp::CmpiStatus&) {
        return false;  // how some brokers say that there is no such namespace
    }
}

const char* findProfiles() {
    const std::array names{PYL::PRPNameSpace, "root/interop", "root/PG_InterOp"};
    const auto* const found = std::ranges::find_if(names, hasProfiles);
    return found == names.end() ? PYL::PRPNameSpace : *found;
}

}  // namespace

const char* profileNameSpace() {
    static const char* const found = findProfiles();
    return found;
}

CmpiObjectPath pathOf(const PYL::ProfileDB& profiles, const PRPDBRec& record) {
    auto path = profiles.getECTPpath(record.getRegOrgId(), record.getOtherRegOrg(),
                                     record.getRegName(), record.getRegVersion());
    path.setNameSpace(CmpiName(profileNameSpace()));
    return path;
}

CmpiName RegisteredProfile::getClassName() { return PYL::PRPRegisteredClassName; }

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
