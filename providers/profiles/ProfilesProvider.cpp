#include "providers/profiles/ProfilesProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "common/ProfileDC.h"
#include "providers/profiles/DataCollection.h"
#include "providers/profiles/ProfileCatalogue.h"
#include "providers/profiles/ProfileLink.h"

namespace profiles {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiStatus;

namespace {

template <typename Table>
std::shared_ptr<const Table> filled(Logger& log) {
    const auto table = std::make_shared<Table>(log);
    table->initialize();
    return table;
}

}  // namespace

ProfilesProvider::ProfilesProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
    : _broker(broker),
      _log(log),
      _profiles(filled<PYL::ProfileDB>(log)),
      _conformance(broker, log, _profiles),
      _unchanging(log) {
    addCatalogue(_profiles, _unchanging);
    addTo(_unchanging, std::make_unique<DataCollection>(filled<PYL::ProfileDC>(log)));
}

CMPIBroker* ProfilesProvider::getBroker() {
    return _broker.toRawCMPI();
}

template <typename Answer>
void ProfilesProvider::_answerClass(const CmpiContext& context, const CmpiObjectPath& path,
                                    Answer answer) {
    if (!(path.getClassName() == CmpiName(elementConformsToProfile.name))) {
        return answer(_unchanging);
    }
    Collection links(_log);
    _conformance.addAll(context, path.getNameSpace().str(), links);
    answer(links);
}

template <typename Answer>
void ProfilesProvider::_answerAround(const CmpiContext& context, const CmpiObjectPath& path,
                                     const CmpiName& associationClass, Answer answer) {
    const auto nameSpace = path.getNameSpace();
    if (nameSpace == CmpiName(PYL::PRPNameSpace)) answer(_unchanging);
    const auto links =
        CmpiCpp::makeCmpiObjectPath(_broker, nameSpace, CmpiName(elementConformsToProfile.name));
    if (!associationClass.empty() && !links.classPathIsA(_broker, associationClass.str())) return;
    Collection around(_log);
    _conformance.addAround(context, path, around);
    answer(around);
}

void ProfilesProvider::enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                         CmpiObjectPathResult& result) {
    _answerClass(context, path, [&](Collection& collection) {
        collection.enumInstanceNames(result, context, path);
    });
}

void ProfilesProvider::enumInstances(const CmpiContext& context, const CmpiObjectPath& path,
                                     const char** properties, CmpiInstanceResult& result) {
    _answerClass(context, path, [&](Collection& collection) {
        collection.enumInstances(result, context, path, properties);
    });
}

void ProfilesProvider::getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                   const char** properties, CmpiInstanceResult& result) {
    _answerClass(context, path, [&](Collection& collection) {
        if (!collection.getInstance(result, context, path, properties)) {
            throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
        }
    });
}

void ProfilesProvider::invokeMethod(const CmpiContext&, const CmpiObjectPath& path,
                                    const CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                                    CmpiCpp::CmpiMethodResult& result) {
    auto local = path;
    local.setHost(CmpiName(PYL::PYLUtil::getHostName()));
    auto* const instance = _unchanging.getManagedInstance(local);
    if (!instance) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
    instance->invokeMethod(methodName, in, result);
}

void ProfilesProvider::associators(const CmpiContext& context, const CmpiObjectPath& path,
                                   const CmpiName& assocClass, const CmpiName& resultClass,
                                   const CmpiName& role, const CmpiName& resultRole,
                                   const char** properties, CmpiInstanceResult& result) {
    _answerAround(context, path, assocClass, [&](Collection& collection) {
        collection.associators(result, context, path, assocClass, resultClass, role, resultRole,
                               properties);
    });
}

void ProfilesProvider::associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                                       const CmpiName& assocClass, const CmpiName& resultClass,
                                       const CmpiName& role, const CmpiName& resultRole,
                                       CmpiObjectPathResult& result) {
    _answerAround(context, path, assocClass, [&](Collection& collection) {
        collection.associatorNames(result, context, path, assocClass, resultClass, role,
                                   resultRole);
    });
}

void ProfilesProvider::references(const CmpiContext& context, const CmpiObjectPath& path,
                                  const CmpiName& resultClass, const CmpiName& role,
                                  const char** properties, CmpiInstanceResult& result) {
    _answerAround(context, path, resultClass, [&](Collection& collection) {
        collection.references(result, context, path, resultClass, role, properties);
    });
}

void ProfilesProvider::referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                      const CmpiName& resultClass, const CmpiName& role,
                                      CmpiObjectPathResult& result) {
    _answerAround(context, path, resultClass, [&](Collection& collection) {
        collection.referenceNames(result, context, path, resultClass, role);
    });
}

}  // namespace profiles
