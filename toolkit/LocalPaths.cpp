#include "toolkit/LocalPaths.h"

#include "common/PYLUtil.h"

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

CmpiBroker localBroker() { return CmpiBroker(PYLUtil::getBroker()); }

CmpiObjectPath makeLocalPath(const CmpiName& className, std::initializer_list<LocalKey> keys,
                             const CmpiName& nameSpace) {
    auto path = onThisHost(CmpiCpp::makeCmpiObjectPath(localBroker(), nameSpace, className));
    for (const auto& [name, value] : keys) path.addKey(name, value);
    return path;
}

CmpiObjectPath makeInstanceIdPath(const char* className, const std::string& suffix) {
    const auto id = std::string("KTQ:") + className + (suffix.empty() ? "" : ":" + suffix);
    return makeLocalPath(className, {{"InstanceID", id}});
}

CmpiObjectPath makeDevicePath(const char* className, const std::string& deviceId) {
    return makeLocalPath(className, {{"CreationClassName", className},
                                     {"SystemCreationClassName", ScopedCentralClassName},
                                     {"SystemName", PYLUtil::getHostName()},
                                     {"DeviceID", deviceId}});
}

CmpiObjectPath onThisHost(CmpiObjectPath path) {
    path.setHost(CmpiName(PYLUtil::getHostName()));
    return path;
}

}  // namespace PYL
