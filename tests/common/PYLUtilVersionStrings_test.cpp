#include "common/PYLUtil.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace {

using PYL::PYLUtil;

TEST(ValidateVersion, TakesItsCharactersInAnyOrder) {
    for (const auto* version : {"", "1.0", "vT.F", "b5.6", "...", "T3.10", "0123456789.TFbv"}) {
        EXPECT_TRUE(PYLUtil::validateVersion(version)) << version;
    }
}

TEST(ValidateVersion, RefusesEveryOtherCharacter) {
    const std::string allowed = "0123456789.TFbv";
    for (int code = 0; code < 256; ++code) {
        const std::string version = std::string("1.") + static_cast<char>(code) + "2";
        EXPECT_EQ(PYLUtil::validateVersion(version),
                  allowed.find(static_cast<char>(code)) != std::string::npos)
            << code;
    }
    EXPECT_FALSE(PYLUtil::validateVersion("1.0a"));
}

struct Part {
    bool found;
    unsigned short value;
    bool operator==(const Part&) const = default;
};

void PrintTo(const Part& part, std::ostream* out) {
    *out << (part.found ? "found " : "none ") << part.value;
}

constexpr Part noPart{false, 65535};

Part partOf(const std::string& version, int index) {
    unsigned short value = 1;
    const bool found = PYLUtil::stringVersionGetPart(version, value, index);
    return {found, value};
}

TEST(StringVersionGetPart, CountsFromZero) {
    EXPECT_EQ(partOf("2.10.0.34", 0), (Part{true, 2}));
    EXPECT_EQ(partOf("2.10.0.34", 1), (Part{true, 10}));
    EXPECT_EQ(partOf("2.10.0.34", 2), (Part{true, 0}));
    EXPECT_EQ(partOf("2.10.0.34", 3), (Part{true, 34}));
    EXPECT_EQ(partOf("2.10.0.34", 4), noPart);
}

TEST(StringVersionGetPart, DoesNotCountAPrefix) {
    for (const auto* prefix : {"T", "F", "v"}) {
        EXPECT_EQ(partOf(std::string(prefix) + ".5.6", 0), (Part{true, 5})) << prefix;
        EXPECT_EQ(partOf(std::string(prefix) + ".5.6", 1), (Part{true, 6})) << prefix;
        EXPECT_EQ(partOf(std::string(prefix) + ".5.6", 2), noPart) << prefix;
        EXPECT_EQ(partOf(prefix, 0), noPart) << prefix;
    }
}

TEST(StringVersionGetPart, TakesNothingElseForAPrefix) {
    EXPECT_EQ(partOf("b.5.6", 0), (Part{true, 0}));
    EXPECT_EQ(partOf("b5.6", 0), (Part{true, 0}));
    EXPECT_EQ(partOf("T3.10", 0), (Part{true, 0}));
    EXPECT_EQ(partOf("T3.10", 1), (Part{true, 10}));
    EXPECT_EQ(partOf("V.5", 0), (Part{true, 0}));
    EXPECT_EQ(partOf("5.T.6", 1), (Part{true, 0}));
    EXPECT_EQ(partOf("T.T.6", 0), (Part{true, 0}));
}

TEST(StringVersionGetPart, SkipsEmptyParts) {
    EXPECT_EQ(partOf("..1...2..", 0), (Part{true, 1}));
    EXPECT_EQ(partOf("..1...2..", 1), (Part{true, 2}));
    EXPECT_EQ(partOf("..1...2..", 2), noPart);
    EXPECT_EQ(partOf(".T.7", 0), (Part{true, 7}));
}

TEST(StringVersionGetPart, HasNoPartOfAnEmptyText) {
    EXPECT_EQ(partOf("", 0), noPart);
    EXPECT_EQ(partOf("....", 0), noPart);
    EXPECT_EQ(partOf("v", 0), noPart);
}

TEST(StringVersionGetPart, HasNoPartWithANegativeNumberAndRunsOutBeforeAHugeOne) {
    EXPECT_EQ(partOf("1.2", -1), noPart);
    EXPECT_EQ(partOf("1.2", -2147483647 - 1), noPart);
    EXPECT_EQ(partOf("1.2", 2147483647), noPart);
    EXPECT_EQ(partOf("T.1.2", 2147483647), noPart);
}

TEST(StringVersionGetPart, ReadsNumbersAsStrtolDoes) {
    EXPECT_EQ(partOf("12abc", 0), (Part{true, 12}));
    EXPECT_EQ(partOf("abc", 0), (Part{true, 0}));
    EXPECT_EQ(partOf("  42", 0), (Part{true, 42}));
    EXPECT_EQ(partOf("-1", 0), (Part{true, 65535}));
    EXPECT_EQ(partOf("+7", 0), (Part{true, 7}));
    EXPECT_EQ(partOf("0x10", 0), (Part{true, 0}));
    EXPECT_EQ(partOf("010", 0), (Part{true, 10}));
}

TEST(StringVersionGetPart, CutsANumberTo16BitsAndMissesOneThatNoLongHolds) {
    EXPECT_EQ(partOf("70000", 0), (Part{true, 4464}));
    EXPECT_EQ(partOf("9223372036854775807", 0), (Part{true, 65535}));
    EXPECT_EQ(partOf("9223372036854775808", 0), (Part{true, 65535}));
    EXPECT_EQ(partOf("-9223372036854775809", 0), (Part{true, 65535}));
    EXPECT_EQ(partOf("65536", 0), (Part{true, 0}));
}

TEST(StringVersionGetPart, TakesTextsOfAnySize) {
    const std::string digits(1 << 20, '1');
    EXPECT_EQ(partOf(digits, 0), (Part{true, 65535}));
    EXPECT_EQ(partOf(std::string(1 << 20, '.') + "5", 0), (Part{true, 5}));
    EXPECT_EQ(partOf(std::string("1.2\0.3", 6), 2), noPart);
}

TEST(StringVersionGetPart, LeavesTheTextAndErrnoAlone) {
    const std::string version = "T.1.99999999999999999999";
    const std::string copy(version.c_str());
    errno = EINTR;
    EXPECT_EQ(partOf(version, 1), (Part{true, 65535}));
    EXPECT_EQ(errno, EINTR);
    EXPECT_EQ(version, copy);
}

TEST(StringVersionParts, HaveTheirNumbers) {
    unsigned short part = 0;
    EXPECT_TRUE(PYLUtil::stringVersionToMajor("T.2.10.0.34", part));
    EXPECT_EQ(part, 2);
    EXPECT_TRUE(PYLUtil::stringVersionToMinor("T.2.10.0.34", part));
    EXPECT_EQ(part, 10);
    EXPECT_TRUE(PYLUtil::stringVersionToRevision("T.2.10.0.34", part));
    EXPECT_EQ(part, 0);
    EXPECT_TRUE(PYLUtil::stringVersionToBuild("T.2.10.0.34", part));
    EXPECT_EQ(part, 34);
    EXPECT_FALSE(PYLUtil::stringVersionToRevision("2.10", part));
    EXPECT_EQ(part, 65535);
    EXPECT_FALSE(PYLUtil::stringVersionToBuild("1.2.3", part));
    EXPECT_EQ(part, 65535);
    EXPECT_TRUE(PYLUtil::stringVersionToBuild("1.2.3.70000", part));
    EXPECT_EQ(part, 4464);
}

}  // namespace
