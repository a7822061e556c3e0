#include "cimhost/mof/MofLexer.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <vector>

namespace cimhost {
namespace {

using Kind = MofToken::Kind;

const std::string file = "t.mof";

std::vector<MofToken> tokens(std::string_view text) {
    MofLexer lexer(text, file);
    std::vector<MofToken> found;
    do {
        found.push_back(lexer.next());
    } while (found.back().kind != Kind::end);
    found.pop_back();
    return found;
}

std::string refusal(std::string_view text) {
    return refusalOf<MofError>([&] { tokens(text); });
}

void expectOne(std::string_view text, Kind kind) {
    const auto found = tokens(text);
    ASSERT_EQ(found.size(), 1U) << text;
    EXPECT_EQ(found[0].kind, kind) << text;
    EXPECT_EQ(found[0].text, text);
}

TEST(MofLexer, TellsTheKindsOfWords) {
    expectOne("CIM_Fan", Kind::name);
    expectOne("_x9", Kind::name);
    expectOne("\xC3\x84rger", Kind::name);
    expectOne("$alias", Kind::alias);
    expectOne("12", Kind::number);
    expectOne("-12", Kind::number);
    expectOne("+0x1F", Kind::number);
    expectOne("1.5e-3", Kind::number);
    expectOne(".5E+3", Kind::number);
    expectOne("101b", Kind::number);
    expectOne("12ab", Kind::number);
    expectOne("\"a b\"", Kind::string);
    expectOne("\"a\\\"b\\\\\"", Kind::string);
    expectOne("'x'", Kind::character);
    expectOne("'\\''", Kind::character);
    expectOne("{", Kind::symbol);
    expectOne("-", Kind::symbol);
    expectOne("$", Kind::symbol);
    expectOne("\x01", Kind::symbol);
}

TEST(MofLexer, CutsWordsThatTouch) {
    const auto found = tokens("a{1,-2}\"x\"'y'$z;");
    std::vector<std::string_view> texts;
    for (const MofToken& token : found) texts.push_back(token.text);
    EXPECT_EQ(texts, (std::vector<std::string_view>{"a", "{", "1", ",", "-2", "}", "\"x\"", "'y'",
                                                    "$z", ";"}));
}

TEST(MofLexer, AnExponentsSignBelongsOnlyToAReal) {
    EXPECT_EQ(tokens("0x1E+5").size(), 2U);
    EXPECT_EQ(tokens("1.0e+5").size(), 1U);
}

TEST(MofLexer, DropsSpaceCommentsAndTheByteOrderMark) {
    const auto found = tokens("\xEF\xBB\xBF a // one \" '\n /* two\n * / */ b /**/ c//");
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[1].text, "b");
}

TEST(MofLexer, CommentsDoNotNest) { EXPECT_EQ(tokens("/* /* */ a").size(), 1U); }

TEST(MofLexer, SlashesInAStringAreNoComment) { expectOne("\"http://x/*\"", Kind::string); }

TEST(MofLexer, CountsLinesAndColumnsFromOne) {
    const auto found = tokens(
        "\xEF\xBB\xBF"
        "a\r\n  b /*\n\n*/ c\n\td");
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0].position.line, 1U);
    EXPECT_EQ(found[0].position.column, 1U);
    EXPECT_EQ(found[1].position.line, 2U);
    EXPECT_EQ(found[1].position.column, 3U);
    EXPECT_EQ(found[2].position.line, 4U);
    EXPECT_EQ(found[2].position.column, 4U);
    EXPECT_EQ(found[3].position.line, 5U);
    EXPECT_EQ(found[3].position.column, 2U);
    EXPECT_EQ(*found[3].position.file, "t.mof");
}

TEST(MofLexer, StaysAtTheEnd) {
    MofLexer lexer("a", file);
    lexer.next();
    EXPECT_EQ(lexer.next().kind, Kind::end);
    EXPECT_EQ(lexer.next().kind, Kind::end);
}

TEST(MofLexer, ReportsWhatIsNotClosedWhereItOpens) {
    EXPECT_EQ(refusal(" /* a\n\n"), "t.mof:1:2: the comment is not closed");
    EXPECT_EQ(refusal("/*/"), "t.mof:1:1: the comment is not closed");
    EXPECT_EQ(refusal("a\n \"abc\nd\""), "t.mof:2:2: the string is not closed on its line");
    EXPECT_EQ(refusal("\"abc\\\""), "t.mof:1:1: the string is not closed on its line");
    EXPECT_EQ(refusal("\"abc\\"), "t.mof:1:1: the string is not closed on its line");
    EXPECT_EQ(refusal("\"abc\\\n\""), "t.mof:1:1: the string is not closed on its line");
    EXPECT_EQ(refusal("\""), "t.mof:1:1: the string is not closed on its line");
    EXPECT_EQ(refusal("'a"), "t.mof:1:1: the character is not closed on its line");
}

TEST(MofLexer, DescribesTokensForMessages) {
    MofLexer lexer("uint32 \"text\" 'c' $a 12 ; \x01", file);
    EXPECT_EQ(describe(lexer.next()), "'uint32'");
    EXPECT_EQ(describe(lexer.next()), "a string");
    EXPECT_EQ(describe(lexer.next()), "a character");
    EXPECT_EQ(describe(lexer.next()), "'$a'");
    EXPECT_EQ(describe(lexer.next()), "'12'");
    EXPECT_EQ(describe(lexer.next()), "';'");
    EXPECT_EQ(describe(lexer.next()), "character number 1");
    EXPECT_EQ(describe(lexer.next()), "the end of the file");
    const std::string longName(100, 'x');
    MofLexer other(longName, file);
    EXPECT_EQ(describe(other.next()), "'" + std::string(40, 'x') + "...'");
}

TEST(MofLexer, KeywordsAreNamesInAnyCase) {
    MofLexer lexer("CLASS 'CLASS'", file);
    EXPECT_TRUE(lexer.next().isName("class"));
    EXPECT_FALSE(lexer.next().isName("class"));
}

}  // namespace
}  // namespace cimhost
