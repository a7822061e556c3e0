#include "cimhost/indications/SubscriptionFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

namespace cimhost {
namespace {

mode_t modeOf(const std::filesystem::path& file) {
    struct stat status {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return status.st_mode & 0777U;
}

TEST(SubscriptionFile, IsNothingWhenItIsNotThere) {
    const TemporaryFolder folder;
    EXPECT_FALSE(readWholeFile(folder / "state"));
}

TEST(SubscriptionFile, IsReplacedAsAWholeAndForItsOwnerAlone) {
    const TemporaryFolder folder;
    const auto file = folder / "state";
    std::ofstream(file) << "something much longer than what follows";
    std::filesystem::permissions(file, std::filesystem::perms(0644));
    replaceFile(file, "new");
    EXPECT_EQ(readWholeFile(file), "new");
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_FALSE(std::filesystem::exists(folder / "state.new"));
}

TEST(SubscriptionFile, StaysAsItWasWhenItCannotBeReplaced) {
    const TemporaryFolder folder;
    const auto file = folder / "state";
    replaceFile(file, "old");
    EXPECT_THROW(replaceFile(file, std::string((std::size_t{16} << 20U) + 1, 'x')),
                 std::runtime_error);
    EXPECT_EQ(readWholeFile(file), "old");
    EXPECT_THROW(replaceFile(folder / "gone" / "state", "new"), std::runtime_error);
}

TEST(SubscriptionFile, IsNotWrittenWhenItWouldBeTooLargeToRead) {
    const TemporaryFolder folder;
    const auto file = folder / "state";
    replaceFile(file, std::string(std::size_t{16} << 20U, 'x'));
    EXPECT_TRUE(readWholeFile(file));
    EXPECT_THROW(replaceFile(file, std::string((std::size_t{16} << 20U) + 1, 'x')),
                 std::runtime_error);
    EXPECT_TRUE(readWholeFile(file));
}

TEST(SubscriptionFile, LeavesNothingBesideWhatItCannotReplace) {
    const TemporaryFolder folder;
    folder.write("state/is a folder", "");
    EXPECT_THROW(replaceFile(folder / "state", "new"), std::runtime_error);
    const std::filesystem::directory_iterator all(folder.path());
    EXPECT_EQ(std::distance(begin(all), end(all)), 1);
}

TEST(SubscriptionFile, IsWrittenThroughNoLinkThatSomebodyPutThere) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink(folder / "elsewhere", folder / "state.new");
    std::filesystem::create_symlink(folder / "elsewhere", folder / "state");
    replaceFile(folder / "state", "new");
    EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
    EXPECT_EQ(readWholeFile(folder / "state"), "new");
    EXPECT_EQ(modeOf(folder / "state"), 0600U);
}

TEST(SubscriptionFile, ThatCannotBeReadIsNamed) {
    const TemporaryFolder folder;
    try {
        readWholeFile(folder.path());
        FAIL() << "a folder was read";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find(folder.path().string()), std::string::npos);
    }
}

}  // namespace
}  // namespace cimhost
