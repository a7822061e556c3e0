#include "common/PYLUtil.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/Failures.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using cimtest::FaultyBroker;
using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

struct ArgumentHelpers : testing::Test {
    TestBroker host;
    CmpiArgs arguments = CmpiCpp::makeCmpiArgs(host.broker());

    std::string refusal(const char* name, unsigned short type) {
        return outcomeOf([&] { PYLUtil::getArg(arguments, name, type); });
    }
    CmpiObjectPath emptyPath() const {
        return CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", "PYL_Thing");
    }
};

TEST_F(ArgumentHelpers, FindAnArgumentOfTheExpectedType) {
    arguments.addArg("Speed", 42U);
    EXPECT_EQ(PYLUtil::getArg(arguments, "Speed", CMPI_uint32).asUint64(), 42U);
    EXPECT_EQ(PYLUtil::getArg(arguments, "sPEED", CMPI_uint32).asUint64(), 42U);
}

TEST_F(ArgumentHelpers, TellTheClientWhichArgumentIsMissing) {
    EXPECT_EQ(refusal("Speed", CMPI_uint32), "status 4 Argument 'Speed' not present");
    EXPECT_EQ(refusal("100%s", CMPI_uint32), "status 4 Argument '100%s' not present");
    EXPECT_EQ(refusal("", CMPI_uint32), "status 4 Argument '' not present");
    arguments = CmpiArgs();
    EXPECT_EQ(refusal("Speed", CMPI_uint32), "status 4 Argument 'Speed' not present");
}

TEST_F(ArgumentHelpers, TellTheClientBothTypes) {
    arguments.addArg("Speed", 42U);
    EXPECT_EQ(refusal("Speed", CMPI_string),
              "status 4 Argument 'Speed' has bad type uint32, expecting string");
    EXPECT_EQ(refusal("Speed", CMPI_uint64),
              "status 4 Argument 'Speed' has bad type uint32, expecting uint64");
}

TEST_F(ArgumentHelpers, CompareTheElementsTypeOfAnArray) {
    arguments.addArg("Speeds", PYLUtil::stringToUint8Array("ab"));
    const auto value = PYLUtil::getArg(arguments, "Speeds", CMPI_uint8);
    EXPECT_TRUE(value.isArray());
    EXPECT_EQ(refusal("Speeds", CMPI_uint16),
              "status 4 Argument 'Speeds' has bad type uint8, expecting uint16");
}

TEST_F(ArgumentHelpers, GiveANullOfTheExpectedType) {
    arguments.addArg("Mode", CmpiCpp::CmpiValue::null(CMPI_string));
    EXPECT_TRUE(PYLUtil::getArg(arguments, "Mode", CMPI_string).isNull());
}

TEST_F(ArgumentHelpers, CountEveryFailureOfTheBrokerAsMissing) {
    FaultyBroker faulty(host.real());
    host.use(faulty.handle());
    arguments = CmpiCpp::makeCmpiArgs(host.broker());
    arguments.addArg("Speed", 42U);
    faulty.failFrom("CMPIArgsFT.getArg", 1, FaultyBroker::Fault::status, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(refusal("Speed", CMPI_uint32), "status 4 Argument 'Speed' not present");
}

TEST_F(ArgumentHelpers, MakeAnArrayOfTheBytesOfAText) {
    const std::string text("a\0\x7F\x80\xFF", 5);
    const auto array = PYLUtil::stringToUint8Array(text);
    EXPECT_EQ(array.getType(), CMPI_uint8);
    EXPECT_EQ(array.str(), "{97, 0, 127, 128, 255}");
    EXPECT_EQ(PYLUtil::stringToUint8Array("").getSize(), 0U);
    EXPECT_EQ(PYLUtil::stringToUint8Array("").getType(), CMPI_uint8);
    const std::string huge(1 << 16, 'x');
    EXPECT_EQ(PYLUtil::stringToUint8Array(huge).getSize(), huge.size());
}

TEST_F(ArgumentHelpers, CannotMakeAnArrayWithoutABroker) {
    PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr));
    EXPECT_TRUE(outcomeOf([] { PYLUtil::stringToUint8Array("a"); }).starts_with("status "));
}

struct InstanceId : ArgumentHelpers {
    /// The key that was read, or "none".
    static std::string read(const CmpiObjectPath& path) {
        std::string id = "untouched";
        if (PYLUtil::getInstanceID(path, id)) return id;
        EXPECT_EQ(id, "untouched");
        return "none";
    }
};

TEST_F(InstanceId, IsTheOneKeyOfThatName) {
    auto path = emptyPath();
    path.addKey("instanceid", "KTQ:1");
    EXPECT_EQ(read(path), "KTQ:1");
}

TEST_F(InstanceId, MayBeEmptyOrHoldAnything) {
    auto path = emptyPath();
    path.addKey("InstanceID", "");
    EXPECT_EQ(read(path), "");
    path = emptyPath();
    const std::string odd(1 << 20, '%');
    path.addKey("InstanceID", odd + "\n\"\xFF");
    EXPECT_EQ(read(path), odd + "\n\"\xFF");
}

TEST_F(InstanceId, IsNoneWithoutKeysOrWithMoreThanOne) {
    EXPECT_EQ(read(emptyPath()), "none");
    EXPECT_EQ(read(CmpiObjectPath()), "none");
    auto path = emptyPath();
    path.addKey("InstanceID", "KTQ:1");
    path.addKey("Other", "x");
    EXPECT_EQ(read(path), "none");
}

TEST_F(InstanceId, IsNoneUnderAnotherName) {
    auto path = emptyPath();
    path.addKey("DeviceID", "KTQ:1");
    EXPECT_EQ(read(path), "none");
}

TEST_F(InstanceId, IsNoneWhenItIsNoString) {
    auto path = emptyPath();
    path.addKey("InstanceID", 17U);
    EXPECT_EQ(read(path), "none");
    path = emptyPath();
    path.addKey("InstanceID", true);
    EXPECT_EQ(read(path), "none");
    path = emptyPath();
    path.addKey("InstanceID", emptyPath());
    EXPECT_EQ(read(path), "none");
}

struct InstanceIdFaults : InstanceId {
    FaultyBroker faulty{host.real()};
    InstanceIdFaults() { host.use(faulty.handle()); }
};

TEST_F(InstanceIdFaults, AreThrownOnUnlessTheyMeanThatTheKeyIsMissing) {
    auto path = emptyPath();
    path.addKey("InstanceID", "KTQ:1");
    for (int code = 1; code <= 20; ++code) {
        faulty.failFrom("CMPIObjectPathFT.getKey", 1, FaultyBroker::Fault::status,
                        static_cast<CMPIrc>(code));
        std::string id;
        bool found = true;
        const auto outcome = outcomeOf([&] { found = PYLUtil::getInstanceID(path, id); });
        // Object managers tell a missing key by either.
        if (code == CMPI_RC_ERR_NO_SUCH_PROPERTY || code == CMPI_RC_ERR_NOT_FOUND) {
            EXPECT_EQ(outcome, "none");
            EXPECT_FALSE(found);
        } else {
            EXPECT_TRUE(outcome.starts_with("status " + std::to_string(code))) << outcome;
        }
    }
}

TEST_F(InstanceIdFaults, AreNotEvenMetWithTwoKeys) {
    auto path = emptyPath();
    path.addKey("InstanceID", "KTQ:1");
    path.addKey("Other", "x");
    faulty.failFrom("CMPIObjectPathFT.getKey", 1, FaultyBroker::Fault::status);
    EXPECT_EQ(read(path), "none");
    EXPECT_EQ(faulty.calls("CMPIObjectPathFT.getKey"), 0U);
}

}  // namespace
