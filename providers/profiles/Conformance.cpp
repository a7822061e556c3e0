#include "providers/profiles/Conformance.h"

#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiStatus.h"
#include "providers/profiles/LinkClasses.h"
#include "providers/profiles/ProfileCatalogue.h"
#include "providers/profiles/RegisteredProfile.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"

#include <utility>
#include <vector>

namespace profiles {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::CmpiManagedInstanceCollection;
using PYL::PRPDBRec;

namespace {

bool isProfileNameSpace(const CmpiName& nameSpace) {
    return nameSpace == CmpiName(profileNameSpace());
}

/// Whether nobody serves the class here, which is as it should be where the hardware is not.
bool isUnserved(CMPIrc code) {
    return code == CMPI_RC_ERR_INVALID_CLASS || code == CMPI_RC_ERR_NOT_SUPPORTED ||
           code == CMPI_RC_ERR_INVALID_NAMESPACE;
}

}  // namespace

std::vector<CmpiObjectPath> Conformance::_elementsOf(const CmpiContext& context,
                                                     const Implementation& implementation) const {
    const auto& [profile, nameSpace, className] = implementation;
    Logger log(_log);
    try {
        auto paths =
            CmpiCpp::CmpiMBService(_broker.toCMPI(), log)
                .enumInstanceNames(context, CmpiCpp::makeCmpiObjectPath(
                                                _broker, CmpiName(nameSpace), CmpiName(className)));
        // Providers need not name the host, nor the namespace that they were asked in.
        for (auto& path : paths) {
            path = PYL::onThisHost(std::move(path));
            path.setNameSpace(CmpiName(nameSpace));
        }
        return paths;
    } catch (const CmpiCpp::CmpiStatus& status) {
        const auto* const format = "no %s in %s to conform to \"%s\": %d %s";
        if (isUnserved(status.rc())) {
            log.info(format, className, nameSpace, profile.getRegName(), status.rc(),
                     status.message());
        } else {
            log.warn(format, className, nameSpace, profile.getRegName(), status.rc(),
                     status.message());
        }
        return {};
    }
}

void Conformance::_add(const CmpiContext& context, const CmpiName& linkNameSpace,
                       const Wanted& wanted, CmpiManagedInstanceCollection& links) const {
    forEachRecord(*_profiles, [&](const PRPDBRec& record) {
        for (unsigned int i = 0; i < record.getSizeofImpClassNames(); ++i) {
            const auto nameSpace = record.getImpNameSpace(i);
            const auto className = record.getImpClassName(i);
            const Implementation implementation{record, nameSpace, className};
            if (!wanted(implementation)) continue;
            auto profile = pathOf(*_profiles, record);
            for (const auto& element : _elementsOf(context, implementation)) {
                add(links, std::make_unique<PYL::TwoEndedAssociation>(
                               elementConformsToProfile, [profile] { return profile; },
                               [element] { return element; }, linkNameSpace.str()));
            }
        }
    });
}

void Conformance::addAll(const CmpiContext& context, const std::string& nameSpace,
                         CmpiManagedInstanceCollection& links) const {
    const CmpiName wantedIn(nameSpace);
    _add(
        context, wantedIn,
        [&](const Implementation& implementation) {
            return isProfileNameSpace(wantedIn) || CmpiName(implementation.nameSpace) == wantedIn;
        },
        links);
}

void Conformance::addAround(const CmpiContext& context, const CmpiObjectPath& path,
                            CmpiManagedInstanceCollection& links) const {
    const auto nameSpace = path.getNameSpace();
    const auto local = PYL::onThisHost(path);
    _add(
        context, nameSpace,
        [&](const Implementation& implementation) {
            if (isProfileNameSpace(nameSpace)) {
                return local == pathOf(*_profiles, implementation.profile);
            }
            return CmpiName(implementation.nameSpace) == nameSpace &&
                   path.classPathIsA(_broker, implementation.className);
        },
        links);
}

}  // namespace profiles
