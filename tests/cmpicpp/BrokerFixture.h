#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/objects/Objects.h"
#include "cimhost/operations/UpCalls.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiStatus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace CmpiCpp::test {

/// Counts what the broker complains about: handles ended twice, or by somebody who may not.
class CountingLog final : public cimhost::BrokerLog {
public:
    void write(Level, std::string_view, std::string_view) noexcept override { ++_lines; }

    int lines() const noexcept { return _lines; }

private:
    std::atomic<int> _lines{0};
};

/// A real broker, and the scope of one provider call around each test.
class BrokerTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(_log.lines(), 0) << "the broker has complained"; }

    const CMPIBroker* handle() const { return _broker.handle(); }
    CmpiBroker broker() const { return CmpiBroker(handle()); }

    CmpiObjectPath path() const {
        CmpiObjectPath made = makeCmpiObjectPath(broker(), "root/ktq", "PYL_Fan");
        made.addKey("DeviceID", "1");
        made.addKey("Slot", 2U);
        return made;
    }

    cimhost::Repository _repository;
    CountingLog _log;
    cimhost::Broker _broker{_repository, _log, cimhost::fillUpCalls};
    cimhost::CallScope _scope;
};

/// The status that the action throws, or CMPI_RC_OK.
template <typename Action>
CMPIrc codeOf(Action&& action) {
    try {
        action();
    } catch (const CmpiStatus& status) {
        return status.rc();
    }
    return CMPI_RC_OK;
}

/// The text of the status that the action throws; a note when it throws none.
template <typename Action>
std::string messageOf(Action&& action) {
    try {
        action();
    } catch (const CmpiStatus& status) {
        return status.message();
    }
    return "(nothing was thrown)";
}

}  // namespace CmpiCpp::test
