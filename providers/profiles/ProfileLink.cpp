#include "providers/profiles/ProfileLink.h"

#include "cmpicpp/CmpiInstance.h"
#include "common/PYLUtil.h"

namespace profiles {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

CmpiObjectPath ProfileLink::getPath() {
    auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()), CmpiName(_nameSpace),
                                            CmpiName(_class.name));
    path.setHost(CmpiName(PYLUtil::getHostName()));
    path.addKey(_class.firstRole, _first());
    path.addKey(_class.secondRole, _second());
    return path;
}

CmpiCpp::CmpiInstance ProfileLink::getInstance() {
    auto instance = CmpiCpp::makeCmpiInstance(CmpiBroker(PYLUtil::getBroker()), getPath());
    instance.setProperty(_class.firstRole, _first());
    instance.setProperty(_class.secondRole, _second());
    return instance;
}

CmpiObjectPath ProfileLink::getAssociatedPath(const CmpiObjectPath& path) {
    auto first = _first();
    auto second = _second();
    if (path == first) return second;
    if (path == second) return first;
    return {};
}

}  // namespace profiles
