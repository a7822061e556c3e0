#include "providers/baseserver/PciClass.h"

#include <array>

namespace baseserver {

namespace {

struct BaseClass {
    std::uint8_t code;
    const char* name;
};

constexpr auto baseClasses = std::to_array<BaseClass>({
    {0x00, "Device without class"},
    {0x01, "Mass storage controller"},
    {0x02, "Network controller"},
    {0x03, "Display controller"},
    {0x04, "Multimedia device"},
    {0x05, "Memory controller"},
    {0x06, "Bridge device"},
    {0x07, "Simple communication controller"},
    {0x08, "Base system peripheral"},
    {0x09, "Input device"},
    {0x0A, "Docking station"},
    {0x0B, "Processor"},
    {0x0C, "Serial bus controller"},
    {0x0D, "Wireless controller"},
    {0x0E, "Intelligent I/O controller"},
    {0x0F, "Satellite communication controller"},
    {0x10, "Encryption controller"},
    {0x11, "Data acquisition and signal processing controller"},
    {0x12, "Processing accelerator"},
    {0x13, "Non-essential instrumentation"},
});

struct SubClass {
    std::uint16_t code;  // base class and sub-class
    const char* name;
};

constexpr auto subClasses = std::to_array<SubClass>({
    {0x0100, "SCSI storage controller"},
    {0x0101, "IDE controller"},
    {0x0104, "RAID controller"},
    {0x0106, "Serial ATA controller"},
    {0x0107, "Serial attached SCSI controller"},
    {0x0108, "Non-volatile memory controller"},

    {0x0200, "Ethernet controller"},
    {0x0207, "InfiniBand controller"},
    {0x0208, "Host fabric controller"},

    {0x0300, "VGA compatible controller"},
    {0x0302, "3D controller"},

    {0x0600, "Host bridge"},
    {0x0601, "ISA bridge"},
    {0x0604, "PCI-to-PCI bridge"},

    {0x0700, "Serial controller"},

    {0x0800, "Interrupt controller"},
    {0x0805, "SD host controller"},
    {0x0806, "IOMMU"},

    {0x0C03, "USB controller"},
    {0x0C04, "Fibre Channel controller"},
    {0x0C05, "SMBus controller"},
    {0x0C07, "IPMI interface"},
});

}  // namespace

const char* pciClassName(std::uint32_t classCode) noexcept {
    for (const auto& row : subClasses) {
        if (row.code == (classCode >> 8U)) return row.name;
    }
    for (const auto& row : baseClasses) {
        if (row.code == (classCode >> 16U)) return row.name;
    }
    return "Unknown device";
}

}  // namespace baseserver
