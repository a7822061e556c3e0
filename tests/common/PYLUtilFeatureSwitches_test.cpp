// The switches of PYLUtil that are files.

#include "common/PYLUtil.h"
#include "tests/common/FileCalls.h"
#include "tests/support/RedirectedFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using PYL::PYLUtil;

struct Switch {
    const char* marker;
    bool (*isOn)() noexcept;
    bool isTrigger;  ///< its marker goes when it is looked at
};

void PrintTo(const Switch& row, std::ostream* out) { *out << row.marker; }

/// A file that root owns whoever runs the test.
constexpr const char* rootsFile = "/etc/passwd";

/// Makes a marker that root does not own; a plain user's own file is one.
void makeForeign(const std::string& path) {
    std::ofstream(path) << "x";
    constexpr uid_t somebody = 65534;
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(path.c_str(), somebody, somebody), 0);
    }
}

struct FeatureSwitch : testing::TestWithParam<Switch> {
    RedirectedFiles files;
    const std::string marker = RedirectedFiles::real(GetParam().marker);

    bool there() const { return fs::symlink_status(marker).type() != fs::file_type::not_found; }
    bool isOn() const { return GetParam().isOn(); }
};

TEST_P(FeatureSwitch, IsOffWithoutItsMarker) {
    EXPECT_FALSE(isOn());
    EXPECT_FALSE(there());
}

TEST_P(FeatureSwitch, IsOnByAMarkerOfRootAndATriggerOnlyOnce) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs root";
    }
    std::ofstream(marker).close();
    ASSERT_EQ(::chmod(marker.c_str(), 0), 0);
    EXPECT_TRUE(isOn());
    EXPECT_EQ(there(), !GetParam().isTrigger);
    EXPECT_EQ(isOn(), !GetParam().isTrigger);
}

TEST_P(FeatureSwitch, IsOffByAMarkerOfSomebodyElseWhichATriggerRemoves) {
    makeForeign(marker);
    EXPECT_FALSE(isOn());
    EXPECT_EQ(there(), !GetParam().isTrigger);
}

TEST_P(FeatureSwitch, FollowsALinkAndNeverRemovesItsTarget) {
    fs::create_symlink(rootsFile, marker);
    EXPECT_TRUE(isOn());
    EXPECT_EQ(there(), !GetParam().isTrigger);
    EXPECT_TRUE(fs::exists(rootsFile));

    fs::remove(marker);
    const auto target = marker + ".target";
    makeForeign(target);
    fs::create_symlink(target, marker);
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(fs::exists(target));
}

TEST_P(FeatureSwitch, IsOffByALinkToNowhereWhichATriggerRemoves) {
    fs::create_symlink(marker + ".nowhere", marker);
    EXPECT_FALSE(isOn());
    EXPECT_EQ(there(), !GetParam().isTrigger);
}

TEST_P(FeatureSwitch, IsOnByADirectoryOfRootWhichStays) {
    fs::create_directory(marker);
    EXPECT_EQ(isOn(), ::geteuid() == 0);
    EXPECT_TRUE(there());
}

TEST_P(FeatureSwitch, LosesNoMarkerThatComesInTheMiddleOfALook) {
    constexpr int calls = 6;  // more than one look makes
    for (int arrival = 1; arrival <= calls; ++arrival) {
        int call = 0;
        const HookedFileCalls hook([&](const FileCall&) {
            if (++call == arrival) fs::create_symlink(rootsFile, marker);
            return made;
        });
        bool isSeen = false;
        while (call < calls) isSeen = isOn() || isSeen;
        EXPECT_TRUE(isSeen) << "came before call " << arrival;
        fs::remove(marker);
    }
}

TEST_P(FeatureSwitch, LooksAtNoOtherMarker) {
    for (const auto* other : {"/tmp/PYL.heartbeats", "/tmp/PYL.test", "/tmp/PYL.EVConf",
                              "/tmp/PYLPerfmon", "/tmp/PYL.Perfmon"}) {
        if (std::string(other) != GetParam().marker) {
            fs::create_symlink(rootsFile, RedirectedFiles::real(other));
        }
    }
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(fs::is_symlink(RedirectedFiles::real("/tmp/PYL.Perfmon")));
}

INSTANTIATE_TEST_SUITE_P(
    Each, FeatureSwitch,
    testing::Values(Switch{"/tmp/PYL.heartbeats", PYLUtil::HeartBeatIndicationsEnabled, false},
                    Switch{"/tmp/PYL.test", PYLUtil::TestIndicationsEnabled, true},
                    Switch{"/tmp/PYL.EVConf", PYLUtil::TimeIntervalConfigured, true},
                    Switch{"/tmp/PYLPerfmon", PYLUtil::PerfmonEnabled, false}));

TEST(FileExistsAsRootPerms, AsksForTheOwnerAlone) {
    EXPECT_TRUE(PYLUtil::FileExistsAsRootPerms(rootsFile));
    EXPECT_TRUE(PYLUtil::FileExistsAsRootPerms("/dev/null"));
    EXPECT_TRUE(PYLUtil::FileExistsAsRootPerms("/"));
}

TEST(FileExistsAsRootPerms, IsFalseForWhatIsNoFile) {
    EXPECT_FALSE(PYLUtil::FileExistsAsRootPerms(nullptr));
    EXPECT_FALSE(PYLUtil::FileExistsAsRootPerms(""));
    EXPECT_FALSE(PYLUtil::FileExistsAsRootPerms("/no/such/file"));
    EXPECT_FALSE(
        PYLUtil::FileExistsAsRootPerms((std::string("/") + std::string(1 << 20, 'x')).c_str()));
}

}  // namespace
