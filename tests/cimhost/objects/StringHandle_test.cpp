#include "cimhost/objects/StringHandle.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class StringHandle : public BrokerTest {};

TEST_F(StringHandle, KeepsACopyOfTheText) {
    char text[] = "first";
    const CMPIString* const string = newString(text);
    text[0] = 'X';
    EXPECT_EQ(textOf(string), "first");
    EXPECT_EQ(status, CMPI_RC_OK);
}

TEST_F(StringHandle, KeepsTextsOfAnyLength) {
    for (const std::size_t length :
         {0U, 1U, 31U, 32U, 300U, 395U, 400U, 449U, 512U, 513U, 100000U}) {
        const std::string text(length, 'x');
        const CMPIString* const string = newString(text.c_str());
        EXPECT_EQ(textOf(string), text);
        CMPIString* const copy = string->ft->clone(string, &status);
        EXPECT_EQ(textOf(copy), text);
        EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
    }
}

TEST_F(StringHandle, KeepsZeroBytesThatCimhostPutsIn) {
    const CMPIString* const string = makeString(realBroker, std::string_view("a\0b", 3));
    EXPECT_EQ(std::memcmp(string->ft->getCharPtr(string, &status), "a\0b", 4), 0);
}

TEST_F(StringHandle, IsNotMadeOfNull) {
    EXPECT_EQ(newString(nullptr), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(StringHandle, NeedsNoStatus) {
    const CMPIString* const string = eft().newString(broker(), "text", nullptr);
    EXPECT_STREQ(string->ft->getCharPtr(string, nullptr), "text");
}

TEST_F(StringHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIStringFT& table = *newString("")->ft;
    CMPIString foreign = foreignHandle(newString("text"));
    for (CMPIString* const bad : {static_cast<CMPIString*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(table.getCharPtr(bad, &status), nullptr);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.clone(bad, &status), nullptr);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.newCharsCP(bad, CMPI_CPID_USASCII, &status), nullptr);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(table.release(bad), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

TEST_F(StringHandle, IsToldFromAnotherKindOfObject) {
    const CMPIStringFT& table = *newString("")->ft;
    auto* const path = reinterpret_cast<CMPIString*>(newPath());
    EXPECT_EQ(table.getCharPtr(path, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(StringHandle, ConvertsToCodepages) {
    const CMPIString* const string = newString("K\xc3\xb6ln");
    EXPECT_EQ(string->ft->newCharsCP(string, CMPI_CPID_USASCII, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_NOT_IN_CODEPAGE);
    char* const utf8 = string->ft->newCharsCP(string, CMPI_CPID_SYSTEM, &status);
    EXPECT_STREQ(utf8, "K\xc3\xb6ln");
    mft().freeChars(broker(), utf8);
    char* const utf16 = string->ft->newCharsCP(string, CMPI_CPID_UTF16, &status);
    EXPECT_EQ(std::memcmp(utf16, u"K\u00f6ln", 10), 0);
    mft().freeChars(broker(), utf16);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(StringHandle, MadeFromACodepageIsUtf8) {
    const auto* const utf16 = reinterpret_cast<const char*>(u"\u20ac\U0001f600");
    EXPECT_EQ(textOf(eft().newStringCP(broker(), utf16, CMPI_CPID_UTF16, &status)),
              "\xe2\x82\xac\xf0\x9f\x98\x80");
    EXPECT_EQ(textOf(eft().newStringCP(broker(), "plain", CMPI_CPID_USASCII, &status)), "plain");
    EXPECT_EQ(eft().newStringCP(broker(), "\xff", CMPI_CPID_USASCII, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_NOT_IN_CODEPAGE);
    EXPECT_EQ(eft().newStringCP(broker(), "x", static_cast<CMPICodepageID>(9), &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace cimhost
