#include "tests/system/widget/WidgetProvider.h"

#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiStatus.h"

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiProvider;
using CmpiCpp::CmpiStatus;

namespace {

std::string keyOf(CmpiObjectPath path) {
    path.setHost("");
    return path.str();
}

}  // namespace

std::vector<CmpiInstance> WidgetProvider::ofClass(const CmpiObjectPath& classPath) {
    const std::lock_guard lock(_mutex);
    std::vector<CmpiInstance> found;
    for (const auto& [key, instance] : _instances) {
        if (instance.getPath().getClassName() == classPath.getClassName()) {
            found.push_back(instance);
        }
    }
    return found;
}

CmpiInstance WidgetProvider::find(const CmpiObjectPath& path) {
    const std::lock_guard lock(_mutex);
    const auto found = _instances.find(keyOf(path));
    if (found == _instances.end()) {
        throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no widget " + path.str());
    }
    return found->second;
}

void WidgetProvider::enumInstanceNames(const CmpiContext&, const CmpiObjectPath& path,
                                       CmpiObjectPathResult& result) {
    for (const auto& instance : ofClass(path)) result.deliver(instance.getPath());
}

void WidgetProvider::enumInstances(const CmpiContext&, const CmpiObjectPath& path, const char**,
                                   CmpiInstanceResult& result) {
    for (const auto& instance : ofClass(path)) result.deliver(instance);
}

void WidgetProvider::getInstance(const CmpiContext&, const CmpiObjectPath& path, const char**,
                                 CmpiInstanceResult& result) {
    result.deliver(find(path));
}

void WidgetProvider::createInstance(const CmpiContext&, const CmpiObjectPath& path,
                                    const CmpiInstance& instance, CmpiObjectPathResult& result) {
    const auto made = instance.getPath().getKeyCount() > 0 ? instance.getPath() : path;
    {
        const std::lock_guard lock(_mutex);
        const auto [at, isNew] = _instances.try_emplace(keyOf(made), instance.clone());
        if (!isNew) throw CmpiStatus(CMPI_RC_ERR_ALREADY_EXISTS, "there is one: " + made.str());
    }
    result.deliver(made);
}

void WidgetProvider::modifyInstance(const CmpiContext&, const CmpiObjectPath& path,
                                    const CmpiInstance& instance, const char**) {
    auto changed = find(path);
    for (unsigned int i = 0; i < instance.getPropertyCount(); ++i) {
        const auto [name, value] = instance.getPropertyAt(i);
        changed.setProperty(name, value);
    }
    const std::lock_guard lock(_mutex);
    _instances[keyOf(path)] = changed.clone();
}

void WidgetProvider::deleteInstance(const CmpiContext&, const CmpiObjectPath& path) {
    const std::lock_guard lock(_mutex);
    if (_instances.erase(keyOf(path)) == 0) {
        throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no widget " + path.str());
    }
}

void WidgetProvider::execQuery(const CmpiContext&, const CmpiObjectPath& path,
                               const std::string& query, const std::string&,
                               CmpiObjectPathResult& result) {
    if (query.find("WHERE") != std::string::npos) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_QUERY, "no conditions, please: " + query);
    }
    for (const auto& instance : ofClass(path)) result.deliver(instance.getPath());
}

std::vector<WidgetProvider::FarEnd> WidgetProvider::farEnds(const CmpiObjectPath& source,
                                                            const CmpiName& linkClass,
                                                            const CmpiName& role) {
    const std::lock_guard lock(_mutex);
    std::vector<FarEnd> found;
    const auto wanted = keyOf(source);
    for (const auto& [key, instance] : _instances) {
        const auto path = instance.getPath();
        if (!path.classPathIsA(_broker, "TST_Uses")) continue;
        if (!linkClass.empty() && !path.classPathIsA(_broker, linkClass.str())) continue;
        const auto user = path.getKey("User").asObjectPath();
        const auto used = path.getKey("Used").asObjectPath();
        const bool asUser = role.empty() || role == CmpiName("User");
        const bool asUsed = role.empty() || role == CmpiName("Used");
        if (asUser && keyOf(user) == wanted) {
            found.push_back({instance, used});
        } else if (asUsed && keyOf(used) == wanted) {
            found.push_back({instance, user});
        }
    }
    return found;
}

void WidgetProvider::associators(const CmpiContext&, const CmpiObjectPath& path,
                                 const CmpiName& assocClass, const CmpiName& resultClass,
                                 const CmpiName& role, const CmpiName&, const char**,
                                 CmpiInstanceResult& result) {
    for (const auto& end : farEnds(path, assocClass, role)) {
        if (resultClass.empty() || end.path.classPathIsA(_broker, resultClass.str())) {
            result.deliver(find(end.path));
        }
    }
}

void WidgetProvider::associatorNames(const CmpiContext&, const CmpiObjectPath& path,
                                     const CmpiName& assocClass, const CmpiName& resultClass,
                                     const CmpiName& role, const CmpiName&,
                                     CmpiObjectPathResult& result) {
    for (const auto& end : farEnds(path, assocClass, role)) {
        if (resultClass.empty() || end.path.classPathIsA(_broker, resultClass.str())) {
            result.deliver(end.path);
        }
    }
}

void WidgetProvider::references(const CmpiContext&, const CmpiObjectPath& path,
                                const CmpiName& resultClass, const CmpiName& role, const char**,
                                CmpiInstanceResult& result) {
    for (const auto& end : farEnds(path, resultClass, role)) result.deliver(end.link);
}

void WidgetProvider::referenceNames(const CmpiContext&, const CmpiObjectPath& path,
                                    const CmpiName& resultClass, const CmpiName& role,
                                    CmpiObjectPathResult& result) {
    for (const auto& end : farEnds(path, resultClass, role)) result.deliver(end.link.getPath());
}

namespace {

CmpiProvider* makeProvider(const CmpiBroker& broker, const CMPIContext*) {
    return new WidgetProvider(broker);
}

}  // namespace

PYL_CMPI_PROVIDER(WidgetProvider, makeProvider)
