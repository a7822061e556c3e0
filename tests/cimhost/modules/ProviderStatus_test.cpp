#include "cimhost/modules/ProviderStatus.h"

#include "cimhost/operations/UpCalls.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <new>
#include <stdexcept>

namespace cimhost::test {
namespace {

class ProviderStatus : public testing::Test {
protected:
    std::string failureOf(int code, const char* message = nullptr) {
        const CMPIStatus status{static_cast<CMPIrc>(code),
                                message ? makeString(broker, message) : nullptr};
        return errorOf([&] { requireSuccess(status, "FanProvider"); });
    }

    Repository repository;
    CapturingLog log;
    Broker broker{repository, log, fillUpCalls};
    CallScope scope;
};

TEST_F(ProviderStatus, SuccessIsNoFailure) { EXPECT_EQ(failureOf(0, "ignored"), ""); }

TEST_F(ProviderStatus, CimCodesGoOutAsTheyAre) {
    for (int code = 1; code <= 17; ++code) {
        EXPECT_EQ(failureOf(code, "text"), std::to_string(code) + ": text");
    }
    EXPECT_EQ(failureOf(27, "text"), "27: text");
    EXPECT_EQ(failureOf(29, "text"), "29: text");
}

TEST_F(ProviderStatus, WithoutAMessageTheCodeIsNamed) {
    EXPECT_EQ(failureOf(6), "6: CIM_ERR_NOT_FOUND");
    EXPECT_EQ(failureOf(6, ""), "6: CIM_ERR_NOT_FOUND");
    EXPECT_EQ(failureOf(29), "29: CIM_ERR_QUERY_FEATURE_NOT_SUPPORTED");
}

TEST_F(ProviderStatus, CodesOfCmpiAloneAreFailuresWithTheirNumber) {
    for (const int code : {18, 50, 51, 60, 61, 62, 100, 200}) {
        EXPECT_EQ(failureOf(code),
                  "1: provider FanProvider answered with CMPI return code " + std::to_string(code));
    }
}

TEST_F(ProviderStatus, UnknownNumbersAreFailuresWithTheirNumber) {
    EXPECT_EQ(failureOf(-1, "odd"),
              "1: odd: provider FanProvider answered with CMPI return code -1");
    EXPECT_EQ(failureOf(28), "1: provider FanProvider answered with CMPI return code 28");
    EXPECT_EQ(failureOf(2147483647),
              "1: provider FanProvider answered with CMPI return code 2147483647");
}

TEST_F(ProviderStatus, AMessageWithoutATableIsPassedOver) {
    CMPIString broken{nullptr, nullptr};
    EXPECT_EQ(messageOf({CMPI_RC_ERR_FAILED, &broken}), "");
}

TEST_F(ProviderStatus, ExceptionsOfEveryKindBecomeFailuresOfTheProvider) {
    const auto failureOfThrow = [](auto exception) {
        return errorOf([&] { callProvider("FanProvider", [&] { throw exception; }); });
    };
    EXPECT_EQ(failureOfThrow(std::runtime_error("no fan")), "1: provider FanProvider threw no fan");
    EXPECT_EQ(failureOfThrow(std::bad_alloc()), "1: provider FanProvider threw std::bad_alloc");
    EXPECT_EQ(failureOfThrow(7), "1: provider FanProvider threw an exception of its own type");
}

}  // namespace
}  // namespace cimhost::test
