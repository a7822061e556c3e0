// How os-release(5) is read, seen through the host's version.

#include "tests/platform/host/FakeHost.h"

namespace {

class OsRelease : public FakeHost {
protected:
    std::string versionIn(const std::string& text) {
        write("/proc/sys/kernel/ostype", "Linux\n");
        write("/etc/os-release", text);
        EXPECT_EQ(fill(), MRA_STATUS_SUCCESS);
        return get(&ComputerSystemMRADataObject::getHostOSVersion);
    }
};

TEST_F(OsRelease, ReadsBareAndQuotedValues) {
    EXPECT_EQ(versionIn("VERSION_ID=12\n"), "12");
    EXPECT_EQ(versionIn("VERSION_ID=\"12.4 x\"\n"), "12.4 x");
    EXPECT_EQ(versionIn("VERSION_ID='12.4 x'\n"), "12.4 x");
    EXPECT_EQ(versionIn("VERSION_ID=12"), "12") << "no line end";
    EXPECT_EQ(versionIn("VERSION_ID=12 \t\r\n"), "12");
}

TEST_F(OsRelease, ResolvesEscapesAsAShellDoes) {
    EXPECT_EQ(versionIn("VERSION_ID=\"a\\\"b\\\\c\\$d\"\n"), "a\"b\\c$d");
    EXPECT_EQ(versionIn("VERSION_ID='a\\b'\n"), "a\\b");
    EXPECT_EQ(versionIn("VERSION_ID=\"open\n"), "open");
    EXPECT_EQ(versionIn("VERSION_ID=\"end\\\n"), "end\\");
}

TEST_F(OsRelease, TakesTheLastOfSeveralSettings) {
    EXPECT_EQ(versionIn("VERSION_ID=1\nVERSION_ID=2\n"), "2");
    EXPECT_EQ(versionIn("VERSION_ID=1\nVERSION_ID=\n"), "(absent)");
}

TEST_F(OsRelease, PassesOverOtherLines) {
    EXPECT_EQ(versionIn("# VERSION_ID=1\nXVERSION_ID=2\nVERSION_IDX=3\n\n=4\nVERSION_ID\n"),
              "(absent)");
    EXPECT_EQ(versionIn("PRETTY_NAME=\"x\"\n\nVERSION_ID=5\nID=debian\n"), "5");
    EXPECT_EQ(versionIn(""), "(absent)");
    EXPECT_EQ(versionIn("VERSION_ID=\"\"\n"), "(absent)");
    EXPECT_EQ(versionIn("VERSION_ID='\n"), "(absent)");
}

TEST_F(OsRelease, TakesAValueOfBlanksForNone) {
    EXPECT_EQ(versionIn("VERSION_ID=\"  \"\n"), "(absent)");
    EXPECT_EQ(versionIn("VERSION_ID=' \t'\n"), "(absent)");
}

}  // namespace
