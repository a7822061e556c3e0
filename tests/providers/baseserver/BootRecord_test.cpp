#include "providers/baseserver/BootRecord.h"

#include "tests/support/Journal.h"
#include "tests/support/RedirectedFiles.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <filesystem>

namespace {

using baseserver::BootRecord;
namespace fs = std::filesystem;

constexpr const char* first = "0d7a1f0e-1111-4222-8333-444455556666";
constexpr const char* second = "1e8b2f1f-1111-4222-8333-444455556666";

struct BootRecordTest : testing::Test {
    RedirectedFiles files;
    JournalLog log;
    cimtest::FakeHost machine;

    void boot(const std::string& identifier) const {
        machine.write("/proc/sys/kernel/random/boot_id", identifier + "\n");
    }
    bool isNew() { return BootRecord("boot", log.logger).isNew(); }
};

TEST_F(BootRecordTest, IsNewOnceForEachBoot) {
    boot(first);
    EXPECT_TRUE(isNew());
    EXPECT_FALSE(isNew());
    boot(second);
    EXPECT_TRUE(isNew());
    EXPECT_FALSE(isNew());
    EXPECT_EQ(log.journal->take(), Lines{});
}

TEST_F(BootRecordTest, IsNotNewWhereTheKernelDoesNotNameIt) {
    EXPECT_FALSE(isNew());
    EXPECT_EQ(
        log.journal->take(),
        Lines{"warning: the kernel does not name its boot in /proc/sys/kernel/random/boot_id"});
}

TEST_F(BootRecordTest, IsNotNewWhereItCannotBeRemembered) {
    boot(first);
    fs::create_directory(RedirectedFiles::real("/etc/cim/boot.txt"));
    EXPECT_FALSE(isNew());
    EXPECT_FALSE(isNew());
    const auto lines = log.journal->take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_TRUE(lines[0].starts_with(
        "warning: a boot of the operating system is not told: no store boot: "))
        << lines[0];
}

}  // namespace
