#pragma once

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiResult.h"
#include "tests/support/Journal.h"

#include <functional>
#include <string>

/// Sinks that note what they get as "delivered ...". What `onDeliver` throws refuses the item, of
/// which then nothing is noted.
struct CapturedPaths : CmpiCpp::CmpiObjectPathResult {
    explicit CapturedPaths(Journal& events) : journal(events) {}

    void deliver(const CmpiCpp::CmpiObjectPath& path) override {
        onDeliver();
        journal.note("delivered " + path.str());
    }

    Journal& journal;
    std::function<void()> onDeliver = [] {};
};

struct CapturedInstances : CmpiCpp::CmpiInstanceResult {
    explicit CapturedInstances(Journal& events) : journal(events) {}

    void deliver(const CmpiCpp::CmpiInstance& instance) override {
        onDeliver();
        journal.note("delivered " + instance.str() + " at " + instance.getPath().str());
    }

    Journal& journal;
    std::function<void()> onDeliver = [] {};
};

/// Notes the type with each value, such as "delivered uint8 200" and "delivered Speed = uint8 200".
class CapturedMethodResult : public CmpiCpp::CmpiMethodResult {
public:
    using Name = CmpiCpp::CmpiName;

    explicit CapturedMethodResult(Journal& events) : journal(events) {}

    void deliver(const CmpiCpp::CmpiData& value) override { _note("data", value.str()); }
    void deliver(unsigned char value) override { _note("uint8", value); }
    void deliver(signed char value) override { _note("sint8", value); }
    void deliver(unsigned short value) override { _note("uint16", value); }
    void deliver(short value) override { _note("sint16", value); }
    void deliver(unsigned int value) override { _note("uint32", value); }
    void deliver(int value) override { _note("sint32", value); }
    void deliver(unsigned long long value) override { _note("uint64", value); }
    void deliver(long long value) override { _note("sint64", value); }
    void deliver(float value) override { _note("real32", value); }
    void deliver(double value) override { _note("real64", value); }
    void deliver(bool value) override { _note("boolean", value); }
    void deliver(const char* value) override { _note("text", value ? value : "NULL"); }
    void deliver(const std::string& value) override { _note("string", value); }
    void deliver(const CmpiCpp::CmpiObjectPath& value) override { _note("path", value.str()); }

    void deliver(const Name& name, const CmpiCpp::CmpiData& value) override {
        _note(name, "data", value.str());
    }
    void deliver(const Name& name, unsigned char value) override { _note(name, "uint8", value); }
    void deliver(const Name& name, signed char value) override { _note(name, "sint8", value); }
    void deliver(const Name& name, unsigned short value) override { _note(name, "uint16", value); }
    void deliver(const Name& name, short value) override { _note(name, "sint16", value); }
    void deliver(const Name& name, unsigned int value) override { _note(name, "uint32", value); }
    void deliver(const Name& name, int value) override { _note(name, "sint32", value); }
    void deliver(const Name& name, unsigned long long value) override {
        _note(name, "uint64", value);
    }
    void deliver(const Name& name, long long value) override { _note(name, "sint64", value); }
    void deliver(const Name& name, float value) override { _note(name, "real32", value); }
    void deliver(const Name& name, double value) override { _note(name, "real64", value); }
    void deliver(const Name& name, bool value) override { _note(name, "boolean", value); }
    void deliver(const Name& name, const char* value) override {
        _note(name, "text", value ? value : "NULL");
    }
    void deliver(const Name& name, const std::string& value) override {
        _note(name, "string", value);
    }
    void deliver(const Name& name, const CmpiCpp::CmpiObjectPath& value) override {
        _note(name, "path", value.str());
    }

    Journal& journal;
    std::function<void()> onDeliver = [] {};

private:
    static std::string _text(const std::string& value) { return value; }
    template <typename Number>
    requires(std::is_arithmetic_v<Number>) static std::string _text(Number value) {
        return std::to_string(value);
    }

    template <typename Value>
    void _note(const std::string& type, const Value& value) {
        onDeliver();
        journal.note("delivered " + type + " " + _text(value));
    }
    template <typename Value>
    void _note(const CmpiCpp::CmpiName& name, const std::string& type, const Value& value) {
        onDeliver();
        journal.note("delivered " + name.str() + " = " + type + " " + _text(value));
    }
};
