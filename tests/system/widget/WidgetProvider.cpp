#include "tests/system/widget/WidgetProvider.h"

#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiStatus.h"

using namespace CmpiCpp;

namespace {

std::string keyOf(CmpiObjectPath path) {
    path.setHost("");
    return path.str();
}

}  // namespace

std::vector<CmpiInstance> WidgetProvider::ofClass(CmpiObjectPath const& classPath) {
    std::lock_guard const lock(_mutex);
    std::vector<CmpiInstance> found;
    for (auto const& [key, instance] : _instances)
        if (instance.getPath().getClassName() == classPath.getClassName()) found.push_back(instance);
    return found;
}

CmpiInstance WidgetProvider::find(CmpiObjectPath const& path) {
    std::lock_guard const lock(_mutex);
    auto const found = _instances.find(keyOf(path));
    if (found == _instances.end()) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no widget " + path.str());
    return found->second;
}

void WidgetProvider::enumInstanceNames(CmpiContext const&, CmpiObjectPath const& path,
                                       CmpiObjectPathResult& result) {
    for (auto const& instance : ofClass(path)) result.deliver(instance.getPath());
}

void WidgetProvider::enumInstances(CmpiContext const&, CmpiObjectPath const& path, char const**,
                                   CmpiInstanceResult& result) {
    for (auto const& instance : ofClass(path)) result.deliver(instance);
}

void WidgetProvider::getInstance(CmpiContext const&, CmpiObjectPath const& path, char const**,
                                 CmpiInstanceResult& result) {
    result.deliver(find(path));
}

void WidgetProvider::createInstance(CmpiContext const&, CmpiObjectPath const& path,
                                    CmpiInstance const& instance, CmpiObjectPathResult& result) {
    auto const made = instance.getPath().getKeyCount() > 0 ? instance.getPath() : path;
    {
        std::lock_guard const lock(_mutex);
        auto const [at, isNew] = _instances.try_emplace(keyOf(made), instance.clone());
        if (!isNew) throw CmpiStatus(CMPI_RC_ERR_ALREADY_EXISTS, "there is one: " + made.str());
    }
    result.deliver(made);
}

void WidgetProvider::modifyInstance(CmpiContext const&, CmpiObjectPath const& path,
                                    CmpiInstance const& instance, char const**) {
    auto changed = find(path);
    for (unsigned int i = 0; i < instance.getPropertyCount(); ++i) {
        auto const [name, value] = instance.getPropertyAt(i);
        changed.setProperty(name, value);
    }
    std::lock_guard const lock(_mutex);
    _instances[keyOf(path)] = changed.clone();
}

void WidgetProvider::deleteInstance(CmpiContext const&, CmpiObjectPath const& path) {
    std::lock_guard const lock(_mutex);
    if (_instances.erase(keyOf(path)) == 0)
        throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no widget " + path.str());
}

void WidgetProvider::execQuery(CmpiContext const&, CmpiObjectPath const& path, std::string const& query,
                               std::string const&, CmpiObjectPathResult& result) {
    if (query.find("WHERE") != std::string::npos)
        throw CmpiStatus(CMPI_RC_ERR_INVALID_QUERY, "no conditions, please: " + query);
    for (auto const& instance : ofClass(path)) result.deliver(instance.getPath());
}

std::vector<WidgetProvider::FarEnd> WidgetProvider::farEnds(CmpiObjectPath const& source,
                                                            CmpiName const& linkClass,
                                                            CmpiName const& role) {
    std::lock_guard const lock(_mutex);
    std::vector<FarEnd> found;
    auto const wanted = keyOf(source);
    for (auto const& [key, instance] : _instances) {
        auto const path = instance.getPath();
        if (!path.classPathIsA(_broker, "TST_Uses")) continue;
        if (!linkClass.empty() && !path.classPathIsA(_broker, linkClass.str())) continue;
        auto const user = path.getKey("User").asObjectPath();
        auto const used = path.getKey("Used").asObjectPath();
        bool const asUser = role.empty() || role == CmpiName("User");
        bool const asUsed = role.empty() || role == CmpiName("Used");
        if (asUser && keyOf(user) == wanted) found.push_back({instance, used});
        else if (asUsed && keyOf(used) == wanted) found.push_back({instance, user});
    }
    return found;
}

void WidgetProvider::associators(CmpiContext const&, CmpiObjectPath const& path,
                                 CmpiName const& assocClass, CmpiName const& resultClass,
                                 CmpiName const& role, CmpiName const&, char const**,
                                 CmpiInstanceResult& result) {
    for (auto const& end : farEnds(path, assocClass, role))
        if (resultClass.empty() || end.path.classPathIsA(_broker, resultClass.str()))
            result.deliver(find(end.path));
}

void WidgetProvider::associatorNames(CmpiContext const&, CmpiObjectPath const& path,
                                     CmpiName const& assocClass, CmpiName const& resultClass,
                                     CmpiName const& role, CmpiName const&,
                                     CmpiObjectPathResult& result) {
    for (auto const& end : farEnds(path, assocClass, role))
        if (resultClass.empty() || end.path.classPathIsA(_broker, resultClass.str()))
            result.deliver(end.path);
}

void WidgetProvider::references(CmpiContext const&, CmpiObjectPath const& path,
                                CmpiName const& resultClass, CmpiName const& role, char const**,
                                CmpiInstanceResult& result) {
    for (auto const& end : farEnds(path, resultClass, role)) result.deliver(end.link);
}

void WidgetProvider::referenceNames(CmpiContext const&, CmpiObjectPath const& path,
                                    CmpiName const& resultClass, CmpiName const& role,
                                    CmpiObjectPathResult& result) {
    for (auto const& end : farEnds(path, resultClass, role)) result.deliver(end.link.getPath());
}

namespace {

CmpiProvider* makeProvider(CmpiBroker const& broker, CMPIContext const*) {
    return new WidgetProvider(broker);
}

}  // namespace

PYL_CMPI_PROVIDER(WidgetProvider, makeProvider)
