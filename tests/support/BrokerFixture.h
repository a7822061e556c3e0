#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/objects/Objects.h"
#include "cimhost/operations/UpCalls.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// Where the comparison of tests looks for it: beside the type.
inline bool operator==(const CMPIStatus& status, CMPIrc code) noexcept { return status.rc == code; }

namespace cimhost {

/// Keeps the lines that are written. Safe from several threads.
class CapturingLog final : public BrokerLog {
public:
    struct Line {
        Level level;
        std::string source;
        std::string message;
    };

    void write(Level level, std::string_view source, std::string_view message) noexcept override {
        const std::lock_guard lock(_mutex);
        _lines.push_back({level, std::string(source), std::string(message)});
    }

    std::vector<Line> lines() const {
        const std::lock_guard lock(_mutex);
        return _lines;
    }
    /// How many lines have this part, as "error FanProvider: text".
    std::size_t countOf(std::string_view part) const;

private:
    mutable std::mutex _mutex;
    std::vector<Line> _lines;
};

/// Namespace root/test with class Test_Base (key Name, qualifiers), its subclass Test_Derived, and
/// Test_Other.
Repository testRepository();

/// The manner that the environment variable PYL_MANNER names; standard when it is not set.
Manner mannerUnderTest();

/// A broker and the scope of one provider call: what a provider finds when it is called.
struct BrokerCall {
    Repository repository = testRepository();
    CapturingLog log;
    Broker realBroker{repository, log, fillUpCalls, mannerUnderTest()};
    CallScope scope;
};

/// A broker over the test classes, within one call.
class BrokerTest : public testing::Test, protected BrokerCall {
protected:
    const CMPIBroker* broker() const { return realBroker.handle(); }
    const CMPIBrokerEncFT& eft() const { return *broker()->eft; }
    const CMPIBrokerMemFT& mft() const { return *broker()->mft; }

    CMPIString* newString(const char* text) { return eft().newString(broker(), text, &status); }
    CMPIObjectPath* newPath(const char* className = "Test_Base") {
        return eft().newObjectPath(broker(), "root/test", className, &status);
    }
    CMPIInstance* newInstance(const char* className = "Test_Base") {
        return eft().newInstance(broker(), newPath(className), &status);
    }

    CMPIStatus status{CMPI_RC_OK, nullptr};
};

inline std::string textOf(const CMPIString* string) {
    return string ? string->ft->getCharPtr(string, nullptr) : "<null>";
}

/// The `char*` that CMPI_chars wants in place of a value.
inline const CMPIValue* charsValue(const char* text) {
    return reinterpret_cast<const CMPIValue*>(text);
}

inline CMPIValue uint32Value(CMPIUint32 number) {
    CMPIValue value{};
    value.uint32 = number;
    return value;
}

/// A handle that looks like one of ours and is none.
template <typename Handle>
Handle foreignHandle(const Handle* ours) {
    static const int somethingElse = 0;
    Handle handle = *ours;
    handle.hdl = &somethingElse;
    return handle;
}

}  // namespace cimhost
