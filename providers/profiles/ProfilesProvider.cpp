#include "providers/profiles/ProfilesProvider.h"

#include "common/ProfileDC.h"
#include "providers/profiles/DataCollection.h"
#include "providers/profiles/LinkClasses.h"
#include "providers/profiles/ProfileCatalogue.h"
#include "providers/profiles/RegisteredProfile.h"

namespace profiles {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

namespace {

template <typename Table>
std::shared_ptr<const Table> filled(Logger& log) {
    const auto table = std::make_shared<Table>(log);
    table->initialize();
    return table;
}

}  // namespace

ProfilesProvider::ProfilesProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
    : CollectionProvider(broker, log),
      _profiles(filled<PYL::ProfileDB>(log)),
      _conformance(broker, log, _profiles) {
    addCatalogue(_profiles, _instances);
    add(_instances, std::make_unique<DataCollection>(filled<PYL::ProfileDC>(log)));
}

void ProfilesProvider::answer(const CmpiContext& context, const CmpiObjectPath& path,
                              const Ask& ask) {
    if (!(path.getClassName() == CmpiName(elementConformsToProfile.name))) return ask(_instances);
    Collection links(_log);
    _conformance.addAll(context, path.getNameSpace().str(), links);
    ask(links);
}

void ProfilesProvider::answerAround(const CmpiContext& context, const CmpiObjectPath& source,
                                    const CmpiName& associationClass, const Ask& ask) {
    const auto nameSpace = source.getNameSpace();
    if (nameSpace == CmpiName(profileNameSpace())) ask(_instances);
    const auto links =
        CmpiCpp::makeCmpiObjectPath(_broker, nameSpace, CmpiName(elementConformsToProfile.name));
    if (!associationClass.empty() && !links.classPathIsA(_broker, associationClass.str())) return;
    Collection around(_log);
    _conformance.addAround(context, source, around);
    ask(around);
}

}  // namespace profiles
