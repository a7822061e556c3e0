#include "toolkit/CollectionProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "toolkit/LocalPaths.h"

namespace PYL {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;

namespace {

[[noreturn]] void refuseUnknown(const CmpiObjectPath& path, const char* hint = "") {
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str() + hint);
}

// Collections compare with paths on this host, and so find none whose path names no host. What goes
// wrong while that is looked for is not what was asked: the collection has logged it.
bool hasWithoutHost(CmpiManagedInstanceCollection& collection, CmpiObjectPath path) noexcept {
    try {
        path.setHost("");
        return collection.getManagedInstance(path) != nullptr;
    } catch (...) {
        return false;
    }
}

}  // namespace

void add(CmpiManagedInstanceCollection& collection, std::unique_ptr<CmpiManagedInstance> instance) {
    collection.createInstance(instance.get());
    static_cast<void>(instance.release());  // the collection's from here on
}

CollectionProvider::CollectionProvider(const CmpiBroker& broker, Logger& log)
    : _broker(broker), _log(log), _instances(log) {}

CollectionProvider::~CollectionProvider() = default;

CMPIBroker* CollectionProvider::getBroker() { return _broker.toRawCMPI(); }

void CollectionProvider::refresh(const CmpiContext&) {}

void CollectionProvider::answer(const CmpiContext& context, const CmpiObjectPath&, const Ask& ask) {
    refresh(context);
    ask(_instances);
}

void CollectionProvider::answerAround(const CmpiContext& context, const CmpiObjectPath& source,
                                      const CmpiName&, const Ask& ask) {
    answer(context, source, ask);
}

void CollectionProvider::enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                           CmpiObjectPathResult& result) {
    answer(context, path,
           [&](Collection& collection) { collection.enumInstanceNames(result, context, path); });
}

void CollectionProvider::enumInstances(const CmpiContext& context, const CmpiObjectPath& path,
                                       const char** properties, CmpiInstanceResult& result) {
    answer(context, path, [&](Collection& collection) {
        collection.enumInstances(result, context, path, properties);
    });
}

void CollectionProvider::getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                     const char** properties, CmpiInstanceResult& result) {
    bool isFound = false;
    const char* hint = "";
    answer(context, path, [&](Collection& collection) {
        isFound = isFound || collection.getInstance(result, context, path, properties);
        if (!isFound && hasWithoutHost(collection, path)) {
            hint = " (but one whose getPath() names no host: setHost() was not called)";
        }
    });
    if (!isFound) refuseUnknown(path, hint);
}

void CollectionProvider::invokeMethod(const CmpiContext& context, const CmpiObjectPath& path,
                                      const CmpiName& methodName, const CmpiArgs& in,
                                      CmpiMethodResult& result) {
    const auto local = onThisHost(path);
    bool isFound = false;
    answer(context, path, [&](Collection& collection) {
        auto* const instance = isFound ? nullptr : collection.getManagedInstance(local);
        if (!instance || !instance->visible()) return;
        isFound = true;
        instance->invokeMethod(methodName, in, result);
    });
    if (!isFound) refuseUnknown(path);
}

void CollectionProvider::associators(const CmpiContext& context, const CmpiObjectPath& path,
                                     const CmpiName& assocClass, const CmpiName& resultClass,
                                     const CmpiName& role, const CmpiName& resultRole,
                                     const char** properties, CmpiInstanceResult& result) {
    answerAround(context, path, assocClass, [&](Collection& collection) {
        collection.associators(result, context, path, assocClass, resultClass, role, resultRole,
                               properties);
    });
}

void CollectionProvider::associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                                         const CmpiName& assocClass, const CmpiName& resultClass,
                                         const CmpiName& role, const CmpiName& resultRole,
                                         CmpiObjectPathResult& result) {
    answerAround(context, path, assocClass, [&](Collection& collection) {
        collection.associatorNames(result, context, path, assocClass, resultClass, role,
                                   resultRole);
    });
}

void CollectionProvider::references(const CmpiContext& context, const CmpiObjectPath& path,
                                    const CmpiName& resultClass, const CmpiName& role,
                                    const char** properties, CmpiInstanceResult& result) {
    answerAround(context, path, resultClass, [&](Collection& collection) {
        collection.references(result, context, path, resultClass, role, properties);
    });
}

void CollectionProvider::referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                        const CmpiName& resultClass, const CmpiName& role,
                                        CmpiObjectPathResult& result) {
    answerAround(context, path, resultClass, [&](Collection& collection) {
        collection.referenceNames(result, context, path, resultClass, role);
    });
}

}  // namespace PYL
