#include "common/detail/LocalRequest.h"

#include "cmpicpp/CmpiData.h"
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

bool LocalRequest::isFor(const CmpiCpp::CmpiObjectPath& instance) {
    if (path() == instance) return true;
    if (!_endsAreRead) _readEnds();
    return _withLocalEnds && *_withLocalEnds == instance;
}

void LocalRequest::_readEnds() {
    for (unsigned int i = 0; i < path().getKeyCount(); ++i) {
        const auto [name, key] = path().getKeyAt(i);
        if (key.getType() != CMPI_ref || key.isNull()) continue;
        auto end = key.asObjectPath();
        if (!end.getHost().empty()) continue;
        end.setHost(path().getHost());
        if (!_withLocalEnds) _withLocalEnds = path();
        _withLocalEnds->addKey(name.c_str(), end);
    }
    _endsAreRead = true;
}

}  // namespace PYL
