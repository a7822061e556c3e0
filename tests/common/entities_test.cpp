#include "common/entities.h"

#include "common/detail/NamedEntities.h"
#include "tests/common/HtmlEntities.h"
#include "tests/common/PlainDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;

/// Memory of exactly this many bytes, so that a sanitizer sees a step beyond.
std::unique_ptr<char[]> exactCopy(const std::string& text, std::size_t size) {
    auto copy = std::make_unique<char[]>(size);
    std::memcpy(copy.get(), text.c_str(), std::min(size, text.size() + 1));
    return copy;
}

std::string decodeInPlace(const std::string& text) {
    const auto copy = exactCopy(text, text.size() + 1);
    const std::size_t size = remove_xml_reference_chars(copy.get());
    EXPECT_EQ(copy[size], '\0') << text;
    return {copy.get(), size};
}

/// `size` is that of the result.
std::string decodeInto(const std::string& text, std::size_t size) {
    const auto source = exactCopy(text, text.size() + 1);
    const auto destination = std::make_unique<char[]>(size + 1);
    EXPECT_EQ(remove_xml_reference_chars(source.get(), destination.get()), size) << text;
    EXPECT_EQ(destination[size], '\0') << text;
    EXPECT_EQ(text, source.get());
    return {destination.get(), size};
}

/// Decodes in place and into a buffer of just the right size.
std::string decode(const std::string& text) {
    std::string result = decodeInPlace(text);
    EXPECT_EQ(result, decodeInto(text, result.size())) << text;
    return result;
}

/// The text means the same to the plain decoder, in place and into a buffer.
void expectAsPlain(const std::string& text) {
    const std::string expected = decodePlainly(text);
    ASSERT_EQ(decodeInPlace(text), expected) << text;
    ASSERT_EQ(decodeInto(text, expected.size()), expected) << text;
}

struct Meaning {
    std::string text;
    std::string result;
};

TEST(Entities, StandForEveryCharacterOfHtml) {
    ASSERT_EQ(std::size(htmlEntities), 253U);
    for (const auto& [name, codePoint] : htmlEntities) {
        const std::string reference = "&"s + name + ";";
        EXPECT_EQ(decode(reference), plainUtf8(codePoint)) << name;
        EXPECT_EQ(decode("<" + reference + reference + "text"),
                  "<" + plainUtf8(codePoint) + plainUtf8(codePoint) + "text");
        EXPECT_STREQ(get_named_entity(reference.c_str() + 1), plainUtf8(codePoint).c_str()) << name;
    }
}

TEST(Entities, AreATableInByteOrderOfNamesWithTheirSemicolons) {
    std::vector<std::string> names;
    for (const HtmlEntity& entity : htmlEntities) names.push_back(entity.name + ";"s);
    std::sort(names.begin(), names.end());
    ASSERT_EQ(NAMED_ENTITIES.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(NAMED_ENTITIES[i].name, names[i]);
    EXPECT_STREQ(NAMED_ENTITIES.front().name, "AElig;");
    EXPECT_STREQ(NAMED_ENTITIES.back().name, "zwnj;");
    EXPECT_LT(std::find(names.begin(), names.end(), "sup1;"),
              std::find(names.begin(), names.end(), "sup;"));
}

TEST(Entities, HaveTheAngleBracketsOfHtml4) {
    EXPECT_EQ(decode("&lang;&rang;"), "\xE2\x8C\xA9\xE2\x8C\xAA");  // U+2329 and U+232A
}

TEST(Entities, TellLettersByTheirCase) {
    EXPECT_EQ(decode("&Eacute;&eacute;"), "\xC3\x89\xC3\xA9");
    EXPECT_EQ(decode("&AMP;&Lt;&APOS;&aelig;"), "&AMP;&Lt;&APOS;\xC3\xA6");
}

TEST(Entities, AreFoundInTextThatGoesOnAfterTheSemicolon) {
    EXPECT_STREQ(get_named_entity("amp;x"), "&");
    EXPECT_STREQ(get_named_entity("sup;1;"), "\xE2\x8A\x83");
    EXPECT_STREQ(get_named_entity("sup1;1;"), "\xC2\xB9");
    EXPECT_EQ(decode("&amp;x"), "&x");
}

TEST(Entities, AreNotFoundByPartsOfNames) {
    for (const char* text : {"", ";", "a", "amp", "am;", "amp ;", "ampx;", "xamp;", " amp;",
                             "&amp;", "thetasymb;", "thetasy;", "zwnjj;", "A", "\x7F;", "\xFF;"}) {
        EXPECT_EQ(get_named_entity(text), nullptr) << text;
    }
}

TEST(Entities, AreComparedOverTheLengthOfTheName) {
    const NamedEntity row{"lt;", "<"};
    EXPECT_EQ(cmp("lt;", &row), 0);
    EXPECT_EQ(cmp("lt;and more", &row), 0);
    EXPECT_LT(cmp("lt", &row), 0);
    EXPECT_LT(cmp("", &row), 0);
    EXPECT_LT(cmp("gt;", &row), 0);
    EXPECT_GT(cmp("ltx;", &row), 0);
    EXPECT_GT(cmp("\xC3\xA9;", &row), 0);  // bytes count as unsigned
}

TEST(Utf8, GrowsWithTheCodePoint) {
    struct {
        std::uint64_t codePoint;
        std::string bytes;
    } const rows[] = {
        {0, "\0"s},
        {1, "\x01"},
        {0x7F, "\x7F"},
        {0x80, "\xC2\x80"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0x20AC, "\xE2\x82\xAC"},
        {0xD7FF, "\xED\x9F\xBF"},
        {0xD800, "\xED\xA0\x80"},  // surrogates like any other
        {0xDFFF, "\xED\xBF\xBF"},
        {0xFFFF, "\xEF\xBF\xBF"},
        {0x10000, "\xF0\x90\x80\x80"},
        {0x1F600, "\xF0\x9F\x98\x80"},
        {0x10FFFF, "\xF4\x8F\xBF\xBF"},
        {0x110000, ""},
        {0x100000041, ""},
        {UINT64_MAX, ""},
    };
    for (const auto& [codePoint, bytes] : rows) {
        const auto buffer = std::make_unique<char[]>(bytes.size());
        EXPECT_EQ(putc_utf8(codePoint, buffer.get()), bytes.size()) << codePoint;
        EXPECT_EQ(std::string(buffer.get(), bytes.size()), bytes) << codePoint;
    }
}

TEST(Utf8, IsRightForEveryCodePoint) {
    for (std::uint64_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        char buffer[4];
        const std::size_t size = putc_utf8(codePoint, buffer);
        ASSERT_EQ(std::string(buffer, size), plainUtf8(codePoint)) << codePoint;
    }
}

TEST(NumericReferences, AreDecimalOrHexadecimal) {
    const Meaning rows[] = {
        {"&#65;", "A"},
        {"&#x41;", "A"},
        {"&#X41;", "A"},
        {"&#xe9;&#xE9;", "\xC3\xA9\xC3\xA9"},
        {"&#8364;", "\xE2\x82\xAC"},
        {"&#x20AC;", "\xE2\x82\xAC"},
        {"&#xD800;", "\xED\xA0\x80"},
        {"&#1114111;", "\xF4\x8F\xBF\xBF"},
        {"&#x10ffff;", "\xF4\x8F\xBF\xBF"},
        {"&#0065;", "A"},
        {"&#1;", "\x01"},
    };
    for (const auto& [text, result] : rows) EXPECT_EQ(decode(text), result) << text;
}

TEST(NumericReferences, AreWhatTheStandardConversionTakes) {
    const Meaning rows[] = {
        {"&# 65;", "A"},
        {"&#\t\n\v\f\r 65;", "A"},
        {"&#+65;", "A"},
        {"&# +65;", "A"},
        {"&#-18446744073709551551;", "A"},  // negation within 64 bits
        {"&#x 41;", "A"},
        {"&#x+41;", "A"},
        {"&#x0x41;", "A"},
        {"&#X0X41;", "A"},
        {"&#x 0x41;", "A"},
        {"&#x+0x41;", "A"},
        {"&#x-0xFFFFFFFFFFFFFFBF;", "A"},
        {"&#00000000000000000000000000000065;", "A"},
        {"&#x00000000000000000000000000000041;", "A"},
    };
    for (const auto& [text, result] : rows) EXPECT_EQ(decode(text), result) << text;
}

TEST(NumericReferences, WithoutDigitsAreAZeroByteAfterWhichDecodingGoesOn) {
    for (const char* text :
         {"&#;", "&#x;", "&#X;", "&#0;", "&#000;", "&#x0;", "&#-0;", "&#00000000000000;"}) {
        EXPECT_EQ(decode(text), "\0"s) << text;
        EXPECT_EQ(decode("a"s + text + "b&amp;c"), "a\0b&c"s) << text;
    }
}

TEST(NumericReferences, StayWhenTheConversionFails) {
    for (const char* text : {"&#1114112;",
                             "&#x110000;",
                             "&#12a;",
                             "&#a;",
                             "&#xg;",
                             "&#0x41;",
                             "&# ;",
                             "&#+;",
                             "&#-;",
                             "&#x0x;",
                             "&#xx41;",
                             "&#-1;",
                             "&#6 5;",
                             "&#65 ;",
                             "&#+ 65;",
                             "&#--65;",
                             "&##65;",
                             "&#4294967361;",
                             "&#18446744073709551615;",
                             "&#18446744073709551616;",
                             "&#18446744073709551681;",
                             "&#x10000000000000041;",
                             "&#99999999999999999999999999;",
                             "&#65",
                             "&#x41",
                             "&#",
                             "&#x",
                             "&#6&5;",
                             "& #65;"}) {
        EXPECT_EQ(decode(text), text);
        EXPECT_EQ(decode("a"s + text + "b"), "a"s + text + "b");
    }
}

TEST(NumericReferences, LeaveErrnoAsItWas) {
    for (int error : {0, ERANGE, EINVAL}) {
        std::string text = "&#99999999999999999999999999; &# 65; &#65;";
        errno = error;
        remove_xml_reference_chars(text.data());
        EXPECT_EQ(errno, error);
        EXPECT_STREQ(text.c_str(), "&#99999999999999999999999999; A A");
    }
}

TEST(RemoveReferences, DecodesWhatIsAReferenceAndKeepsTheRest) {
    const Meaning rows[] = {
        {"", ""},
        {"plain text", "plain text"},
        {"a&amp;b", "a&b"},
        {"&lt;&gt;", "<>"},
        {"&quot;&apos;", "\"'"},
        {"&unknown;", "&unknown;"},
        {"&", "&"},
        {"&;", "&;"},
        {"&&", "&&"},
        {"&&amp;&", "&&&"},
        {"&amp", "&amp"},
        {"&amp &amp;", "&amp &"},
        {"&foo&lt;", "&foo<"},
        {"&#65&#66;", "&#65B"},
        {"a & b; c &lt; d", "a & b; c < d"},
        {"AT&T; &thetasym; &thetasymx;", "AT&T; \xCF\x91 &thetasymx;"},
        {"\xC3\xA9&eacute;\xFF&\x80;", "\xC3\xA9\xC3\xA9\xFF&\x80;"},
    };
    for (const auto& [text, result] : rows) EXPECT_EQ(decode(text), result) << text;
}

TEST(RemoveReferences, DecodesOnce) {
    EXPECT_EQ(decode("&amp;amp;"), "&amp;");
    EXPECT_EQ(decode("&#38;lt;"), "&lt;");
    EXPECT_EQ(decode("&amp;#65;"), "&#65;");
}

TEST(RemoveReferences, TakesTheSourceItselfForADestination) {
    std::string text = "a&lt;b &amp; more than sixteen characters of text &gt;";
    EXPECT_EQ(remove_xml_reference_chars(text.data(), text.data()),
              std::strlen("a<b & more than sixteen characters of text >"));
    EXPECT_STREQ(text.c_str(), "a<b & more than sixteen characters of text >");
}

TEST(RemoveReferences, MayWriteBeforeTheSourceInTheSameMemory) {
    const std::string text = "0123456789abcdefghij&lt;0123456789abcdefghij&unknown;&gt;xyz";
    for (std::size_t distance = 1; distance < 40; ++distance) {
        std::string memory = std::string(distance, '-') + text;
        const std::size_t size =
            remove_xml_reference_chars(memory.data() + distance, memory.data());
        EXPECT_EQ(memory.substr(0, size), decodePlainly(text));
    }
}

TEST(RemoveReferences, WritesNothingBehindTheResult) {
    const std::string text = "a&eacute;b&#65;&unknown;";
    const std::string result = decodePlainly(text);
    std::string source = text;
    std::string destination(64, '~');
    remove_xml_reference_chars(source.data(), destination.data());
    EXPECT_EQ(destination, result + '\0' + std::string(64 - result.size() - 1, '~'));
}

TEST(RemoveReferences, MovesPiecesOfEveryLength) {
    for (std::size_t before = 0; before <= 40; ++before) {
        for (std::size_t after = 0; after <= 40; ++after) {
            const std::string head("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnop", before);
            const std::string tail("0123456789-0123456789+0123456789*012345678", after);
            expectAsPlain(head + "&lt;" + tail);
            expectAsPlain("&#8364;" + head + "&thetasym;" + tail + "&amp");
        }
    }
}

TEST(RemoveReferences, NeverReadsBehindTheText) {
    for (int first = 1; first < 256; ++first) {
        const std::string text = {'&', static_cast<char>(first)};
        expectAsPlain(text);
        for (int second = 1; second < 256; ++second) {
            expectAsPlain(text + static_cast<char>(second));
        }
    }
    const std::string telling = "#xX;&0123489aAfFgGltmp \t-+\x7F\x80\xBB\xFF";
    for (char first : telling) {
        for (char second : telling) {
            for (char third : telling) expectAsPlain({'&', first, second, third});
        }
    }
}

TEST(RemoveReferences, NeverReadsBehindAReferenceThatIsCutShort) {
    std::vector<std::string> references = {"&#1114111;", "&#x10FFFF;", "&#x0x0000000000041;",
                                           "&#  +0000000000065;"};
    for (const HtmlEntity& entity : htmlEntities) references.push_back("&"s + entity.name + ";");
    for (const std::string& reference : references) {
        for (std::size_t size = 0; size <= reference.size(); ++size) {
            expectAsPlain(reference.substr(0, size));
            expectAsPlain("&lt;" + reference.substr(0, size));
            expectAsPlain(reference.substr(0, size) + ";");
        }
    }
}

TEST(RemoveReferences, AgreesWithThePlainDecoderOnRandomTexts) {
    std::vector<std::string> pieces = {
        "&",  "#",   ";",   "x",    "X",  "0",   "65",   "41",   " ",    "+",   "-",          "0x",
        "&#", "&#x", "lt;", "&amp", "\t", "&#;", "text", "\xE9", "&lt;", "&a;", "99999999999"};
    for (const HtmlEntity& entity : htmlEntities) pieces.push_back("&"s + entity.name + ";");
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto count = random() % 24; count > 0; --count) {
            // The first pieces make up the grammar; the names would crowd them out.
            text += pieces[random() % (random() % 4 == 0 ? pieces.size() : 23)];
        }
        expectAsPlain(text);
    }
}

// A decoder that looks for the same semicolon at each '&' does not end within the patience of the
// test.
TEST(RemoveReferences, TakesAMillionAmpersandsInOnePass) {
    for (const char* piece : {"&", "&#", "&#x", "&# ", "&# -", "&lt", "&a "}) {
        for (const auto& [end, decodedEnd] : {Meaning{"", ""}, {" ;", " ;"}, {"!&lt;", "!<"}}) {
            std::string pieces;
            while (pieces.size() < (std::size_t{4} << 20)) pieces += piece;
            std::string text = pieces + end;
            text.resize(remove_xml_reference_chars(text.data()));
            EXPECT_TRUE(text == pieces + decodedEnd) << piece << end;
        }
    }
}

TEST(ParseEntity, DecodesOneReferenceAndAdvancesBothCursors) {
    const Meaning rows[] = {{"&amp;", "&"},
                            {"&thetasym;", "\xCF\x91"},
                            {"&#x20AC;", "\xE2\x82\xAC"},
                            {"&#;", "\0"s},
                            {"&#x 0x41;", "A"}};
    for (const auto& [reference, result] : rows) {
        const std::string text = reference + "rest;";
        std::string buffer(8, '~');
        char* to = buffer.data();
        const char* from = nullptr;
        EXPECT_EQ(parse_entity(text.c_str(), &to, &from), 1) << text;
        EXPECT_EQ(to, buffer.data() + result.size());
        EXPECT_STREQ(from, "rest;");
        EXPECT_EQ(buffer, result + std::string(8 - result.size(), '~'));
    }
}

TEST(ParseEntity, ChangesNothingWhenThereIsNoReference) {
    for (const char* text :
         {"&", "&;", "&amp", "&unknown;", "&#1114112;", "&#12a;", "&#65", "&amp x;"}) {
        std::string buffer(8, '~');
        char* to = buffer.data();
        const char* from = text;
        EXPECT_EQ(parse_entity(text, &to, &from), 0) << text;
        EXPECT_EQ(to, buffer.data());
        EXPECT_EQ(from, text);
        EXPECT_EQ(buffer, std::string(8, '~'));
    }
}

TEST(ParseEntity, LeavesErrnoAsItWas) {
    std::string buffer(8, '~');
    for (const char* text : {"&#99999999999999999999999999;", "&#65;", "&#;"}) {
        char* to = buffer.data();
        const char* from = text;
        errno = ENOENT;
        parse_entity(text, &to, &from);
        EXPECT_EQ(errno, ENOENT) << text;
    }
}

}  // namespace
