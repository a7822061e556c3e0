#include "common/CIMIndication.h"

#include "common/PYLUtil.h"
#include "common/detail/IndicationValues.h"

#include <atomic>

namespace PYL {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

namespace {

// Only the numbers must differ; nothing else hangs on their order between threads.
constinit std::atomic<std::uint64_t> indicationGuid{0};

}  // namespace

CIMIndication::CIMIndication(Logger& log, const std::string& name, const std::string& nameSpace,
                             int severity)
    : _name(name),
      _nameSpace(nameSpace),
      _severity(severity),
      id(indicationGuid.fetch_add(1, std::memory_order_relaxed) + 1),
      _log(log) {
    _log.info("CIMIndication cxtor()");
}

CIMIndication::~CIMIndication() { _log.info("CIMIndication dxtor()"); }

CmpiObjectPath CIMIndication::getPath() const {
    auto path = CmpiCpp::makeCmpiObjectPath(indicationBroker(), _nameSpace.c_str(), _name.c_str());
    path.setHost(PYLUtil::getHostName());
    return path;
}

void CIMIndication::addProperties(CmpiInstance& instance) {
    _log.info("CIMIndication.addProperties()");
    instance.setProperty("IndicationIdentifier", "PYL:" + _name + ":" + std::to_string(id));
    instance.setProperty("PerceivedSeverity", static_cast<unsigned short>(_severity));
    instance.setProperty("IndicationTime", presentSecond());
}

}  // namespace PYL
