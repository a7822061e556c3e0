#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiResult.h"
#include "cmpicpp/CmpiValue.h"

#include <vector>

/// The sinks that stand before a CMPIResult of the object manager. Not installed.
namespace CmpiCpp {

class PathSink final : public CmpiObjectPathResult {
public:
    explicit PathSink(const CMPIResult* result) noexcept : _result(result) {}

    void deliver(const CmpiObjectPath& path) override;

private:
    const CMPIResult* _result;
};

class InstanceSink final : public CmpiInstanceResult {
public:
    explicit InstanceSink(const CMPIResult* result) noexcept : _result(result) {}

    void deliver(const CmpiInstance& instance) override;

private:
    const CMPIResult* _result;
};

/// Keeps what is delivered, also beyond a CmpiMemoryMark of whoever delivers it.
class PathList final : public CmpiObjectPathResult {
public:
    void deliver(const CmpiObjectPath& path) override { _paths.push_back(path.clone()); }

    const std::vector<CmpiObjectPath>& paths() const noexcept { return _paths; }

private:
    std::vector<CmpiObjectPath> _paths;
};

/// Return values go to the result, output arguments to the container that the object manager
/// passed.
class MethodSink final : public CmpiMethodResult {
public:
    MethodSink(const CMPIBroker* broker, const CMPIResult* result, CMPIArgs* out) noexcept
        : _broker(broker), _result(result), _out(out) {}

    void deliver(const CmpiData& value) override { _returned(value); }
    void deliver(unsigned char value) override { _returned(value); }
    void deliver(signed char value) override { _returned(value); }
    void deliver(unsigned short value) override { _returned(value); }
    void deliver(short value) override { _returned(value); }
    void deliver(unsigned int value) override { _returned(value); }
    void deliver(int value) override { _returned(value); }
    void deliver(unsigned long long value) override { _returned(value); }
    void deliver(long long value) override { _returned(value); }
    void deliver(float value) override { _returned(value); }
    void deliver(double value) override { _returned(value); }
    void deliver(bool value) override { _returned(value); }
    void deliver(const char* value) override { _returned(value); }
    void deliver(const std::string& value) override { _returned(value); }
    void deliver(const CmpiObjectPath& value) override { _returned(value); }

    void deliver(const CmpiName& name, const CmpiData& value) override { _output(name, value); }
    void deliver(const CmpiName& name, unsigned char value) override { _output(name, value); }
    void deliver(const CmpiName& name, signed char value) override { _output(name, value); }
    void deliver(const CmpiName& name, unsigned short value) override { _output(name, value); }
    void deliver(const CmpiName& name, short value) override { _output(name, value); }
    void deliver(const CmpiName& name, unsigned int value) override { _output(name, value); }
    void deliver(const CmpiName& name, int value) override { _output(name, value); }
    void deliver(const CmpiName& name, unsigned long long value) override { _output(name, value); }
    void deliver(const CmpiName& name, long long value) override { _output(name, value); }
    void deliver(const CmpiName& name, float value) override { _output(name, value); }
    void deliver(const CmpiName& name, double value) override { _output(name, value); }
    void deliver(const CmpiName& name, bool value) override { _output(name, value); }
    void deliver(const CmpiName& name, const char* value) override { _output(name, value); }
    void deliver(const CmpiName& name, const std::string& value) override { _output(name, value); }
    void deliver(const CmpiName& name, const CmpiObjectPath& value) override {
        _output(name, value);
    }

private:
    void _returned(CmpiValue value);
    void _output(const CmpiName& name, CmpiValue value);

    const CMPIBroker* _broker;
    const CMPIResult* _result;
    CMPIArgs* _out;
};

}  // namespace CmpiCpp
