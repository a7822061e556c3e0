#include "testing/cimhost/testing/FaultyBroker.h"

#include "testing/FaultPlan.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>

namespace cimtest {

namespace {

std::mutex planMutex;
FaultPlan currentPlan;
std::atomic<bool> brokerExists = false;

Slot& findSlot(std::string_view name) {
    const auto found =
        std::ranges::find_if(allSlots(), [name](const Slot* slot) { return slot->name == name; });
    if (found == allSlots().end()) {
        throw std::invalid_argument("no such slot: " + std::string(name));
    }
    return **found;
}

}  // namespace

FaultPlan planFor(Slot& slot) {
    const unsigned call = ++slot.calls;
    const std::lock_guard lock(planMutex);
    const bool due = currentPlan.slot == &slot &&
                     (currentPlan.forever ? call >= currentPlan.nth : call == currentPlan.nth);
    if (!due) return {};
    currentPlan.happened = true;
    return currentPlan;
}

void setPlan(const FaultPlan& plan) {
    const std::lock_guard lock(planMutex);
    currentPlan = plan;
    for (Slot* const slot : allSlots()) slot->calls = 0;
}

bool planHappened() {
    const std::lock_guard lock(planMutex);
    return currentPlan.happened;
}

FaultyBroker::FaultyBroker(const CMPIBroker* real) : _handle(interposed(*real)) {
    if (brokerExists.exchange(true)) throw std::logic_error("there is a faulty broker already");
    setPlan({});
}

FaultyBroker::~FaultyBroker() {
    setPlan({});
    brokerExists = false;
}

std::vector<std::string> FaultyBroker::slots() {
    std::vector<std::string> names;
    for (const Slot* const slot : allSlots()) names.emplace_back(slot->name);
    return names;
}

void FaultyBroker::failCall(std::string_view slot, unsigned nth, Fault fault, CMPIrc code) {
    setPlan({&findSlot(slot), nth, false, fault, code, false});
}

void FaultyBroker::failFrom(std::string_view slot, unsigned nth, Fault fault, CMPIrc code) {
    setPlan({&findSlot(slot), nth, true, fault, code, false});
}

void FaultyBroker::heal() { setPlan({}); }

bool FaultyBroker::hasFailed() const noexcept { return planHappened(); }

unsigned FaultyBroker::calls(std::string_view slot) const { return findSlot(slot).calls; }

}  // namespace cimtest
