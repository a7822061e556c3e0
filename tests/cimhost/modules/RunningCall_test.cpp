#include "cimhost/modules/RunningCall.h"

#include "cimhost/modules/AskedProviders.h"
#include "cimhost/modules/OperationName.h"
#include "tests/support/BrokerFixture.h"

#include <gmock/gmock.h>

#include <latch>
#include <thread>

namespace cimhost::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

ObjectPath fan(std::string_view name) {
    return {{}, "root/test", "TST_Fan", {{"Name", Value::string(name)}}};
}

std::string wordsOf(const RunningCall* call) {
    if (!call) return "none";
    RunningCall::Words words;
    call->describe(words);
    return std::string(words.view());
}

constexpr AskedOfProvider getFan{"Fans", "FanProvider", "getInstance", {}};

TEST(RunningCall, NamesModuleProviderOperationAndPath) {
    const ObjectPath path = fan("a");
    const RunningCall call(getFan, &path);
    EXPECT_EQ(wordsOf(RunningCall::current()),
              "module Fans, provider FanProvider, operation getInstance, path "
              "root/test:TST_Fan.Name=\"a\"");
}

TEST(RunningCall, NamesTheMethodAndLeavesOutAPathThatIsNot) {
    const RunningCall call({"Fans", "FanProvider", "invokeMethod", "Stop"}, nullptr);
    EXPECT_EQ(wordsOf(&call), "module Fans, provider FanProvider, operation invokeMethod Stop");
}

TEST(RunningCall, WritesKeysOfEveryType) {
    ObjectPath path = fan("a");
    path.setKey("Number", Value::unsignedInteger(CimType::uint16, 7));
    path.setKey("Depth", Value::signedInteger(CimType::sint8, -7));
    path.setKey("IsOn", Value::boolean(true));
    path.setKey("Other", Value::reference(fan("b")));
    path.setKey("Nothing", Value::null(CimType::string));
    const RunningCall call(getFan, &path);
    EXPECT_EQ(call.path(),
              "root/test:TST_Fan.Name=\"a\",Number=7,Depth=-7,IsOn=TRUE,"
              "Other=\"root/test:TST_Fan.Name=\"b\"\",Nothing=?");
}

TEST(RunningCall, CutsALongPath) {
    const ObjectPath path = fan(std::string(1000, 'x'));
    const RunningCall call(getFan, &path);
    EXPECT_EQ(call.path().size(), 256U);
    EXPECT_THAT(std::string(call.path()), EndsWith("xxx"));
}

TEST(RunningCall, NotesTheProviderThatIsAskedAndNoneThatItAsksItself) {
    std::vector<std::string> names;
    std::vector<std::string> others;
    {
        const AskedProviders asked(names);
        for (const std::string_view each : {"FanProvider", "PumpProvider", "FanProvider"}) {
            const RunningCall outer({"Fans", each, "associators", {}}, nullptr);
            const RunningCall inner({"Belts", "BeltProvider", "getInstance", {}}, nullptr);
        }
        const AskedProviders within(others);
        const RunningCall call({"Belts", "BeltProvider", "getInstance", {}}, nullptr);
        std::thread([] { const RunningCall elsewhere(getFan, nullptr); }).join();
    }
    const RunningCall late({"Doors", "DoorProvider", "getInstance", {}}, nullptr);
    EXPECT_THAT(names, ElementsAre("FanProvider", "PumpProvider"));
    EXPECT_THAT(others, ElementsAre("BeltProvider"));
}

TEST(RunningCall, IsTheInnermostOfItsThread) {
    EXPECT_EQ(RunningCall::current(), nullptr);
    {
        const RunningCall outer(getFan, nullptr);
        {
            const RunningCall inner({"Pumps", "PumpProvider", "associators", {}}, nullptr);
            EXPECT_EQ(RunningCall::current(), &inner);
            EXPECT_THAT(RunningCall::all(),
                        ElementsAre("module Pumps, provider PumpProvider, operation associators"));
        }
        EXPECT_EQ(RunningCall::current(), &outer);
    }
    EXPECT_EQ(RunningCall::current(), nullptr);
    EXPECT_THAT(RunningCall::all(), IsEmpty());
}

TEST(RunningCall, OtherThreadsAreTold) {
    std::latch isRunning(1);
    std::latch mayEnd(1);
    std::thread other([&] {
        const RunningCall call({"Pumps", "PumpProvider", "cleanup", {}}, nullptr);
        isRunning.count_down();
        mayEnd.wait();
    });
    isRunning.wait();
    {
        const RunningCall call(getFan, nullptr);
        EXPECT_THAT(RunningCall::all(),
                    UnorderedElementsAre("module Fans, provider FanProvider, operation getInstance",
                                         "module Pumps, provider PumpProvider, operation cleanup"));
    }
    CapturingLog log;
    logHangingCalls(log);
    EXPECT_EQ(log.countOf("error cimhost: module Pumps, provider PumpProvider, operation cleanup: "
                          "does not return"),
              1U);
    mayEnd.count_down();
    other.join();
    EXPECT_THAT(RunningCall::all(), IsEmpty());
}

TEST(RunningCall, CanBeToldWhileOthersComeAndGo) {
    std::atomic<bool> isEnough = false;
    std::vector<std::thread> threads;
    for (int each = 0; each < 3; ++each) {
        threads.emplace_back([&] {
            const ObjectPath path = fan("a");
            while (!isEnough) const RunningCall call(getFan, &path);
        });
    }
    for (int round = 0; round < 1000; ++round) {
        for (const std::string& words : RunningCall::all()) {
            EXPECT_THAT(words, EndsWith("path root/test:TST_Fan.Name=\"a\""));
        }
    }
    isEnough = true;
    for (std::thread& thread : threads) thread.join();
}

TEST(BoundedText, EndsNoLineAfterItsControlsAreBlank) {
    BoundedText<8> text;
    text.append("a\nb\x1b\x7f cdef");
    text.blankControls();
    EXPECT_EQ(text.view(), "a b   cd");
}

TEST(BoundedText, DeceivesNoReaderAfterItsControlsAreBlank) {
    const auto blanked = [](std::string_view bytes) {
        BoundedText<16> text;
        text.append(bytes);
        text.blankControls();
        return std::string(text.view());
    };
    EXPECT_EQ(blanked("a\xC2\x9B\xC2\x80z"), "a    z");
    EXPECT_EQ(blanked("a\xE2\x80\xAE\xE2\x81\xA6\xD8\x9C\xE2\x80\x8Ez"), "a           z");
    EXPECT_EQ(blanked("a\x9Bz"), "a z") << "a terminal may take the byte alone, too";
    const std::string_view harmless = "\xC3\x9B \xE2\x82\xAC \xF0\x9F\x98\x80 \xFF";
    EXPECT_EQ(blanked(harmless), harmless) << "bytes of other characters stay";
    EXPECT_EQ(blanked("0123456789abcd\xE2\x80\xAE"), "0123456789abcd\xE2 ");
}

TEST(OperationName, IsThatOfTheSlot) {
    EXPECT_EQ(operationName(&CMPIInstanceMIFT::getInstance), "getInstance");
    EXPECT_EQ(operationName(&CMPIAssociationMIFT::referenceNames), "referenceNames");
    EXPECT_EQ(operationName(&CMPIIndicationMIFT::disableIndications), "disableIndications");
    EXPECT_EQ(operationName(&CMPIMethodMIFT::invokeMethod), "invokeMethod");
}

}  // namespace
}  // namespace cimhost::test
