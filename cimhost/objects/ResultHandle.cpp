#include "cimhost/objects/ResultHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/ErrorHandle.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"

namespace cimhost {

namespace {

// Whether it is a mistake of the provider or of the sink, the operation cannot have this result.
[[noreturn]] void refuse(const char* what) {
    throw CimError(CimCode::failed, std::string("this operation takes no ") + what);
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, CMPIType type) noexcept {
    return enter<ResultObject>(result, [&](ResultObject& object) {
        const Value data = valueOf(value, type);
        object.door->pass([&](ResultSink& sink) { sink.data(data); });
    });
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* instance) noexcept {
    return enter<ResultObject>(result, [&](ResultObject& object) {
        const Instance& model = requiredObject<InstanceObject>(instance).complete();
        object.door->pass([&](ResultSink& sink) { sink.instance(model); });
    });
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path) noexcept {
    return enter<ResultObject>(result, [&](ResultObject& object) {
        const ObjectPath& model = requiredObject<ObjectPathObject>(path).model.read();
        object.door->pass([&](ResultSink& sink) { sink.path(model); });
    });
}

CMPIStatus returnDone(const CMPIResult* result) noexcept {
    return enter<ResultObject>(result, [](ResultObject& object) {
        object.door->pass([](ResultSink& sink) { sink.done(); });
    });
}

CMPIStatus returnError(const CMPIResult* result, const CMPIError* error) noexcept {
    return enter<ResultObject>(result, [&](ResultObject& object) {
        const ErrorObject& details = requiredObject<ErrorObject>(error);
        const Instance model = details.asInstance();
        object.door->pass([&](ResultSink& sink) { sink.error(model); });
        object.door->note(details.message());
    });
}

}  // namespace

const CMPIResultFT ResultObject::table = {
    CMPICurrentVersion,
    releaseObject<ResultObject>,
    cloneObject<ResultObject>,
    returnData,
    returnInstance,
    returnObjectPath,
    returnDone,
    returnError,
};

void SinkDoor::close() noexcept {
    const std::lock_guard lock(_mutex);
    _sink = nullptr;
}

std::exception_ptr SinkDoor::failure() noexcept {
    const std::lock_guard lock(_mutex);
    return _failure;
}

void SinkDoor::note(std::string_view errorText) {
    const std::lock_guard lock(_mutex);
    if (_errorText.empty()) _errorText = errorText;
}

std::string SinkDoor::errorText() {
    const std::lock_guard lock(_mutex);
    return _errorText;
}

ResultSink& SinkDoor::_open() {
    if (!_sink) throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
    if (_failure) std::rethrow_exception(_failure);
    return *_sink;
}

void ResultSink::instance(const Instance&) { refuse("instances"); }

void ResultSink::path(const ObjectPath&) { refuse("object paths"); }

void ResultSink::data(const Value&) { refuse("plain values"); }

CMPIResult* makeResult(const Broker& broker, ResultSink& sink) {
    return &make<ResultObject>(Home{broker}, sink);
}

std::string errorTextOf(const CMPIResult* result) {
    const auto* const object = findObject<ResultObject>(result);
    return object ? object->door->errorText() : std::string();
}

std::exception_ptr failureOf(const CMPIResult* result) noexcept {
    const auto* const object = findObject<ResultObject>(result);
    return object ? object->door->failure() : nullptr;
}

}  // namespace cimhost
