#include "cimhost/objects/Codepage.h"

#include "cimhost/objects/Entry.h"

#include <gtest/gtest.h>

#include <cstring>

namespace cimhost {
namespace {

CMPIrc codeOf(auto&& work) {
    try {
        work();
        return CMPI_RC_OK;
    } catch (const Failure& failure) {
        return failure.code;
    }
}

std::string fromUtf16(const char16_t* text) {
    return toUtf8(reinterpret_cast<const char*>(text), CMPI_CPID_UTF16);
}

TEST(Codepage, ReadsUtf16OfEitherByteOrderWithAMark) {
    EXPECT_EQ(fromUtf16(u"\ufeffab"), "ab");
    EXPECT_EQ(fromUtf16(u"\ufffe\u6100\u6200"), "ab");
}

TEST(Codepage, RefusesSurrogatesThatAreAlone) {
    const char16_t high[] = {0xd83d, 'x', 0};
    const char16_t highAtEnd[] = {0xd83d, 0};
    const char16_t low[] = {0xde00, 0};
    EXPECT_EQ(codeOf([&] { fromUtf16(high); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
    EXPECT_EQ(codeOf([&] { fromUtf16(highAtEnd); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
    EXPECT_EQ(codeOf([&] { fromUtf16(low); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
}

TEST(Codepage, RefusesBytesThatAreNotUtf8) {
    for (const char* const text :
         {"\x80", "\xc0\xaf", "\xe2\x82", "\xed\xa0\x80", "\xf5\x80\x80\x80", "ok\xff"}) {
        EXPECT_EQ(codeOf([&] { toUtf8(text, CMPI_CPID_SYSTEM); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
        EXPECT_EQ(codeOf([&] { fromUtf8(text, CMPI_CPID_SYSTEM); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
        EXPECT_EQ(codeOf([&] { fromUtf8(text, CMPI_CPID_UTF16); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
        EXPECT_EQ(codeOf([&] { fromUtf8(text, CMPI_CPID_USASCII); }), CMPI_RC_ERR_NOT_IN_CODEPAGE);
    }
}

TEST(Codepage, GoesToUtf16AndBack) {
    const std::string text = "a\xc3\xb6\xe2\x82\xac\xf0\x9f\x98\x80\xf4\x8f\xbf\xbf";
    std::string units = fromUtf8(text, CMPI_CPID_UTF16);
    units.append(2, '\0');
    EXPECT_EQ(toUtf8(units.c_str(), CMPI_CPID_UTF16), text);
}

TEST(Codepage, ReadsUtf16AtAnOddAddress) {
    constexpr char16_t text[] = u"ab";
    char bytes[1 + sizeof text];
    std::memcpy(bytes + 1, text, sizeof text);
    EXPECT_EQ(toUtf8(bytes + 1, CMPI_CPID_UTF16), "ab");
}

TEST(Codepage, RefusesNullAndUnknownCodepages) {
    EXPECT_EQ(codeOf([] { toUtf8(nullptr, CMPI_CPID_SYSTEM); }), CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(codeOf([] { fromUtf8("", static_cast<CMPICodepageID>(0)); }),
              CMPI_RC_ERR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace cimhost
