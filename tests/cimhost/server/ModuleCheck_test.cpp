#include "cimhost/server/ModuleCheck.h"

#include "cimhost/mof/MofReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace cimhost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The module of tests/system/mistakes, which makes the mistake that the environment names.
struct ModuleCheckTest : testing::Test {
    Repository repository;
    Registrations registrations;
    ModuleCheckOptions options{{TEST_BOARDS_FOLDER}, true, std::chrono::seconds(60)};

    ModuleCheckTest() {
        MofReader reader(repository, "root/test");
        reader.readFile(TEST_QUALIFIERS);
        reader.readFile(TEST_BOARDS_SCHEMA);
        registrations.readText("TST_Board root/test Boards boards instance method\n", "r");
    }
    ~ModuleCheckTest() override { ::unsetenv("MISTAKE"); }

    Findings findingsOf(const char* mistake) {
        ::setenv("MISTAKE", mistake, 1);
        return checkModules(repository, registrations, options).errors;
    }
};

TEST_F(ModuleCheckTest, FindsNothingInAModuleThatIsWell) {
    EXPECT_THAT(findingsOf("none"), IsEmpty());
    EXPECT_THAT(checkModules(repository, registrations, options).doubts, IsEmpty());
}

TEST_F(ModuleCheckTest, SurvivesAModuleThatCrashesLeavesOrThrowsWhenItIsLoaded) {
    EXPECT_THAT(
        findingsOf("module-crash"),
        ElementsAre(testing::StartsWith("module boards: crashes with SIGABRT while it is loaded")));
    EXPECT_THAT(findingsOf("module-leaves"),
                ElementsAre("module boards: ends the process with status 3 while it is loaded"));
    EXPECT_THAT(findingsOf("module-throws"),
                ElementsAre(testing::AllOf(testing::HasSubstr("while it is loaded"),
                                           testing::HasSubstr("no configuration"))));
}

TEST_F(ModuleCheckTest, WaitsForNoModuleForEver) {
    options.patience = std::chrono::seconds(2);
    EXPECT_THAT(findingsOf("constructor-hangs"),
                ElementsAre("module boards: does not return within 2 seconds while provider Boards "
                            "makes its Instance MI"));
}

TEST_F(ModuleCheckTest, AsksOnlyWhenItIsToldTo) {
    options.asks = false;
    EXPECT_THAT(findingsOf("property-unknown"), IsEmpty());
    options.asks = true;
    EXPECT_THAT(findingsOf("property-unknown"), testing::SizeIs(1));
    EXPECT_THAT(findingsOf("host-forgotten"),
                ElementsAre("r:1: provider Boards names root/test:TST_Board.Name=\"one\" and does "
                            "not find it: is its path without setHost(), or has it another class "
                            "or key?"));
}

TEST_F(ModuleCheckTest, DoubtsAProviderThatNamesNothing) {
    EXPECT_THAT(findingsOf("class-name-misspelt"), IsEmpty());
    EXPECT_THAT(checkModules(repository, registrations, options).doubts, testing::SizeIs(1));
}

}  // namespace
}  // namespace cimhost
