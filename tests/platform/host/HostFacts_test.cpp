#include "platform/host/HostFacts.h"

#include "tests/platform/host/FakeHost.h"
#include "tests/platform/smbios/SmbiosImage.h"

namespace {

class HostFactsTest : public FakeHost {
protected:
    HostFacts read() {
        SmBios firmware(_log);
        static_cast<void>(firmware.scan());
        return readHostFacts(firmware, HostFiles(_root.string()));
    }
};

TEST_F(HostFactsTest, TellFromOneScanOfTheTablesWhatTheyHold) {
    firmwareIs("blade");
    const HostFacts facts = read();
    EXPECT_EQ(facts.productName, "Server Blade 460");
    EXPECT_EQ(facts.serverSystemId, "KTQ-B-0005");
    EXPECT_EQ(facts.virtualSerialNumber, "VKT000042");
    EXPECT_EQ(facts.biosVersion, "K42 v1.20");
    EXPECT_EQ(facts.chassisManufacturer, "KT");
    EXPECT_EQ(facts.chassisSerialNumber, "KTQC000888");
    EXPECT_EQ(facts.chassisAssetTag, "Asset-2");
    EXPECT_EQ(facts.chassisType, 0x17);
    EXPECT_TRUE(facts.isBlade);
    EXPECT_EQ(facts.enclosureName, "enc-7");
    EXPECT_EQ(facts.osName, std::nullopt);
}

TEST_F(HostFactsTest, AreAllOpenWhereNothingTellsAnything) {
    EXPECT_EQ(read(), HostFacts());
    firmwareIs("empty");
    EXPECT_EQ(read(), HostFacts());
}

TEST_F(HostFactsTest, AreTheKernelsWhereTheTablesTellBlanks) {
    SmBios::setSource(std::make_shared<SmbiosMemory>(
        SmbiosImage(concatenated({structure(1, 1, {1, 2, 0, 3}, {"  ", "Product", " "}),
                                  structure(3, 3, {1, 0x17, 0, 1, 1}, {" "}), endOfTable()}))
            .dump()));
    write("/sys/class/dmi/id/sys_vendor", "Kernel Maker\n");
    write("/sys/class/dmi/id/product_name", "Kernel Product\n");
    write("/sys/class/dmi/id/product_serial", "  \n");
    const HostFacts facts = read();
    EXPECT_EQ(facts.manufacturer, "Kernel Maker");
    EXPECT_EQ(facts.productName, "Product");
    EXPECT_EQ(facts.serialNumber, std::nullopt);
    EXPECT_EQ(facts.chassisManufacturer, std::nullopt);
    EXPECT_EQ(facts.chassisSerialNumber, std::nullopt);
    EXPECT_EQ(facts.chassisAssetTag, std::nullopt);
}

/// How os-release(5) is read, seen through the host's version.
class OsRelease : public HostFactsTest {
protected:
    std::string versionIn(const std::string& text) {
        write("/etc/os-release", text);
        return read().osVersion.value_or("(absent)");
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
