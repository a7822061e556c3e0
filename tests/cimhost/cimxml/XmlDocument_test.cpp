#include "cimhost/cimxml/XmlDocument.h"

#include "tests/cimhost/cimxml/ReplyChecker.h"
#include "tests/cimhost/cimxml/Requests.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>

namespace cimhost {
namespace {

constexpr TagSet anyRoot{Tag::cim, Tag::instance, Tag::value, Tag::instanceName};

/// How a text is refused; nothing when it is accepted.
std::optional<XmlError::Kind> refusalOf(std::string_view text, TagSet roots = anyRoot) {
    try {
        const XmlDocument document(text, roots);
        return std::nullopt;
    } catch (const XmlError& error) {
        return error.kind();
    }
}

constexpr auto notWellFormed = XmlError::Kind::notWellFormed;
constexpr auto notValid = XmlError::Kind::notValid;

/// `depth` elements one in the other, all of them where the grammar allows them.
std::string nested(std::size_t depth) {
    const std::size_t rounds = (depth - 1) / 3;
    constexpr std::string_view name = "<INSTANCENAME CLASSNAME=\"C\">";
    const std::string open = std::string(name) + "<KEYBINDING NAME=\"R\"><VALUE.REFERENCE>";
    constexpr std::string_view close = "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    constexpr std::array<std::string_view, 3> innermost{
        "", "<KEYVALUE></KEYVALUE>", "<KEYBINDING NAME=\"K\"><KEYVALUE></KEYVALUE></KEYBINDING>"};
    return repeated(open, rounds) + std::string(name) +
           std::string(innermost[depth - 1 - 3 * rounds]) + "</INSTANCENAME>" +
           repeated(close, rounds);
}

TEST(XmlDocument, GivesElementsAttributesAndText) {
    const XmlDocument document(
        "<INSTANCE CLASSNAME='C'><PROPERTY NAME='a&lt;b' TYPE='string'>\n <VALUE>x &amp; y</VALUE>"
        "</PROPERTY><PROPERTY NAME='n' TYPE='uint8'/></INSTANCE>",
        anyRoot);
    const Element root = document.root();
    EXPECT_EQ(root.tag(), Tag::instance);
    EXPECT_EQ(root.tagName(), "INSTANCE");
    EXPECT_EQ(root.attribute(Attribute::className), "C");
    EXPECT_EQ(root.attribute(Attribute::name), std::nullopt);
    EXPECT_EQ(root.attributeText(Attribute::name), "");
    const Element first = *root.firstChild();
    EXPECT_EQ(first.attributeText(Attribute::name), "a<b");
    EXPECT_EQ(first.child(Tag::value)->text(), "x & y");
    EXPECT_EQ(first.child(Tag::valueArray), std::nullopt);
    const Element second = *first.next();
    EXPECT_EQ(second.attributeText(Attribute::type), "uint8");
    EXPECT_FALSE(second.next());
    EXPECT_FALSE(second.firstChild());
}

TEST(XmlDocument, KeepsBlanksAndLinesOfValues) {
    const XmlDocument document("<VALUE> a\r\nb\tc\n</VALUE>", anyRoot);
    EXPECT_EQ(document.root().text(), " a\nb\tc\n");
}

TEST(XmlDocument, ReadsNumericReferencesCdataAndComments) {
    const XmlDocument document(
        "<!-- c --><VALUE>&#65;&#x42;<!-- c --><![CDATA[<&]]>&#x1F600;<?p i?></VALUE><!-- c -->",
        anyRoot);
    EXPECT_EQ(document.root().text(), "AB<&\xF0\x9F\x98\x80");
}

TEST(XmlDocument, ReadsValuesThatSpanManyParserBlocks) {
    std::string text;
    for (int i = 0; text.size() < 300'000; ++i) text += std::to_string(i) + "\xC3\xA9 ";
    const XmlDocument document("<VALUE>" + text + "</VALUE>", anyRoot);
    EXPECT_EQ(document.root().text(), text);
}

TEST(XmlDocument, AcceptsUtf8DeclaredOrNot) {
    EXPECT_FALSE(refusalOf("<?xml version=\"1.0\" encoding=\"utf-8\" ?><VALUE>\xC3\xA9</VALUE>"));
    EXPECT_FALSE(refusalOf("<?xml version=\"1.0\"?><VALUE>\xE2\x82\xAC</VALUE>"));
    EXPECT_FALSE(refusalOf("\xEF\xBB\xBF<VALUE/>"));
    EXPECT_FALSE(refusalOf("<?xml version=\"1.0\" encoding=\"US-ASCII\"?><VALUE>a</VALUE>"));
}

TEST(XmlDocument, RefusesOtherEncodings) {
    EXPECT_EQ(refusalOf("<?xml version='1.0' encoding='ISO-8859-1'?><VALUE>a</VALUE>"), notValid);
    EXPECT_EQ(refusalOf("<?xml version='1.0' encoding='UTF-16'?><VALUE>a</VALUE>"), notValid);
    EXPECT_EQ(refusalOf("<VALUE>\xE9</VALUE>"), notWellFormed);              // ISO 8859-1
    EXPECT_EQ(refusalOf("<VALUE>\xC0\xBC</VALUE>"), notWellFormed);          // overlong
    EXPECT_EQ(refusalOf("<VALUE>\xED\xA0\x80</VALUE>"), notWellFormed);      // surrogate
    EXPECT_EQ(refusalOf("<VALUE>\xF4\x90\x80\x80</VALUE>"), notWellFormed);  // past U+10FFFF
    EXPECT_EQ(refusalOf("<VALUE>\xE2\x82</VALUE>"), notWellFormed);          // cut short
    EXPECT_EQ(refusalOf("<VALUE>\xEF\xBF\xBF</VALUE>"), notWellFormed);      // U+FFFF
    EXPECT_EQ(refusalOf("\xFE\xFF<VALUE/>"), notWellFormed);                 // a mark of UTF-16
    EXPECT_EQ(refusalOf(std::string_view("\xFF\xFE<\0V\0A\0L\0U\0E\0/\0>\0", 18)), notWellFormed);
    EXPECT_EQ(refusalOf(std::string_view("<\0V\0A\0L\0U\0E\0/\0>\0", 16)), notWellFormed);
}

TEST(XmlDocument, RefusesTextThatIsNotXml) {
    for (const std::string_view text : {"",
                                        " ",
                                        "x",
                                        "<",
                                        "<VALUE",
                                        "<VALUE>",
                                        "<VALUE></VALU>",
                                        "<VALUE></VALUE",
                                        "</VALUE>",
                                        "<VALUE/><VALUE/>",
                                        "<VALUE/>x",
                                        "x<VALUE/>",
                                        "<VALUE><VALUE></VALUE>",
                                        "<VALUE.ARRAY><VALUE></VALUE.ARRAY></VALUE>",
                                        "<VALUE>&</VALUE>",
                                        "<VALUE>&lt</VALUE>",
                                        "<VALUE>a<b</VALUE>",
                                        "<VALUE>]]></VALUE>",
                                        "<VALUE a=1/>",
                                        "<VALUE a/>",
                                        "<VALUE a='<'/>",
                                        "<VALUE a='1' a='2'/>",
                                        "<VALUE a='1'b='2'/>",
                                        "<1/>",
                                        "<VALUE>&#0;</VALUE>",
                                        "<VALUE>&#x1;</VALUE>",
                                        "<VALUE>&#xD800;</VALUE>",
                                        "<VALUE>\x01</VALUE>",
                                        "<VALUE>\x1B</VALUE>",
                                        "<!-- -- --><VALUE/>",
                                        " <?xml version='1.0'?><VALUE/>",
                                        "<?xml version='1.0'?><?xml version='1.0'?><VALUE/>",
                                        "<?xml version='2.0'?><VALUE/>",
                                        "<?xml version='1.'?><VALUE/>",
                                        "<?xml version=''?><VALUE/>",
                                        "<?xml?><VALUE/>",
                                        "<VALUE><![CDATA[x</VALUE>",
                                        "\x80\x81\x82\xFF",
                                        "\x1F\x8B\x08"}) {
        EXPECT_EQ(refusalOf(text), notWellFormed) << text;
    }
}

TEST(XmlDocument, RefusesNulBytesAnywhere) {
    const std::string_view text = "<INSTANCE CLASSNAME='C'></INSTANCE>";
    for (std::size_t i = 0; i <= text.size(); ++i) {
        std::string spoilt(text);
        spoilt.insert(i, 1, '\0');
        EXPECT_EQ(refusalOf(spoilt), notWellFormed) << i;
    }
}

TEST(XmlDocument, RefusesEveryTruncation) {
    const std::string text = getInstanceRequest();
    ASSERT_FALSE(refusalOf(text));
    const std::size_t end = text.find_last_of('>');
    for (std::size_t size = 0; size <= end; ++size) {
        ASSERT_EQ(refusalOf(std::string_view(text).substr(0, size)), notWellFormed) << size;
    }
}

TEST(XmlDocument, RefusesEntitiesThatNobodyDeclared) {
    EXPECT_EQ(refusalOf("<VALUE>&nbsp;</VALUE>"), notWellFormed);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='&x;'></INSTANCE>"), notWellFormed);
}

TEST(XmlDocument, RefusesAnyDtd) {
    EXPECT_EQ(refusalOf("<!DOCTYPE VALUE><VALUE/>"), notValid);
    EXPECT_EQ(refusalOf("<!DOCTYPE VALUE SYSTEM 'file:///etc/passwd'><VALUE/>"), notValid);
    EXPECT_EQ(refusalOf("<!DOCTYPE VALUE [<!ENTITY x SYSTEM 'file:///etc/passwd'>]>"
                        "<VALUE>&x;</VALUE>"),
              notValid);
    EXPECT_EQ(refusalOf("<!DOCTYPE VALUE [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;'>"
                        "<!ENTITY c '&b;&b;&b;&b;&b;'>]><VALUE>&c;</VALUE>"),
              notValid);
    EXPECT_EQ(refusalOf("<!DOCTYPE VALUE [<!ENTITY % p SYSTEM 'http://localhost/'> %p;]><VALUE/>"),
              notValid);
}

TEST(XmlDocument, RefusesUnknownAndMisplacedElements) {
    EXPECT_EQ(refusalOf("<FOO/>"), notValid);
    EXPECT_EQ(refusalOf("<html><body/></html>"), notValid);
    EXPECT_EQ(refusalOf("<value/>"), notValid);
    EXPECT_EQ(refusalOf("<VALUE.ARRAY/>"), notValid);  // not among the roots
    EXPECT_EQ(refusalOf("<VALUE><VALUE/></VALUE>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='C'><VALUE/></INSTANCE>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='C'><FOO/></INSTANCE>"), notValid);
    EXPECT_EQ(refusalOf("<a:VALUE xmlns:a='urn:a'/>"), notValid);
}

TEST(XmlDocument, RefusesChildrenInTheWrongOrderOrNumber) {
    constexpr std::string_view value =
        "<PROPERTY NAME='p' TYPE='uint8'><VALUE>1</VALUE></PROPERTY>";
    constexpr std::string_view qualifier = "<QUALIFIER NAME='q' TYPE='boolean'/>";
    const auto instance = [](std::string inside) {
        return "<INSTANCE CLASSNAME='C'>" + inside + "</INSTANCE>";
    };
    EXPECT_FALSE(refusalOf(instance(std::string(qualifier) + std::string(value))));
    EXPECT_EQ(refusalOf(instance(std::string(value) + std::string(qualifier))), notValid);
    EXPECT_EQ(refusalOf(instance("<PROPERTY NAME='p' TYPE='uint8'><VALUE/><VALUE/></PROPERTY>")),
              notValid);
    EXPECT_EQ(refusalOf(instance("<PROPERTY.REFERENCE NAME='p'><VALUE.REFERENCE/>"
                                 "</PROPERTY.REFERENCE>")),
              notValid);
    EXPECT_EQ(refusalOf("<INSTANCENAME CLASSNAME='C'><KEYBINDING NAME='k'/></INSTANCENAME>"),
              notValid);
    EXPECT_EQ(refusalOf("<CIM CIMVERSION='2.0' DTDVERSION='2.0'/>"), notValid);
}

TEST(XmlDocument, RefusesMissingAttributes) {
    EXPECT_EQ(refusalOf("<INSTANCE/>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE NAME='C'/>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCENAME/>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='C'><PROPERTY NAME='p'/></INSTANCE>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='C'><PROPERTY TYPE='uint8'/></INSTANCE>"), notValid);
    EXPECT_EQ(refusalOf("<CIM CIMVERSION='2.0'><MESSAGE/></CIM>"), notValid);
}

TEST(XmlDocument, RefusesTextBetweenElements) {
    EXPECT_FALSE(refusalOf("<INSTANCE CLASSNAME='C'> \t\r\n </INSTANCE>"));
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='C'>x</INSTANCE>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='C'>&#160;</INSTANCE>"), notValid);
}

TEST(XmlDocument, PassesOverAttributesThatItDoesNotKnow) {
    EXPECT_FALSE(refusalOf("<INSTANCE CLASSNAME='C' xml:lang='en' FUTURE='1'></INSTANCE>"));
}

TEST(XmlDocument, TellsBadSyntaxFromBadContentWhenBothAreThere) {
    EXPECT_EQ(refusalOf("<FOO><BAR></FOO>"), notWellFormed);
    EXPECT_EQ(refusalOf("<INSTANCE><VALUE></INSTANCE>"), notWellFormed);
}

TEST(XmlDocument, AcceptsElementsNestedToTheLimitOnly) {
    for (const std::size_t depth : {1UL, 2UL, 3UL, 4UL, 254UL, 255UL, 256UL}) {
        EXPECT_FALSE(refusalOf(nested(depth))) << depth;
    }
    for (const std::size_t depth : {257UL, 258UL, 300UL, 100'000UL}) {
        EXPECT_EQ(refusalOf(nested(depth)), notValid) << depth;
    }
    // What the grammar refuses is still read to its end, and no deeper.
    EXPECT_EQ(refusalOf(repeated("<a>", 1'000'000)), notValid);
    EXPECT_EQ(refusalOf(repeated("<a>", 256)), notWellFormed);
    EXPECT_EQ(refusalOf(repeated("<a>", 257)), notValid);
}

std::string withAttributes(std::size_t count) {
    std::string text = "<INSTANCE CLASSNAME='C'";
    for (std::size_t i = 1; i < count; ++i) text += " a" + std::to_string(i) + "=''";
    return text + "></INSTANCE>";
}

TEST(XmlDocument, AcceptsAttributesToTheLimitOnly) {
    EXPECT_FALSE(refusalOf(withAttributes(64)));
    EXPECT_EQ(refusalOf(withAttributes(65)), notValid);
    EXPECT_EQ(refusalOf(withAttributes(1'000)), notValid);
    EXPECT_EQ(refusalOf(withAttributes(500'000)), notValid);
}

TEST(XmlDocument, AcceptsNamesToTheLimitOnly) {
    const auto withName = [](std::size_t size) {
        return "<INSTANCE CLASSNAME='C' " + std::string(size, 'n') + "='1'></INSTANCE>";
    };
    EXPECT_FALSE(refusalOf(withName(1024)));
    EXPECT_EQ(refusalOf(withName(1025)), notValid);
    EXPECT_EQ(refusalOf(withName(5'000'000)), notValid);
    EXPECT_EQ(refusalOf("<" + std::string(1025, 'n') + "><x></y>"), notValid);
    EXPECT_EQ(refusalOf("<" + std::string(1024, 'n') + "><x></y>"), notWellFormed);
    EXPECT_EQ(refusalOf("<" + std::string(5'000'000, 'n') + "/>"), notValid);
}

TEST(XmlDocument, AcceptsElementsToTheLimitOnly) {
    const auto withElements = [](std::size_t count) {
        return "<INSTANCE CLASSNAME='C'><PROPERTY.ARRAY NAME='p' TYPE='uint8'><VALUE.ARRAY>" +
               repeated("<VALUE/>", count - 3) + "</VALUE.ARRAY></PROPERTY.ARRAY></INSTANCE>";
    };
    EXPECT_FALSE(refusalOf(withElements(XmlLimits::elements)));
    EXPECT_EQ(refusalOf(withElements(XmlLimits::elements + 1)), notValid);
}

TEST(XmlDocument, BoundsTheMemoryOfNamesAndTokens) {
    std::string manyNames = "<INSTANCE CLASSNAME='C'>";
    for (int i = 0; manyNames.size() < 8'000'000; ++i) manyNames += "<n" + std::to_string(i) + "/>";
    EXPECT_EQ(refusalOf(manyNames + "</INSTANCE>"), notValid);
    EXPECT_EQ(refusalOf("<INSTANCE CLASSNAME='" + std::string(8'000'000, 'c') + "'/>"), notValid);
    EXPECT_EQ(refusalOf("<!--" + std::string(8'000'000, 'c') + "--><VALUE/>"), notValid);
    // The next document has its full budget again.
    EXPECT_FALSE(refusalOf("<VALUE>" + std::string(8'000'000, 'c') + "</VALUE>"));
}

TEST(XmlDocument, AgreesWithAnotherParserOnWhatIsXml) {
    const std::string text = getInstanceRequest();
    constexpr std::string_view spoilers = "<>&;\"'/=!?[-x \t\x01\x80\xFF]";
    const std::size_t encoding = text.find("utf-8");
    for (std::size_t place = 0; place < text.size(); ++place) {
        // An encoding that nobody knows says nothing of the syntax.
        if (place - encoding < 5) continue;
        for (const char spoiler : spoilers) {
            std::string changed = text;
            changed[place] = spoiler;
            const bool isWellFormed = refusalOf(changed) != notWellFormed;
            ASSERT_EQ(isWellFormed, isWellFormedXml(changed)) << changed;
        }
    }
}

}  // namespace
}  // namespace cimhost
