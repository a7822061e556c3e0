#pragma once

#include "cimhost/objects/BrokerTables.h"
#include "testing/cimhost/testing/FaultyBroker.h"

#include <atomic>
#include <string_view>
#include <vector>

/// What is to fail, and how often each slot was called. Safe from several threads.
namespace cimtest {

struct Slot {
    std::string_view name;
    std::atomic<unsigned> calls = 0;
};

/// Slots of all tables, in the order in which the tables are listed.
std::vector<Slot*>& allSlots();

struct FaultPlan {
    Slot* slot = nullptr;
    unsigned nth = 0;
    bool forever = false;
    FaultyBroker::Fault fault = FaultyBroker::Fault::status;
    CMPIrc code = CMPI_RC_OK;
    bool happened = false;
};

/// The plan for this very call, which is counted: `slot` is null when the call is to succeed.
FaultPlan planFor(Slot& slot);

/// The tables of objects, by kind, in front of these.
cimhost::ObjectTables interposed(const cimhost::ObjectTables& real);

void setPlan(const FaultPlan& plan);
bool planHappened();

}  // namespace cimtest
