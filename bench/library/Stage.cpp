#include "bench/library/Stage.h"

#include "bench/library/PlainPath.h"
#include "cimhost/operations/UpCalls.h"
#include "cmpicpp/CmpiBroker.h"
#include "common/PYLUtil.h"

#include <string>

namespace {

class NoLog : public cimhost::BrokerLog {
public:
    void write(Level, std::string_view, std::string_view) noexcept override {}
};

cimhost::ObjectPath requestFor(const char* className, std::string_view deviceId) {
    cimhost::ObjectPath path{"client.example.com", stageNameSpace, className, {}};
    if (deviceId.empty()) return path;
    path.setKey("SystemCreationClassName", cimhost::Value::string(benchSystemClass));
    path.setKey("SystemName", cimhost::Value::string(PYL::PYLUtil::getHostName()));
    path.setKey("CreationClassName", cimhost::Value::string(className));
    path.setKey("DeviceID", cimhost::Value::string(std::string(deviceId)));
    return path;
}

}  // namespace

const cimhost::Broker& stageBroker() {
    static const cimhost::Repository repository;
    static NoLog log;
    static const cimhost::Broker broker(repository, log, cimhost::fillUpCalls);
    static const bool isKnown = [] {
        PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(broker.handle()));
        return true;
    }();
    static_cast<void>(isKnown);
    return broker;
}

Call::Call(const char* className, std::string_view deviceId)
    : context(cimhost::makeContext(stageBroker(), {stageNameSpace, "", "", "", 0})),
      result(cimhost::makeResult(stageBroker(), sink)),
      path(cimhost::makeObjectPath(stageBroker(), requestFor(className, deviceId))) {}
