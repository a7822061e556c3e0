#include "cimhost/cimxml/XmlBuffer.h"

#include "cimhost/cimxml/XmlDocument.h"
#include "tests/cimhost/cimxml/Requests.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

TEST(XmlBuffer, EscapesOnlyTheFiveNamedCharacters) {
    EXPECT_EQ(escaped(""), "");
    EXPECT_EQ(escaped("plain text, no more"), "plain text, no more");
    EXPECT_EQ(escaped("<>&\"'"), "&lt;&gt;&amp;&quot;&apos;");
    EXPECT_EQ(escaped("a<b"), "a&lt;b");
    EXPECT_EQ(escaped("<ab>"), "&lt;ab&gt;");
    EXPECT_EQ(escaped("&amp;"), "&amp;amp;");
    EXPECT_EQ(escaped("\t\n\r "), "\t\n\r ");
}

TEST(XmlBuffer, KeepsCharactersBeyondAsciiAsUtf8) {
    for (const std::string_view text :
         {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "a\xC3\xA9z", "\xEF\xBF\xBD", "\x7F"}) {
        EXPECT_EQ(escaped(text), text);
    }
}

TEST(XmlBuffer, ReplacesControlCharacters) {
    for (char character = 0; character < ' '; ++character) {
        if (character == '\t' || character == '\n' || character == '\r') continue;
        EXPECT_EQ(escaped(std::string("a") + character + "b"),
                  "a" + std::string(replacement) + "b");
    }
}

TEST(XmlBuffer, ReplacesWhatIsNoUtf8ByteByByte) {
    EXPECT_EQ(escaped("a\xE9z"), "a" + std::string(replacement) + "z");
    EXPECT_EQ(escaped("\xC3"), replacement);
    EXPECT_EQ(escaped("\xC0\xBC"), std::string(replacement) + std::string(replacement));
    EXPECT_EQ(escaped("\xE2\x82<"), std::string(replacement) + std::string(replacement) + "&lt;");
    EXPECT_EQ(escaped("\xED\xA0\x80").find('\xED'), std::string::npos);
    EXPECT_EQ(escaped("\xEF\xBF\xBE").find('\xBE'), std::string::npos);  // U+FFFE
    EXPECT_EQ(escaped("\xEF\xBF\xBF\xC3\xA9").substr(9), "\xC3\xA9");    // U+FFFF
}

TEST(XmlBuffer, WritesWhateverItIsGivenAsXmlThatReadsBack) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second), 'x'};
            const std::string xml = "<VALUE>" + escaped(text) + "</VALUE>";
            const XmlDocument document(xml, {Tag::value});
            if (first >= ' ' && first < 0x80 && second >= ' ' && second < 0x80) {
                ASSERT_EQ(document.root().text(), text);
            }
        }
    }
}

TEST(XmlBuffer, TreatsEachByteAlikeWhereverItStands) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string one(1, static_cast<char>(byte));
        const std::string expected = escaped(one);
        for (std::size_t size = 1; size <= 40; ++size) {
            for (std::size_t place = 0; place < size; ++place) {
                const std::string before(place, 'x');
                const std::string after(size - place - 1, 'x');
                ASSERT_EQ(escaped(before + one + after), before + expected + after)
                    << byte << " at " << place << " of " << size;
            }
        }
    }
}

TEST(XmlBuffer, KeepsWhatItHasWhenItGrows) {
    XmlBuffer buffer;
    std::string expected;
    while (expected.size() < 300'000) {
        buffer.text("seventeen letters");
        expected += "seventeen letters";
    }
    EXPECT_EQ(buffer.view(), expected);
}

TEST(XmlBuffer, PutsAttributesInQuotes) {
    XmlBuffer buffer;
    buffer.attribute("NAME", "a\"<b");
    EXPECT_EQ(std::string(buffer.view()), " NAME=\"a&quot;&lt;b\"");
    EXPECT_EQ(buffer.size(), std::string(buffer.view()).size());
    buffer.clear();
    EXPECT_EQ(buffer.size(), 0U);
}

}  // namespace
}  // namespace cimhost
