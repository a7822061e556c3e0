// Texts that are made to exhaust whoever reads them: each is read, or refused at a line and column.
#include "cimhost/mof/MofReader.h"
#include "tests/cimhost/mof/MofText.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    result.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) result += text;
    return result;
}

template <typename Part>
std::string numbered(int first, int last, Part part) {
    std::string result;
    for (int i = first; i < last; ++i) result += part(std::to_string(i), std::to_string(i - 1));
    return result;
}

/// Reads a bomb as a file, as an operator would meet it.
class MofBombs : public testing::Test {
protected:
    std::string errorOf(const std::string& text) {
        const auto file = _folder.write("bomb.mof", text);
        try {
            MofReader(_repository, "root/test").readFile(file);
        } catch (const MofError& error) {
            EXPECT_THAT(error.what(), StartsWith(_folder.path().string()));
            EXPECT_GE(error.line(), 1U);
            EXPECT_GE(error.column(), 1U);
            return error.what();
        }
        return {};
    }
    const Class& classOf(const char* name) { return *_repository.get("root/test").findClass(name); }

    TemporaryFolder _folder;
    Repository _repository;
};

TEST_F(MofBombs, AVeryLongStringIsRead) {
    ASSERT_EQ(errorOf("class A { string S = \"" + std::string(24U << 20U, 'x') + "\"; };"), "");
    EXPECT_EQ(classOf("A").properties[0]->defaultValue.get<Text>()->size(), 24U << 20U);
}

TEST_F(MofBombs, FourHundredThousandJoinedLiteralsAreOneString) {
    ASSERT_EQ(errorOf("class A { string S = " + repeated("\"abc\" ", 400000) + "; };"), "");
    EXPECT_EQ(classOf("A").properties[0]->defaultValue.get<Text>()->size(), 1200000U);
}

TEST_F(MofBombs, AHundredThousandPropertiesAreReadAndInherited) {
    const auto property = [](const std::string& i, const std::string&) {
        return "uint32 P" + i + ";";
    };
    ASSERT_EQ(errorOf("class A {" + numbered(0, 100000, property) +
                      "}; class B : A { uint32 P99999; uint32 Q; };"),
              "");
    EXPECT_EQ(classOf("A").properties.size(), 100000U);
    EXPECT_EQ(classOf("B").properties.size(), 100001U);
    EXPECT_EQ(classOf("B").properties[99999]->classOrigin, "B");
}

TEST_F(MofBombs, ThreeThousandLevelsAreReadAndWalked) {
    const auto level = [](const std::string& i, const std::string& above) {
        return "class C" + i + " : C" + above + " { uint8 P" + i + "; };\n";
    };
    ASSERT_EQ(errorOf("class C0 {};" + numbered(1, 3000, level)), "");
    EXPECT_EQ(classOf("C2999").properties.size(), 2999U);
    const NameSpace& nameSpace = _repository.get("root/test");
    EXPECT_TRUE(nameSpace.isA("C2999", "C0"));
    EXPECT_EQ(nameSpace.withDescendants("C0").size(), 3000U);
}

TEST_F(MofBombs, AWideClassInheritedManyTimesIsStopped) {
    const auto property = [](const std::string& i, const std::string&) {
        return "uint8 P" + i + ";";
    };
    const auto subclass = [](const std::string& i, const std::string&) {
        return "class B" + i + ":A{};";
    };
    EXPECT_THAT(
        errorOf("class A {" + numbered(0, 50000, property) + "};" + numbered(0, 3000, subclass)),
        EndsWith("the definitions take more than 128 MiB"));
}

TEST_F(MofBombs, ALongQualifierInheritedManyTimesIsStopped) {
    const auto level = [](const std::string& i, const std::string& above) {
        return "class C" + i + " : C" + above + " {};\n";
    };
    EXPECT_THAT(
        errorOf("Qualifier Description : string, Scope(any);\n[Description(\"" +
                std::string(1U << 20U, 'd') + "\")] class C0 {};" + numbered(1, 3000, level)),
        EndsWith("the definitions take more than 128 MiB"));
}

TEST_F(MofBombs, ALongQualifierDefaultUsedManyTimesIsStopped) {
    const auto use = [](const std::string& i, const std::string&) {
        return "[D] class C" + i + "{};";
    };
    EXPECT_THAT(errorOf("Qualifier D : string = \"" + std::string(1U << 20U, 'd') +
                        "\", Scope(any);" + numbered(0, 1000, use)),
                EndsWith("the definitions take more than 128 MiB"));
}

TEST_F(MofBombs, ManyNamespacesShareOneLimit) {
    const auto property = [](const std::string& i, const std::string&) {
        return "uint8 P" + i + ";";
    };
    const std::string wide = "class A {" + numbered(0, 30000, property) + "};";
    const auto nameSpace = [&wide](const std::string& i, const std::string&) {
        return "#pragma namespace(\"n" + i + "\")\n" + wide;
    };
    EXPECT_THAT(errorOf(numbered(0, 40, nameSpace)),
                EndsWith("the definitions take more than 128 MiB"));
}

TEST_F(MofBombs, ATextBeyondTheLimitIsRefused) {
    EXPECT_THAT(errorOf(std::string((32U << 20U) + 1, ' ')),
                EndsWith("bomb.mof:1:1: the texts have more than 32 MiB"));
}

TEST_F(MofBombs, IncludesThatDoubleAtEachLevelAreStopped) {
    for (int i = 1; i <= 20; ++i) {
        const std::string next = std::to_string(i + 1) + ".mof";
        _folder.write(std::to_string(i) + ".mof",
                      repeated("#pragma include(\"" + next + "\")\n", 2));
    }
    _folder.write("21.mof", "");
    EXPECT_THAT(errorOf("#pragma include(\"1.mof\")"),
                HasSubstr("more than 16384 files are included"));
}

TEST_F(MofBombs, OneLargeFileIncludedAgainAndAgainIsStopped) {
    _folder.write("large.mof", std::string(8U << 20U, ' '));
    EXPECT_THAT(errorOf(repeated("#pragma include(\"large.mof\")\n", 100)),
                HasSubstr("the texts have more than 32 MiB"));
}

TEST_F(MofBombs, AMillionOpenBracesAreRefusedAtTheFirst) {
    EXPECT_THAT(errorOf("class A " + repeated("{", 1000000)),
                EndsWith(":1:10: expected a type, found '{'"));
    EXPECT_THAT(errorOf(repeated("[", 1000000)), EndsWith(":1:2: expected a qualifier, found '['"));
    EXPECT_THAT(errorOf("class A { uint8 P[] = " + repeated("{", 1000000)),
                EndsWith(":1:24: expected a value, found '{'"));
    EXPECT_THAT(errorOf("#pragma x " + repeated("(", 1000000)),
                EndsWith("expected ')' after the pragma, found the end of the file"));
}

TEST_F(MofBombs, WhatIsNotClosedIsReportedWhereItOpens) {
    EXPECT_THAT(errorOf("\n  /*" + repeated("class A {};\n", 100000)),
                EndsWith(":2:3: the comment is not closed"));
    EXPECT_THAT(errorOf("class A { string S = \"" + std::string(1U << 20U, 'x')),
                EndsWith(":1:22: the string is not closed on its line"));
}

TEST_F(MofBombs, AMillionRepeatsOfAQualifierAreRefusedAtTheSecond) {
    EXPECT_THAT(errorOf("Qualifier D : string, Scope(any);\n[" + repeated("D,", 1000000) +
                        "D] class A {};"),
                EndsWith(":2:4: qualifier 'D' is given twice"));
}

TEST_F(MofBombs, ANumberOfAMillionDigitsIsRefused) {
    EXPECT_THAT(
        errorOf("class A { uint64 N = " + std::string(1000000, '1') + "; };"),
        EndsWith(":1:22: '1111111111111111111111111111111111111111...' does not fit into 64 bits"));
}

TEST_F(MofBombs, BytesThatAreNoTextAreRefused) {
    EXPECT_THAT(errorOf(std::string(1000000, '\0')), EndsWith("found character number 0"));
    std::string bytes;
    for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7919 % 251 + 5);
    EXPECT_NE(errorOf(bytes), "");
}

TEST_F(MofBombs, AChainOfAliasesIsStopped) {
    const auto link = [](const std::string& i, const std::string& before) {
        return "instance of T as $t" + before + " { X = $t" + i + "; Y = $t" + i + "; };\n";
    };
    EXPECT_THAT(
        errorOf(test::qualifiers + "[Association] class T { [Key] T REF X; [Key] T REF Y; };" +
                numbered(1, 50000, link)),
        HasSubstr("references or embedded instances nest deeper than 16"));
}

TEST_F(MofBombs, AHundredThousandInstancesAreFoundByTheirKeys) {
    const auto instance = [](const std::string& i, const std::string&) {
        return "instance of A { K = " + i + "; };\n";
    };
    ASSERT_EQ(
        errorOf(test::qualifiers + "class A { [Key] uint32 K; };" + numbered(0, 100000, instance)),
        "");
    const NameSpace& nameSpace = _repository.get("root/test");
    const ObjectPath path{"", "", "A", {{"K", Value::unsignedInteger(CimType::uint32, 77777)}}};
    EXPECT_NE(nameSpace.findInstance(path), nullptr);
}

TEST_F(MofBombs, EveryPrefixOfATextIsReadOrRefused) {
    const std::string text =
        test::qualifiers +
        "[Abstract, Version(\"1\\x41\")] class T_A { [Key] string K = \"a\" \"b\"; "
        "uint8 N[2] = {1, 0x2}; uint32 F([In(false), Out] T_A REF P[]); /* c */ }; // d\n"
        "class T_B : T_A { char16 C = 'x'; }; instance of T_B as $b { K = \"1\"; N = {}; };";
    int refused = 0;
    for (std::size_t length = 0; length <= text.size(); ++length) {
        Repository repository;
        try {
            MofReader(repository, "root/test")
                .readText(std::string_view(text).substr(0, length), "t");
        } catch (const MofError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 500);
    MofText whole;
    EXPECT_EQ(whole.errorOf(std::string_view(text).substr(test::qualifiers.size())), "");
}

}  // namespace
}  // namespace cimhost
