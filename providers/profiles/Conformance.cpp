#include "providers/profiles/Conformance.h"

#include <vector>

#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/profiles/ProfileCatalogue.h"
#include "providers/profiles/ProfileLink.h"
#include "providers/profiles/RegisteredProfile.h"

namespace profiles {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::CmpiManagedInstanceCollection;
using PYL::PRPDBRec;
using PYL::PYLUtil;

namespace {

bool isProfileNameSpace(CmpiName const& nameSpace) {
    return nameSpace == CmpiName(PYL::PRPNameSpace);
}

/// Whether nobody serves the class here, which is as it should be where the hardware is not.
bool isUnserved(CMPIrc code) {
    return code == CMPI_RC_ERR_INVALID_CLASS || code == CMPI_RC_ERR_NOT_SUPPORTED ||
           code == CMPI_RC_ERR_INVALID_NAMESPACE;
}

}  // namespace

std::vector<CmpiObjectPath> Conformance::_elementsOf(CmpiContext const& context,
                                                     Implementation const& implementation) const {
    auto const& [profile, nameSpace, className] = implementation;
    Logger log(_log);
    try {
        auto paths =
            CmpiCpp::CmpiMBService(_broker.toCMPI(), log)
                .enumInstanceNames(context, CmpiCpp::makeCmpiObjectPath(
                                                _broker, CmpiName(nameSpace), CmpiName(className)));
        // Providers need not name the host, nor the namespace that they were asked in.
        for (auto& path : paths) {
            path.setHost(CmpiName(PYLUtil::getHostName()));
            path.setNameSpace(CmpiName(nameSpace));
        }
        return paths;
    } catch (CmpiCpp::CmpiStatus const& status) {
        auto const* const format = "no %s in %s to conform to \"%s\": %d %s";
        if (isUnserved(status.rc()))
            log.info(format, className, nameSpace, profile.getRegName(), status.rc(),
                     status.message());
        else
            log.warn(format, className, nameSpace, profile.getRegName(), status.rc(),
                     status.message());
        return {};
    }
}

void Conformance::_add(CmpiContext const& context, CmpiName const& linkNameSpace,
                       Wanted const& wanted, CmpiManagedInstanceCollection& links) const {
    forEachRecord(*_profiles, [&](PRPDBRec const& record) {
        for (unsigned int i = 0; i < record.getSizeofImpClassNames(); ++i) {
            auto const nameSpace = record.getImpNameSpace(i);
            auto const className = record.getImpClassName(i);
            Implementation const implementation{record, nameSpace, className};
            if (!wanted(implementation)) continue;
            auto profile = pathOf(*_profiles, record);
            for (auto const& element : _elementsOf(context, implementation))
                addTo(links, std::make_unique<ProfileLink>(
                                 elementConformsToProfile, linkNameSpace.str(),
                                 [profile] { return profile; }, [element] { return element; }));
        }
    });
}

void Conformance::addAll(CmpiContext const& context, std::string const& nameSpace,
                         CmpiManagedInstanceCollection& links) const {
    CmpiName const wantedIn(nameSpace);
    _add(
        context, wantedIn,
        [&](Implementation const& implementation) {
            return isProfileNameSpace(wantedIn) || CmpiName(implementation.nameSpace) == wantedIn;
        },
        links);
}

void Conformance::addAround(CmpiContext const& context, CmpiObjectPath const& path,
                            CmpiManagedInstanceCollection& links) const {
    auto const nameSpace = path.getNameSpace();
    auto local = path;
    local.setHost(CmpiName(PYLUtil::getHostName()));
    _add(
        context, nameSpace,
        [&](Implementation const& implementation) {
            if (isProfileNameSpace(nameSpace))
                return local == pathOf(*_profiles, implementation.profile);
            return CmpiName(implementation.nameSpace) == nameSpace &&
                   path.classPathIsA(_broker, implementation.className);
        },
        links);
}

}  // namespace profiles
