#include "toolkit/Methods.h"

#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/support/TestBroker.h"
#include "toolkit/Properties.h"

#include <gtest/gtest.h>

#include <array>

namespace {

struct MethodsTest : testing::Test {
    TestBroker host;
    Journal journal;
    CapturedMethodResult result{journal};
};

TEST_F(MethodsTest, AreKnownByClassAndNameWhateverTheirCase) {
    const auto outcome = [&](const char* className, const char* method) {
        return outcomeOf(
            [&] { PYL::requireMethod(host.path(className, "a"), method, "PYL_Thing", "Turn"); });
    };
    EXPECT_EQ(outcome("PYL_Thing", "Turn"), "none");
    EXPECT_EQ(outcome("pyl_thing", "turn"), "none");
    EXPECT_EQ(outcome("PYL_Thing", "Stop"), "status 17 no such method: Stop");
    EXPECT_EQ(outcome("PYL_SpecialThing", "Turn"), "status 17 no such method: Turn");
}

TEST_F(MethodsTest, DeliverArrays) {
    PYL::deliverArray(result, "Names", PYL::makeArray(std::array{"a", "b"}));
    EXPECT_EQ(journal.take(), Lines{"delivered Names = data {\"a\", \"b\"}"});
}

}  // namespace
