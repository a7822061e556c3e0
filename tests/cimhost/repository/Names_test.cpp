#include "cimhost/repository/Names.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace cimhost {
namespace {

TEST(Names, CompareWithoutRegardToAsciiCase) {
    EXPECT_TRUE(equalNames("CIM_Fan", "cim_FAN"));
    EXPECT_TRUE(equalNames("", ""));
    EXPECT_FALSE(equalNames("CIM_Fan", "CIM_Fans"));
    EXPECT_FALSE(equalNames("CIM_Fan", "CIM-Fan"));
}

TEST(Names, CompareEveryCharacterOfLongNames) {
    const std::string name = "CIM_SoftwareElementActions";
    for (std::size_t place = 0; place < name.size(); ++place) {
        std::string other = name;
        other[place] = '9';
        EXPECT_FALSE(equalNames(name, other));
        other[place] = static_cast<char>(name[place] == '_' ? '_' : name[place] ^ 0x20);
        EXPECT_TRUE(equalNames(name, other));
    }
}

TEST(Names, DoNotFoldWhatOnlyLooksLikeLetters) {
    EXPECT_FALSE(equalNames("[", "{"));  // 'Z' + 1 and 'z' + 1
    EXPECT_FALSE(equalNames("@", "`"));  // 'A' - 1 and 'a' - 1
    EXPECT_FALSE(equalNames("\xC3\x84", "\xC3\xA4"));
}

TEST(Names, HashAlikeWhenTheyAreEqual) {
    EXPECT_EQ(NameHash{}("CIM_Fan"), NameHash{}("cim_fan"));
    EXPECT_NE(NameHash{}("CIM_Fan"), NameHash{}("CIM_Fam"));
}

TEST(Names, OrderIgnoresCaseAndPutsPrefixesFirst) {
    EXPECT_TRUE(NameLess{}("alpha", "BETA"));
    EXPECT_FALSE(NameLess{}("ALPHA", "alpha"));
    EXPECT_FALSE(NameLess{}("alpha", "ALPHA"));
    EXPECT_TRUE(NameLess{}("cim", "CIM_"));
    std::map<std::string, int, NameLess> map{{"Beta", 1}};
    EXPECT_EQ(map.count(std::string_view("bETA")), 1U);
}

TEST(Names, OrderTreatsBytesBeyondAsciiAsLargest) { EXPECT_TRUE(NameLess{}("z", "\xC3\xA4")); }

TEST(Names, LoseSlashesOnlyAtTheirEnds) {
    EXPECT_EQ(trimmedSlashes("//root/cimv2/"), "root/cimv2");
    EXPECT_EQ(trimmedSlashes("///"), "");
}

TEST(Names, EndWhereTheIdentifierEnds) {
    EXPECT_EQ(findNameEnd("CIM_Fan.DeviceID"), 7U);
    EXPECT_EQ(findNameEnd("_a1-"), 3U);
    EXPECT_EQ(findNameEnd("\xC3\xA4 b"), 2U);
    EXPECT_EQ(findNameEnd("1a"), 0U);
    EXPECT_EQ(findNameEnd(""), 0U);
}

}  // namespace
}  // namespace cimhost
