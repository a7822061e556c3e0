#include "cimhost/objects/BrokerTables.h"
#include "tests/support/BrokerFixture.h"

#include <cerrno>
#include <ctime>

namespace cimhost {
namespace {

const CMPIBrokerExtFT& xft = systemTable;

TEST(SystemTable, ResolvesBareLibraryNames) {
    EXPECT_STREQ(xft.resolveFileName("Disk"), "libDisk.so");
    EXPECT_EQ(xft.resolveFileName("Disk"), xft.resolveFileName("Disk"));
    for (const char* const bad : {"", "../Disk", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(xft.resolveFileName(bad), nullptr);
    }
}

void* giveBack(void* parameter) { return parameter; }

TEST(SystemTable, StartsThreadsAndGivesTheirValue) {
    int value = 0;
    void* const thread = xft.newThread(giveBack, &value, 0);
    ASSERT_NE(thread, nullptr);
    void* result = nullptr;
    EXPECT_EQ(xft.joinThread(thread, &result), 0);
    EXPECT_EQ(result, &value);
    EXPECT_EQ(xft.newThread(nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(xft.joinThread(nullptr, &result), EINVAL);
    EXPECT_EQ(xft.cancelThread(nullptr), EINVAL);
}

struct Destroyed {
    bool& flag;
    ~Destroyed() { flag = true; }
};

void* leaveEarly(void* parameter) {
    const Destroyed sentinel{*static_cast<bool*>(parameter)};
    xft.exitThread(parameter);
    return nullptr;
}

TEST(SystemTable, EndsTheCallingThreadAndUnwindsIt) {
    bool unwound = false;
    void* result = nullptr;
    EXPECT_EQ(xft.joinThread(xft.newThread(leaveEarly, &unwound, 0), &result), 0);
    EXPECT_EQ(result, &unwound);
    EXPECT_TRUE(unwound);
}

struct Gate {
    void* mutex = xft.newMutex(0);
    void* condition = xft.newCondition(0);
    bool open = false;

    ~Gate() {
        xft.destroyCondition(condition);
        xft.destroyMutex(mutex);
    }
};

void* waitForEver(void* parameter) {
    const Destroyed sentinel{*static_cast<bool*>(parameter)};
    for (;;) xft.threadSleep(1000);
}

TEST(SystemTable, CancelsThreadsAndUnwindsThem) {
    bool unwound = false;
    void* const thread = xft.newThread(waitForEver, &unwound, 0);
    EXPECT_EQ(xft.cancelThread(thread), 0);
    EXPECT_EQ(xft.joinThread(thread, nullptr), 0);
    EXPECT_TRUE(unwound);
}

void* openGate(void* parameter) {
    auto* const gate = static_cast<Gate*>(parameter);
    xft.lockMutex(gate->mutex);
    gate->open = true;
    xft.signalCondition(gate->condition);
    xft.unlockMutex(gate->mutex);
    return nullptr;
}

TEST(SystemTable, WaitsForConditions) {
    Gate gate;
    xft.lockMutex(gate.mutex);
    EXPECT_NE(xft.newThread(openGate, &gate, 1), nullptr);
    while (!gate.open) EXPECT_EQ(xft.condWait(gate.condition, gate.mutex), 0);
    xft.unlockMutex(gate.mutex);
}

TEST(SystemTable, WaitsUntilAnAbsoluteTime) {
    const Gate gate;
    timespec past{std::time(nullptr) - 1, 0};
    EXPECT_EQ(xft.lockMutex2(gate.mutex), 0);
    EXPECT_EQ(xft.timedCondWait(gate.condition, gate.mutex, &past), ETIMEDOUT);
    EXPECT_EQ(xft.unlockMutex2(gate.mutex), 0);
    EXPECT_EQ(xft.timedCondWait(gate.condition, gate.mutex, nullptr), EINVAL);
    EXPECT_EQ(xft.timedCondWait(nullptr, gate.mutex, &past), EINVAL);
    EXPECT_EQ(xft.condWait(gate.condition, nullptr), EINVAL);
    EXPECT_EQ(xft.signalCondition(nullptr), EINVAL);
}

TEST(SystemTable, HasRecursiveMutexes) {
    void* const mutex = xft.newMutex(0);
    EXPECT_EQ(xft.lockMutex2(mutex), 0);
    EXPECT_EQ(xft.lockMutex2(mutex), 0);
    EXPECT_EQ(xft.unlockMutex2(mutex), 0);
    EXPECT_EQ(xft.unlockMutex2(mutex), 0);
    EXPECT_EQ(xft.destroyMutex2(mutex), 0);
}

// ThreadSanitizer reports the misuse itself.
#if !defined(__SANITIZE_THREAD__)
TEST(SystemTable, DoesNotUnlockAMutexThatIsNotLocked) {
    void* const mutex = xft.newMutex(0);
    EXPECT_EQ(xft.unlockMutex2(mutex), EPERM);
    EXPECT_EQ(xft.destroyMutex2(mutex), 0);
}

TEST(SystemTable, DoesNotDestroyAMutexThatIsLocked) {
    void* const mutex = xft.newMutex(0);
    xft.lockMutex(mutex);
    EXPECT_EQ(xft.destroyMutex2(mutex), EBUSY);
    xft.unlockMutex(mutex);
    EXPECT_EQ(xft.destroyMutex2(mutex), 0);
}
#endif

TEST(SystemTable, IgnoresNullMutexesAndConditions) {
    xft.destroyMutex(nullptr);
    xft.lockMutex(nullptr);
    xft.unlockMutex(nullptr);
    xft.destroyCondition(nullptr);
    EXPECT_EQ(xft.destroyMutex2(nullptr), EINVAL);
    EXPECT_EQ(xft.lockMutex2(nullptr), EINVAL);
    EXPECT_EQ(xft.unlockMutex2(nullptr), EINVAL);
    EXPECT_EQ(xft.destroyCondition2(nullptr), EINVAL);
}

int onceCalls = 0;
void countOnce() { ++onceCalls; }

TEST(SystemTable, CallsAFunctionOnceForEachFlag) {
    int flag = 0;
    onceCalls = 0;
    EXPECT_EQ(xft.threadOnce(&flag, countOnce), 0);
    EXPECT_EQ(xft.threadOnce(&flag, countOnce), 0);
    EXPECT_EQ(onceCalls, 1);
    EXPECT_EQ(xft.threadOnce(nullptr, countOnce), EINVAL);
    EXPECT_EQ(xft.threadOnce(&flag, nullptr), EINVAL);
}

using Key = CMPI_THREAD_KEY_TYPE;
int cleanups = 0;
void countCleanup(void*) { ++cleanups; }

void* useKey(void* parameter) {
    const Key key = *static_cast<Key*>(parameter);
    EXPECT_EQ(xft.getThreadSpecific(key), nullptr);
    EXPECT_EQ(xft.setThreadSpecific(key, &cleanups), 0);
    return xft.getThreadSpecific(key);
}

TEST(SystemTable, KeepsValuesByThreadAndCleansThemUp) {
    Key key = 0;
    int mine = 0;
    cleanups = 0;
    ASSERT_EQ(xft.createThreadKey(&key, countCleanup), 0);
    EXPECT_EQ(xft.setThreadSpecific(key, &mine), 0);
    void* seen = nullptr;
    xft.joinThread(xft.newThread(useKey, &key, 0), &seen);
    EXPECT_EQ(seen, &cleanups);
    EXPECT_EQ(cleanups, 1);
    EXPECT_EQ(xft.getThreadSpecific(key), &mine);
    EXPECT_EQ(xft.destroyThreadKey(key), 0);
    EXPECT_EQ(xft.destroyThreadKey(key), EINVAL);
    EXPECT_EQ(xft.createThreadKey(nullptr, nullptr), EINVAL);
}

TEST(SystemTable, WritesTheFirstFourBytesOfAKeyOnly) {
    std::uint32_t twoKeys[2] = {0, 0xabcdabcd};
    ASSERT_EQ(xft.createThreadKey(reinterpret_cast<Key*>(twoKeys), nullptr), 0);
    EXPECT_EQ(twoKeys[1], 0xabcdabcd);
    EXPECT_EQ(xft.destroyThreadKey(static_cast<Key>(twoKeys[0])), 0);
}

TEST(SystemTable, SleepsAtLeastAsLongAsAsked) {
    timespec before{};
    timespec after{};
    clock_gettime(CLOCK_MONOTONIC, &before);
    EXPECT_EQ(xft.threadSleep(2), 0);
    clock_gettime(CLOCK_MONOTONIC, &after);
    const auto nanoseconds = [](const timespec& time) {
        return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    };
    EXPECT_GE(nanoseconds(after) - nanoseconds(before), 2'000'000);
}

}  // namespace
}  // namespace cimhost
