#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/objects/Objects.h"

#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace cimhost {

/// The way to a sink, shared by a result handle and its clones. Safe from several threads, since a
/// clone may be used by another thread than its original.
class SinkDoor {
public:
    explicit SinkDoor(ResultSink& sink) noexcept : _sink(&sink) {}

    /// From now on there is no sink.
    void close() noexcept;

    /// Gives the sink to `deliver`. Throws what that throws, and again at every later call; Failure
    /// CMPI_RC_ERR_INVALID_HANDLE when the door is closed.
    template <typename Deliver>
    void pass(Deliver&& deliver) {
        const std::lock_guard lock(_mutex);
        ResultSink& sink = _open();
        try {
            deliver(sink);
        } catch (...) {
            _failure = std::current_exception();
            throw;
        }
    }

    std::exception_ptr failure() noexcept;

    /// Keeps the text of the first error object that has one.
    void note(std::string_view errorText);
    std::string errorText();

private:
    ResultSink& _open();

    std::mutex _mutex;
    ResultSink* _sink;
    std::exception_ptr _failure;
    std::string _errorText;
};

struct ResultObject : ObjectBase<CMPIResult, ObjectKind::result> {
    static const CMPIResultFT table;

    explicit ResultObject(ResultSink& sink) : door(std::make_shared<SinkDoor>(sink)) {}
    ResultObject(const ResultObject&) = default;
    ~ResultObject() {
        if (origin != Origin::clone) door->close();
    }

    std::shared_ptr<SinkDoor> door;
};

}  // namespace cimhost
