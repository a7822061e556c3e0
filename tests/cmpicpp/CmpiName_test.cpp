#include "cmpicpp/CmpiName.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

namespace CmpiCpp {
namespace {

class CmpiNameOfSize : public ::testing::TestWithParam<std::size_t> {
protected:
    const std::string _text = std::string(GetParam(), 'n');
};

TEST_P(CmpiNameOfSize, KeepsItsText) {
    const CmpiName name(_text);
    EXPECT_EQ(name.str(), _text);
    EXPECT_STREQ(name.c_str(), _text.c_str());
    EXPECT_EQ(name.view(), _text);
    EXPECT_EQ(name.size(), _text.size());
    EXPECT_EQ(name.empty(), _text.empty());
}

TEST_P(CmpiNameOfSize, CopiesAreIndependent) {
    CmpiName original(_text);
    const CmpiName copy(original);
    original = "changed";
    EXPECT_EQ(copy.str(), _text);
    EXPECT_EQ(original.str(), "changed");
}

TEST_P(CmpiNameOfSize, IsAssignedOverAnyOtherSize) {
    for (const std::size_t size : {0U, 5U, 46U, 47U, 300U}) {
        CmpiName target(std::string(size, 'x'));
        const CmpiName source(_text);
        target = source;
        EXPECT_EQ(target.str(), _text) << size;
        EXPECT_EQ(source.str(), _text) << size;
    }
}

TEST_P(CmpiNameOfSize, MovesLeaveAnEmptyName) {
    CmpiName source(_text);
    const CmpiName target(std::move(source));
    EXPECT_EQ(target.str(), _text);
    EXPECT_TRUE(source.empty());  // NOLINT(bugprone-use-after-move): what is promised
    EXPECT_STREQ(source.c_str(), "");
}

TEST_P(CmpiNameOfSize, SurvivesAssignmentToItself) {
    CmpiName name(_text);
    CmpiName& same = name;
    name = same;
    EXPECT_EQ(name.str(), _text);
    name = std::move(same);
    EXPECT_EQ(name.str(), _text);
}

INSTANTIATE_TEST_SUITE_P(InsideAndOutside, CmpiNameOfSize,
                         ::testing::Values(0U, 1U, 45U, 46U, 47U, 48U, 10'000U));

TEST(CmpiName, IsEmptyForANullPointer) {
    const char* const none = nullptr;
    EXPECT_TRUE(CmpiName(none).empty());
    EXPECT_EQ(CmpiName(none), CmpiName());
}

TEST(CmpiName, ComparesWithoutRegardToAsciiCase) {
    EXPECT_EQ(CmpiName("PYL_Fan"), CmpiName("pyl_FAN"));
    EXPECT_FALSE(CmpiName("PYL_Fan") == CmpiName("PYL_Fan2"));
    EXPECT_FALSE(CmpiName("PYL_Fan") == CmpiName("PYL_Fin"));
}

TEST(CmpiName, FoldsLettersOnly) {
    EXPECT_FALSE(CmpiName("@[") == CmpiName("`{"));
    EXPECT_FALSE(CmpiName("\xC3\x84") == CmpiName("\xC3\xA4")) << "not ASCII";
}

TEST(CmpiName, OrdersByLowerCaseText) {
    EXPECT_TRUE(CmpiName("alpha") < CmpiName("BETA"));
    EXPECT_FALSE(CmpiName("BETA") < CmpiName("alpha"));
    EXPECT_FALSE(CmpiName("Same") < CmpiName("sAME"));
    EXPECT_TRUE(CmpiName("fan") < CmpiName("FAN2"));
    EXPECT_TRUE(CmpiName("z") < CmpiName("\xC3\xA4")) << "bytes are unsigned";
}

TEST(CmpiName, IsWrittenAsItStands) {
    std::ostringstream out;
    out << CmpiName("PYL_Fan");
    EXPECT_EQ(out.str(), "PYL_Fan");
}

TEST(EqualNames, ComparesViewsWithoutRegardToCase) {
    EXPECT_TRUE(equalNames("Root/KTQ", "root/ktq"));
    EXPECT_FALSE(equalNames("root/ktq", "root/kt"));
    EXPECT_TRUE(equalNames("", ""));
}

}  // namespace
}  // namespace CmpiCpp
