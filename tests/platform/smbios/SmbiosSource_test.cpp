#include "platform/smbios/SmbiosSource.h"

#include "tests/platform/smbios/SmbiosImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace {

using testing::HasSubstr;

class SmbiosSourceTest : public testing::Test {
protected:
    SmbiosSourceTest() {
        std::string pattern = (std::filesystem::temp_directory_path() / "smbios-XXXXXX").string();
        _directory = ::mkdtemp(pattern.data());
    }
    ~SmbiosSourceTest() override { std::filesystem::remove_all(_directory); }

    std::string write(const std::string& name, const Bytes& bytes) const {
        const std::string path = (_directory / name).string();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path;
    }

    static std::string errorOfFile(const std::string& path) {
        return ScannedDump(std::make_shared<SmbiosDumpFile>(path)).error();
    }

    std::filesystem::path _directory;
};

TEST_F(SmbiosSourceTest, GivesTheSameBytesFromAFileAndFromMemory) {
    const Bytes dump = readDump("wavek");
    const SmbiosDumpFile file(write("dump", dump));
    const SmbiosMemory memory(dump);
    EXPECT_EQ(file.entryPoint(), memory.entryPoint());
    EXPECT_EQ(file.entryPoint(), Bytes(dump.begin(), dump.begin() + 32));
    for (const std::uint64_t address : {0UL, 1UL, 32UL, dump.size() - 1, dump.size(),
                                        dump.size() + 1, UINT64_MAX >> 1, UINT64_MAX}) {
        for (const std::size_t length : {0UL, 1UL, 7UL, 100'000UL}) {
            EXPECT_EQ(file.table(address, length), memory.table(address, length))
                << address << " " << length;
        }
    }
}

TEST_F(SmbiosSourceTest, ReadsTablesLargerThanItsBuffer) {
    Bytes dump(300'000);
    for (std::size_t at = 0; at < dump.size(); ++at) {
        dump[at] = static_cast<std::uint8_t>(at * 7 >> 3);
    }
    const SmbiosDumpFile file(write("dump", dump));
    EXPECT_EQ(file.table(3, 200'001), Bytes(dump.begin() + 3, dump.begin() + 200'004));
    EXPECT_EQ(file.table(0, 1'000'000), dump);
}

TEST_F(SmbiosSourceTest, ReadsTheKernelsFilesAndIgnoresTheAddress) {
    const Bytes dump = readDump("entry21");
    write("smbios_entry_point", Bytes(dump.begin(), dump.begin() + 31));
    write("DMI", Bytes(dump.begin() + 32, dump.end()));
    const ScannedDump scanned(std::make_shared<SmbiosKernelTables>(_directory.string()));
    ASSERT_EQ(scanned.result(), 0) << scanned.error();
    EXPECT_EQ(scanned->getDmiSystem()->productName, "SERVER");
}

TEST_F(SmbiosSourceTest, SaysWhichKernelFileIsMissing) {
    const auto kernel = std::make_shared<SmbiosKernelTables>(_directory.string());
    EXPECT_EQ(ScannedDump(kernel).error(), "No SMBIOS data from " + _directory.string() +
                                               ": cannot open " + _directory.string() +
                                               "/smbios_entry_point: No such file or directory");
    write("smbios_entry_point", readDump("entry30"));
    EXPECT_THAT(ScannedDump(kernel).error(), HasSubstr("/DMI: No such file or directory"));
}

TEST_F(SmbiosSourceTest, SaysWhyAFileCannotBeRead) {
    EXPECT_THAT(errorOfFile((_directory / "none").string()),
                HasSubstr("No such file or directory"));
    EXPECT_THAT(errorOfFile(_directory.string()), HasSubstr("not a regular file"));
    EXPECT_THAT(errorOfFile("/dev/zero"), HasSubstr("not a regular file"));
    EXPECT_THAT(errorOfFile(write("dump", {}) + "/below"), HasSubstr("Not a directory"));
}

TEST_F(SmbiosSourceTest, DoesNotWaitForAPipe) {
    const std::string path = (_directory / "pipe").string();
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_THAT(errorOfFile(path), HasSubstr("not a regular file"));
}

TEST_F(SmbiosSourceTest, SaysThatAFileIsNotForThisUser) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root may read every file";
    }
    const std::string path = write("dump", readDump("wavej"));
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    EXPECT_THAT(errorOfFile(path), HasSubstr("Permission denied"));
}

}  // namespace
