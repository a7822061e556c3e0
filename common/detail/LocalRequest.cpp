#include "common/detail/LocalRequest.h"

#include "cmpicpp/CmpiName.h"
#include "common/PYLUtil.h"

namespace PYL {

const CmpiCpp::CmpiObjectPath& LocalRequest::path() {
    if (!_local) {
        auto local = _request;
        local.setHost(CmpiCpp::CmpiName(PYLUtil::getHostName()));
        _local = std::move(local);
    }
    return *_local;
}

}  // namespace PYL
