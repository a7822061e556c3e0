#include "platform/host/ComputerSystemMRA.h"

#include "tests/platform/host/FakeHost.h"

#include <gmock/gmock.h>

namespace {

class ComputerSystem : public FakeHost {
protected:
    void expectAllAbsent() const {
        for (const Getter getter : {&ComputerSystemMRADataObject::getSystemManufacturer,
                                    &ComputerSystemMRADataObject::getSystemProductName,
                                    &ComputerSystemMRADataObject::getSystemProductID,
                                    &ComputerSystemMRADataObject::getSystemSerialNumber,
                                    &ComputerSystemMRADataObject::getSystemUUID,
                                    &ComputerSystemMRADataObject::getSystemVirtualSerialNumber,
                                    &ComputerSystemMRADataObject::getSystemVirtualUUID,
                                    &ComputerSystemMRADataObject::getSolutionName,
                                    &ComputerSystemMRADataObject::getBiosVendor,
                                    &ComputerSystemMRADataObject::getBiosVersion,
                                    &ComputerSystemMRADataObject::getBiosReleaseDate,
                                    &ComputerSystemMRADataObject::getHostOSName,
                                    &ComputerSystemMRADataObject::getHostOSVersion}) {
            EXPECT_EQ(get(getter), "(absent)");
        }
        operatingSystemEnum type = OSvm;
        EXPECT_EQ(_data.getOSType(type), MRA_STATUS_DATA_NOT_AVAILABLE);
        EXPECT_EQ(type, OSvm);
    }

    void giveTheKernelsFacts() const {
        write("/sys/class/dmi/id/sys_vendor", "Kernel Maker\n");
        write("/sys/class/dmi/id/product_name", "  Kernel Product \n");
        write("/sys/class/dmi/id/product_sku", "Kernel Sku\n");
        write("/sys/class/dmi/id/product_serial", "Kernel Serial\nsecond line\n");
        write("/sys/class/dmi/id/product_uuid", "00112233-4455-6677-8899-aabbccddeeff\n");
        write("/sys/class/dmi/id/bios_vendor", "Kernel Bios");
        write("/sys/class/dmi/id/bios_version", "9.9\r\n");
        write("/sys/class/dmi/id/bios_date", "12/31/2023\n");
    }
};

TEST_F(ComputerSystem, HasNoDataBeforeItIsFilled) { expectAllAbsent(); }

TEST_F(ComputerSystem, TakesItsDataFromTheFirmware) {
    firmwareIs("wavek");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemManufacturer), "kt");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductName), "Server WaveK 400");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductID), "P12345-B21");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemSerialNumber), "KTQ0012345");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemUUID),
              "4c4c4544-0035-5a10-8052-b4c04f4d3232");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getBiosVendor), "KT");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getBiosVersion), "K42 v1.20");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getBiosReleaseDate), "03/14/2024");
    EXPECT_THAT(_sink->messages(), testing::IsEmpty());
}

TEST_F(ComputerSystem, TellsTheIdentityThatAProfileLendsBesideTheServersOwn) {
    firmwareIs("blade");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemVirtualSerialNumber), "VKT000042");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemVirtualUUID),
              "0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSolutionName), "Private Cloud 20");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemSerialNumber), "KTQ0012345");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemUUID),
              "4c4c4544-0035-5a10-8052-b4c04f4d3232");
}

TEST_F(ComputerSystem, HasNoOtherIdentityWithoutAProfile) {
    firmwareIs("sl-blade");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    for (const Getter getter : {&ComputerSystemMRADataObject::getSystemVirtualSerialNumber,
                                &ComputerSystemMRADataObject::getSystemVirtualUUID,
                                &ComputerSystemMRADataObject::getSolutionName}) {
        EXPECT_EQ(get(getter), "(absent)");
    }
}

TEST_F(ComputerSystem, FallsBackOnTheKernelsFactsWhenTheTableCannotBeRead) {
    giveTheKernelsFacts();
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemManufacturer), "Kernel Maker");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductName), "Kernel Product");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductID), "Kernel Sku");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemSerialNumber), "Kernel Serial");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemUUID),
              "00112233-4455-6677-8899-aabbccddeeff");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getBiosVendor), "Kernel Bios");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getBiosVersion), "9.9");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getBiosReleaseDate), "12/31/2023");
    EXPECT_EQ(_sink->messages(LogLevel::error).size(), 1U) << "of the scan";
}

TEST_F(ComputerSystem, AsksTheKernelOnlyForWhatTheTableLacks) {
    firmwareIs("entry21");
    giveTheKernelsFacts();
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemManufacturer), "KT");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductID), "Kernel Sku");
}

TEST_F(ComputerSystem, TellsTheOperatingSystem) {
    write("/proc/sys/kernel/ostype", "Linux\n");
    write("/etc/os-release", "NAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    operatingSystemEnum type = OSunkown;
    EXPECT_EQ(_data.getOSType(type), MRA_STATUS_SUCCESS);
    EXPECT_EQ(type, OSlinux);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getHostOSName), "Debian GNU/Linux");
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getHostOSVersion), "12");
}

TEST_F(ComputerSystem, ReadsTheVendorsOsReleaseWhereTheHostHasNoneOfItsOwn) {
    write("/usr/lib/os-release", "VERSION_ID=vendor\n");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getHostOSVersion), "vendor");
    write("/etc/os-release", "VERSION_ID=host\n");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getHostOSVersion), "host");
}

TEST_F(ComputerSystem, InventsNothing) {
    write("/proc/sys/kernel/ostype", "Linux\n");
    write("/sys/class/dmi/id/product_serial", "   \n");
    write("/sys/class/dmi/id/product_uuid", "");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    for (const Getter getter : {&ComputerSystemMRADataObject::getSystemSerialNumber,
                                &ComputerSystemMRADataObject::getSystemUUID,
                                &ComputerSystemMRADataObject::getHostOSVersion,
                                &ComputerSystemMRADataObject::getSystemManufacturer}) {
        EXPECT_EQ(get(getter), "(absent)");
    }
}

TEST_F(ComputerSystem, TakesAnotherKernelsTypeForNothingThatItKnows) {
    write("/proc/sys/kernel/ostype", "Other\n");
    write("/etc/os-release", "NAME=Other\n");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    operatingSystemEnum type = OSvm;
    EXPECT_EQ(_data.getOSType(type), MRA_STATUS_DATA_NOT_AVAILABLE);
}

TEST_F(ComputerSystem, FailsWhenNothingIsKnownAtAll) {
    EXPECT_EQ(fill(), MRA_STATUS_FAILED);
    EXPECT_EQ(_sink->messages(LogLevel::error).back(),
              "Neither the firmware nor the host tells anything of the computer system");
    expectAllAbsent();
}

TEST_F(ComputerSystem, RefusesEveryOtherSelectorAndLeavesTheDataAlone) {
    firmwareIs("wavej");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    firmwareIs("wavek");
    for (const unsigned selector : {0U, 2U, 3U, ~0U}) {
        _sink->clear();
        EXPECT_EQ(fill(selector), MRA_STATUS_FAILED);
        EXPECT_THAT(_sink->messages(LogLevel::error),
                    testing::ElementsAre("No computer-system data has the selector " +
                                         std::to_string(selector)));
        EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductName), "Server Wave 300 J");
    }
}

TEST_F(ComputerSystem, ReplacesAllDataWithEachFill) {
    giveTheKernelsFacts();
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    std::filesystem::remove_all(_root / "sys");
    firmwareIs("entry21");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemProductID), "(absent)");
}

TEST_F(ComputerSystem, ReadsEndlessFilesNoFurtherThanItsLimit) {
    write("/sys/class/dmi/id/product_serial", std::string(1'000'000, 'x'));
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemSerialNumber), std::string(65536, 'x'));
}

TEST_F(ComputerSystem, TakesADirectoryForNoFile) {
    std::filesystem::create_directories(_root / "etc/os-release");
    write("/usr/lib/os-release", "VERSION_ID=vendor\n");
    ASSERT_EQ(fill(), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getHostOSVersion), "vendor");
}

TEST_F(ComputerSystem, FactoryMakesASourceOfThisHost) {
    firmwareIs("wavek");
    const std::unique_ptr<ComputerSystemMRA> source(computerSystemMRAFactory(_log));
    ASSERT_NE(source, nullptr);
    ASSERT_EQ(source->getFirstData(1, _data), MRA_STATUS_SUCCESS);
    EXPECT_EQ(get(&ComputerSystemMRADataObject::getSystemUUID),
              "4c4c4544-0035-5a10-8052-b4c04f4d3232");
}

}  // namespace
