#include "providers/baseserver/Worker.h"

#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"

namespace baseserver {

CmpiCpp::CmpiObjectPath WorkerInstance::getPath() { return PYL::makeInstanceIdPath(className); }

CmpiCpp::CmpiInstance WorkerInstance::getInstance() {
    auto instance = PYL::makeInstanceAt(getPath());
    instance.setProperty("ElementName", "Base server worker");
    return instance;
}

}  // namespace baseserver
