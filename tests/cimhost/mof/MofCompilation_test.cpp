#include "cimhost/mof/MofCompilation.h"

#include "tests/cimhost/mof/MofText.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;
using testing::EndsWith;
using testing::HasSubstr;

class MofCompilationTest : public testing::Test {
protected:
    void readFile(const std::filesystem::path& file) {
        MofReader reader(_repository, "root/test");
        for (const auto& path : _searchPaths) reader.addSearchPath(path);
        reader.readFile(file);
    }

    std::string errorOf(const std::filesystem::path& file) {
        try {
            readFile(file);
        } catch (const MofError& error) {
            return error.what();
        }
        return {};
    }

    bool has(const char* nameSpace, const char* className) {
        const NameSpace* const found = _repository.find(nameSpace);
        return found && found->findClass(className);
    }

    TemporaryFolder _folder;
    Repository _repository;
    std::vector<std::filesystem::path> _searchPaths;
};

TEST_F(MofCompilationTest, IncludesFilesFromTheFolderOfTheIncludingOne) {
    const auto file = _folder.write("a.mof", "#pragma include (\"sub/b.mof\")\nclass A : C {};");
    _folder.write("sub/b.mof", "#PRAGMA Include(\"c.\" \"mof\") class B {};");
    _folder.write("sub/c.mof", "class C {};");
    readFile(file);
    EXPECT_TRUE(has("root/test", "A"));
    EXPECT_TRUE(has("root/test", "B"));
}

TEST_F(MofCompilationTest, ReadsTheNameOfAFileAsItStands) {
    const auto file = _folder.write("a.mof",
                                    "#pragma include (\"System\\CIM_b.mof\")\n"
                                    "#pragma include (\"new\\\\te\" \"xt.mof\")");
    _folder.write("System/CIM_b.mof", "class B {};");
    _folder.write("new/text.mof", "class C {};");
    readFile(file);
    EXPECT_TRUE(has("root/test", "B"));
    EXPECT_TRUE(has("root/test", "C"));
}

TEST_F(MofCompilationTest, LooksInTheSearchPathsNext) {
    const auto file = _folder.write("a.mof", "#pragma include (\"b.mof\")");
    _folder.write("one/b.mof", "class One {};");
    _folder.write("two/b.mof", "class Two {};");
    _searchPaths = {_folder.path() / "none", _folder.path() / "one", _folder.path() / "two"};
    readFile(file);
    EXPECT_TRUE(has("root/test", "One"));
    EXPECT_FALSE(has("root/test", "Two"));
}

TEST_F(MofCompilationTest, PrefersTheOwnFolderToTheSearchPaths) {
    const auto file = _folder.write("a.mof", "#pragma include (\"b.mof\")");
    _folder.write("b.mof", "class Own {};");
    _folder.write("one/b.mof", "class One {};");
    _searchPaths = {_folder.path() / "one"};
    readFile(file);
    EXPECT_TRUE(has("root/test", "Own"));
}

TEST_F(MofCompilationTest, ANamespacePragmaHoldsToTheEndOfItsFile) {
    const auto file = _folder.write("a.mof", "#pragma include(\"b.mof\")\nclass A {};");
    _folder.write("b.mof", "class B {};\n#pragma namespace (\"/interop/\")\nclass C {};");
    readFile(file);
    EXPECT_TRUE(has("root/test", "A"));
    EXPECT_TRUE(has("root/test", "B"));
    EXPECT_TRUE(has("interop", "C"));
}

TEST_F(MofCompilationTest, AnIncludedFileStartsInTheNamespaceOfItsIncluder) {
    const auto file =
        _folder.write("a.mof", "#pragma namespace(\"n\")\n#pragma include(\"b.mof\")");
    _folder.write("b.mof", "class B {};");
    readFile(file);
    EXPECT_TRUE(has("n", "B"));
}

TEST_F(MofCompilationTest, ErrorsNameTheIncludedFile) {
    const auto file = _folder.write("a.mof", "#pragma include(\"b.mof\")");
    const auto inner = _folder.write("b.mof", "\n  oops");
    EXPECT_EQ(errorOf(file), inner.string() +
                                 ":2:3: expected a class, an instance, a qualifier "
                                 "declaration or a pragma, found 'oops'");
}

TEST_F(MofCompilationTest, AMissingIncludeIsNamedWhereItIsAskedFor) {
    const auto file = _folder.write("a.mof", "\n #pragma include ( \"nope.mof\" )");
    EXPECT_EQ(errorOf(file), file.string() + ":2:20: the included file 'nope.mof' is not found");
}

TEST_F(MofCompilationTest, AFileThatIncludesItselfIsStopped) {
    const auto file = _folder.write("a.mof", "#pragma include(\"a.mof\")");
    EXPECT_THAT(errorOf(file), EndsWith("a.mof' includes itself"));
    const auto first = _folder.write("b.mof", "#pragma include(\"c.mof\")");
    _folder.write("c.mof", "#pragma include(\"./x/../b.mof\")");
    std::filesystem::create_directory(_folder.path() / "x");
    EXPECT_THAT(errorOf(first), HasSubstr("includes itself"));
}

TEST_F(MofCompilationTest, AFileMayBeIncludedTwiceSideBySide) {
    const auto file =
        _folder.write("a.mof", "#pragma include(\"b.mof\")\n#pragma include(\"b.mof\")");
    _folder.write("b.mof", "// nothing");
    EXPECT_EQ(errorOf(file), "");
}

TEST_F(MofCompilationTest, IncludesNestUpTo32LevelsAndNoDeeper) {
    for (int i = 0; i <= 33; ++i) {
        _folder.write(std::to_string(i) + ".mof",
                      "#pragma include(\"" + std::to_string(i + 1) + ".mof\")");
    }
    _folder.write("34.mof", "class Deep {};");
    EXPECT_EQ(errorOf(_folder.path() / "2.mof"), "");
    EXPECT_TRUE(has("root/test", "Deep"));
    EXPECT_THAT(errorOf(_folder.path() / "1.mof"),
                HasSubstr("33.mof:1:17: files include each other deeper than 32"));
}

TEST_F(MofCompilationTest, ReadsOnlyFiles) {
    EXPECT_THAT(errorOf(_folder.path()), HasSubstr("cannot be read: it is not a regular file"));
    EXPECT_THAT(errorOf(_folder.path() / "nope.mof"),
                HasSubstr("nope.mof' cannot be read: No such file or directory"));
    EXPECT_THAT(errorOf("/dev/zero"), HasSubstr("cannot be read: it is not a regular file"));
}

TEST_F(MofCompilationTest, PragmasThatMeanNothingAreSkipped) {
    MofText mof;
    mof.read(
        "#pragma locale (\"en_US\")\n#pragma instancelocale(\"de_DE\")\n"
        "#pragma source(\"http://x\") # pragma nonlocaltype(a, (b), 5)\n#pragma bare\nclass A {};");
    EXPECT_EQ(mof.classOf("A").name, "A");
}

TEST_F(MofCompilationTest, SaysWhatIsWrongWithAPragma) {
    MofText mof;
    EXPECT_EQ(mof.errorOf("#class"), "t.mof:1:2: expected 'pragma' after '#', found 'class'");
    EXPECT_EQ(mof.errorOf("#pragma"),
              "t.mof:1:8: expected the name of a pragma, found the end of the file");
    EXPECT_EQ(mof.errorOf("#pragma include \"a\""),
              "t.mof:1:17: expected '(' after the pragma, found a string");
    EXPECT_EQ(mof.errorOf("#pragma include (a)"),
              "t.mof:1:18: expected a string as the pragma's parameter, found 'a'");
    EXPECT_EQ(mof.errorOf("#pragma namespace (\"a\""),
              "t.mof:1:23: expected ')' after the pragma's parameter, found the end of the file");
    EXPECT_EQ(mof.errorOf("#pragma namespace (\"/\")"), "t.mof:1:20: a namespace needs a name");
    EXPECT_EQ(mof.errorOf("#pragma other (a"),
              "t.mof:1:17: expected ')' after the pragma, found the end of the file");
}

TEST_F(MofCompilationTest, SaysWhatIsWrongBetweenDefinitions) {
    MofText mof;
    EXPECT_EQ(mof.errorOf("[Abstract] qualifier"),
              "t.mof:1:12: expected 'class' or 'instance' after the qualifiers, found 'qualifier'");
    EXPECT_EQ(mof.errorOf("class A {};;"),
              "t.mof:1:12: expected a class, an instance, a qualifier declaration or a pragma, "
              "found ';'");
    EXPECT_EQ(mof.errorOf("\xFE\xFF"),
              "t.mof:1:1: expected a class, an instance, a qualifier "
              "declaration or a pragma, found '\xFE\xFF'");
}

}  // namespace
}  // namespace cimhost
