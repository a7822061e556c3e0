#include "common/CmpiManagedInstanceCollection.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/AutoMutex.h"
#include "common/detail/AssociationWalk.h"
#include "common/detail/LocalRequest.h"
#include "common/detail/LockedWalk.h"
#include "common/detail/LogText.h"

#include <algorithm>
#include <cstdint>

namespace PYL {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;

namespace {

void refuse(const Logger& log, const char* line, const char* message) {
    log.warn(line);
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, message);
}

void refuseRole(const Logger& log, const CmpiName& role) {
    if (!role.empty()) refuse(log, "role filter not supported", "role filters not supported");
}

void refuseResultRole(const Logger& log, const CmpiName& resultRole) {
    if (!resultRole.empty()) {
        refuse(log, "resultRole filter not supported", "resultRole filters not supported");
    }
}

void refuseProperties(const Logger& log, const char** properties) {
    if (properties) {
        refuse(log, "property filters not supported!", "property filters not supported");
    }
}

}  // namespace

CmpiManagedInstanceCollection::CmpiManagedInstanceCollection(Logger& log) : _log(log) {
    _log.appendLogSource(":");
    _log.appendLogSource("CmpiManagedInstanceCollection");
    _log.info("cxtor()");
    pthread_mutex_init(&_mutex, nullptr);
}

CmpiManagedInstanceCollection::~CmpiManagedInstanceCollection() {
    _log.info("dxtor()");
    for (auto* instance : _collection) delete instance;
    _collection.clear();
    pthread_mutex_destroy(&_mutex);
}

bool CmpiManagedInstanceCollection::createInstance(CmpiManagedInstance* inst) {
    const AutoMutex lock(_mutex);
    _collection.push_back(inst);
    return true;
}

bool CmpiManagedInstanceCollection::deleteInstance(const CmpiObjectPath& path) {
    const AutoMutex lock(_mutex);
    const int index = _findIndex(path);
    if (index < 0) return false;
    const auto slot = _collection.begin() + index;
    delete *slot;
    _collection.erase(slot);
    return true;
}

/// The walk that both enumerations share. The caller holds the lock.
template <typename Deliver>
int CmpiManagedInstanceCollection::_enumerate(const CmpiObjectPath& path, Deliver deliver) {
    const auto className = path.getClassName();
    const auto nameSpace = path.getNameSpace();
    int count = 0;
    for (auto* instance : _collection) {
        if (!instance || !instance->visible() || !(className == instance->getClassName())) continue;
        const auto instancePath = instance->getPath();
        if (!(nameSpace == instancePath.getNameSpace())) continue;
        if (_log.infoEnabled()) _log.info("deliver: %s", logText(instancePath));
        deliver(*instance);
        ++count;
    }
    return count;
}

int CmpiManagedInstanceCollection::enumInstanceNames(CmpiObjectPathResult& result,
                                                     const CmpiContext&,
                                                     const CmpiObjectPath& path) {
    if (_log.infoEnabled()) {
        _log.info("enumInstanceNames() for class: %s",
                  logText([&path] { return path.getClassName(); }));
    }
    return lockedWalk(_mutex, _log, "enumInstanceNames", "enumInstanceNames() exception", [&] {
        return _enumerate(path, [&](auto& instance) { result.deliver(instance.getPath()); });
    });
}

int CmpiManagedInstanceCollection::enumInstances(CmpiInstanceResult& result, const CmpiContext&,
                                                 const CmpiObjectPath& path,
                                                 const char** properties) {
    if (_log.infoEnabled()) {
        _log.info("enumInstances() for class:%s", logText([&path] { return path.getClassName(); }));
    }
    if (properties) _log.warn("property filters not supported! No exception.");
    return lockedWalk(_mutex, _log, "enumInstances", "enumInstances() exception:", [&] {
        return _enumerate(path, [&](auto& instance) { result.deliver(instance.getInstance()); });
    });
}

bool CmpiManagedInstanceCollection::getInstance(CmpiInstanceResult& result, const CmpiContext&,
                                                const CmpiObjectPath& path,
                                                const char** properties) {
    if (_log.infoEnabled()) _log.info("getInstance() for path: %s", logText(path));
    if (properties) _log.warn("property filters not supported! No exception.");

    const AutoMutex lock(_mutex);
    try {
        LocalRequest request(path);
        for (auto* instance : _collection) {
            if (!instance || !instance->visible()) continue;
            const auto instancePath = instance->getPath();
            if (!(request.path() == instancePath)) continue;
            if (_log.infoEnabled()) _log.info("deliver: %s", logText(instancePath));
            result.deliver(instance->getInstance());
            return true;
        }
    } catch (...) {
        _log.error("getInstance() exception:");
        throw;
    }
    _log.warn("instance not found");
    return false;
}

int CmpiManagedInstanceCollection::associators(CmpiInstanceResult& result, const CmpiContext& ctx,
                                               const CmpiObjectPath& path,
                                               const CmpiName& assocClass,
                                               const CmpiName& resultClass, const CmpiName& role,
                                               const CmpiName& resultRole,
                                               const char** properties) {
    refuseRole(_log, role);
    refuseResultRole(_log, resultRole);
    refuseProperties(_log, properties);
    return lockedWalk(_mutex, _log, "associators", "associators() exception:", [&] {
        return AssociationWalk(_collection, _log, path, resultClass)
            .associators(result, ctx, assocClass.str(), [this](const CmpiObjectPath& farEnd) {
                const int index = _findIndex(farEnd);
                return index < 0 ? nullptr : _collection[static_cast<std::size_t>(index)];
            });
    });
}

int CmpiManagedInstanceCollection::associatorNames(CmpiObjectPathResult& result, const CmpiContext&,
                                                   const CmpiObjectPath& path,
                                                   const CmpiName& assocClass,
                                                   const CmpiName& resultClass,
                                                   const CmpiName& role,
                                                   const CmpiName& resultRole) {
    refuseRole(_log, role);
    refuseResultRole(_log, resultRole);
    return lockedWalk(_mutex, _log, "associatorNames", "associatorNames() exception:", [&] {
        return AssociationWalk(_collection, _log, path, resultClass)
            .associatorNames(result, assocClass.str());
    });
}

int CmpiManagedInstanceCollection::references(CmpiInstanceResult& result, const CmpiContext&,
                                              const CmpiObjectPath& path,
                                              const CmpiName& resultClass, const CmpiName& role,
                                              const char** properties) {
    refuseRole(_log, role);
    refuseProperties(_log, properties);
    return lockedWalk(_mutex, _log, "references", "references exception:", [&] {
        return AssociationWalk(_collection, _log, path, resultClass).references(result);
    });
}

int CmpiManagedInstanceCollection::referenceNames(CmpiObjectPathResult& result, const CmpiContext&,
                                                  const CmpiObjectPath& path,
                                                  const CmpiName& resultClass,
                                                  const CmpiName& role) {
    refuseRole(_log, role);
    return lockedWalk(_mutex, _log, "referenceNames", "referenceNames exception:", [&] {
        return AssociationWalk(_collection, _log, path, resultClass).referenceNames(result);
    });
}

unsigned int CmpiManagedInstanceCollection::size() const {
    return static_cast<unsigned int>(_collection.size());
}

CmpiManagedInstance* CmpiManagedInstanceCollection::getManagedInstance(unsigned int index) {
    // The sum wraps for the largest index, which so passes the test: the slot is looked at all the
    // same before it is read.
    if (index + std::uint32_t{1} > size()) return nullptr;
    return index < _collection.size() ? _collection[index] : nullptr;
}

CmpiManagedInstance* CmpiManagedInstanceCollection::getManagedInstance(const CmpiObjectPath& path) {
    const AutoMutex lock(_mutex);
    try {
        const int index = _findIndex(path);
        return index < 0 ? nullptr : _collection[static_cast<std::size_t>(index)];
    } catch (...) {
        _log.error("getManagedInstance() exception");
        throw;
    }
}

void CmpiManagedInstanceCollection::clear() {
    const AutoMutex lock(_mutex);
    for (auto* instance : _collection) delete instance;
    _collection.clear();
}

void CmpiManagedInstanceCollection::cleanup() {
    const AutoMutex lock(_mutex);
    std::vector<CmpiManagedInstance*> visible;
    visible.reserve(_collection.size());
    for (auto* instance : _collection) {
        if (instance && instance->visible()) {
            visible.push_back(instance);
        } else {
            delete instance;
        }
    }
    _collection.swap(visible);
}

int CmpiManagedInstanceCollection::_findIndex(const CmpiObjectPath& path) {
    const auto found = std::find_if(_collection.begin(), _collection.end(), [&](auto* instance) {
        return instance && instance->getPath() == path;
    });
    return found == _collection.end() ? -1 : static_cast<int>(found - _collection.begin());
}

}  // namespace PYL
