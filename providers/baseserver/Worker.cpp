#include "providers/baseserver/Worker.h"

#include "common/PYLUtil.h"

namespace baseserver {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

CmpiObjectPath WorkerInstance::getPath() {
    auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()),
                                            PYL::BaseServerNameSpace, className);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    path.addKey("InstanceID", std::string("KTQ:") + className + ":1");
    return path;
}

CmpiInstance WorkerInstance::getInstance() {
    const auto path = getPath();
    auto instance = CmpiCpp::makeCmpiInstance(CmpiBroker(PYLUtil::getBroker()), path);
    instance.setProperty("InstanceID", path.getKey("InstanceID"));
    instance.setProperty("ElementName", "Base server worker");
    return instance;
}

}  // namespace baseserver
