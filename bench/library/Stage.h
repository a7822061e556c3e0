#pragma once

#include "cimhost/objects/Broker.h"
#include "cmpi/cmpift.h"

#include <optional>
#include <string_view>

/// The broker that all rows work with: cimhost's own, in this process. Nobody reads its log.
const cimhost::Broker& stageBroker();

constexpr const char* stageNameSpace = "root/bench";

/// Takes results as a client's connection would, and drops them.
class CountingSink : public cimhost::ResultSink {
public:
    void instance(const cimhost::Instance&) override { ++count; }
    void path(const cimhost::ObjectPath&) override { ++count; }

    std::size_t count = 0;
};

/// What an object manager prepares for one call of an MI.
struct Call {
    /// The request names a class, and with `deviceId` one device of it.
    explicit Call(const char* className, std::string_view deviceId = {});

    cimhost::CallScope scope;
    CountingSink sink;
    CMPIContext* context;
    CMPIResult* result;
    CMPIObjectPath* path;
};

/// A scope that is renewed now and then, so that work done in it many times takes little memory.
class RollingScope {
public:
    /// Before each piece of work.
    void next() {
        constexpr int piecesPerScope = 64;
        if (_pieces++ % piecesPerScope != 0) return;
        _scope.reset();
        _scope.emplace();
    }

private:
    std::optional<cimhost::CallScope> _scope;
    int _pieces = 0;
};
