// Prints what the SMBIOS reader of the support library sees. The text is for people, and stable
// enough for scripts: one "name: value" a line, in the order of the table.

#include "platform/logger/LogText.h"
#include "platform/logger/Logger.h"
#include "platform/logger/StandardErrorSink.h"
#include "platform/smbios/SmBios.h"

#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr const char* usage =
    "usage: smbios-dump [FILE]\n"
    "       smbios-dump --help\n"
    "\n"
    "Prints the SMBIOS structures of this machine, which takes root, or of a file that\n"
    "dmidecode --dump-bin wrote. Exit status: 0, or 1 when the data cannot be read.\n";

void print(const char* name, std::string_view value) {
    if (value.empty()) return;
    // Firmware text could move the cursor or recolour the terminal.
    std::printf("    %s: %s\n", name, escapeLogText(value).c_str());
}

void printFact(const char* name, std::string_view value) {
    if (!value.empty()) std::printf("%s: %s\n", name, escapeLogText(value).c_str());
}

void print(const char* name, unsigned value) { std::printf("    %s: 0x%02X\n", name, value); }

void printBios(const DmiBios& bios) {
    print("Vendor", bios.vendor);
    print("Version", bios.version);
    print("Release Date", bios.releaseDate);
    std::printf("    Characteristics: 0x%016llX\n",
                static_cast<unsigned long long>(bios.characteristics));
    std::printf("    BIOS Marker: 0x%04X\n", unsigned{bios.biosMarker});
    print("Newer Generation", bios.newerGeneration);
}

void printSystem(const DmiSystem& system) {
    print("Manufacturer", system.manufacturer);
    print("Product Name", system.productName);
    print("Version", system.version);
    print("Serial Number", system.serialNumber);
    print("UUID", system.uuid);
    print("Wake-up Type", system.wakeUpType);
    print("SKU Number", system.skuNumber);
    print("Family", system.family);
}

void printBaseboard(const DmiBaseboard& baseboard) {
    print("Manufacturer", baseboard.manufacturer);
    print("Product Name", baseboard.product);
    print("Version", baseboard.version);
    print("Serial Number", baseboard.serialNumber);
    print("Asset Tag", baseboard.assetTag);
}

void printChassis(const DmiChassis& chassis) {
    print("Manufacturer", chassis.manufacturer);
    print("Type", chassis.type);
    print("Version", chassis.version);
    print("Serial Number", chassis.serialNumber);
    print("Asset Tag", chassis.assetTag);
}

void printEnclosure(const KTQEnclosure& enclosure) {
    std::printf("Blade: %s\n", enclosure.isBlade ? "yes" : "no");
    std::printf("SL Server: %s\n", enclosure.isSLServer ? "yes" : "no");
    printFact("Enclosure Name", enclosure.enclosureName);
    printFact("Rack Name", enclosure.rackName);
    printFact("Rack UUID", enclosure.rackUuid);
}

void printProfile(const KTQServerProfile& profile) {
    printFact("Virtual Serial Number", profile.virtualSerialNumber);
    printFact("Virtual UUID", profile.virtualUuid);
    printFact("Solution Name", profile.solutionName);
}

void printStrings(const SmbiosRecord& record) {
    int number = 0;
    for (const std::string_view text : record.strings()) {
        std::printf("    String %d: %s\n", ++number, escapeLogText(text).c_str());
    }
}

/// The decoded record at the first structure of its type, which is the one that it came from.
void printDecoded(const SmBios& smbios, const SmbiosRecord& record) {
    if (&record != smbios.table()->findType(record.type())) return;
    if (record.type() == 0) printBios(*smbios.getDmiBios());
    if (record.type() == 1) printSystem(*smbios.getDmiSystem());
    if (record.type() == 2) printBaseboard(*smbios.getDmiBaseboard());
    if (record.type() == 3) printChassis(*smbios.getDmiChassis());
}

void printTable(const SmBios& smbios) {
    const unsigned version = smbios.table()->entryPoint().version;
    std::printf("SMBIOS %u.%u, %zu structures\n", version >> 8, version & 0xff,
                smbios.table()->records().size());
    if (const auto* const id = smbios.getKTQServerSystemId()) {
        std::printf("Server System Identifier: %s\n", escapeLogText(id->identifier).c_str());
    }
    if (const auto* const enclosure = smbios.getKTQEnclosure()) printEnclosure(*enclosure);
    if (const auto* const profile = smbios.getKTQServerProfile()) printProfile(*profile);
    for (const SmbiosRecord& record : smbios.table()->records()) {
        std::printf("\nHandle 0x%04X, type %u, %u bytes\n", unsigned{record.handle()},
                    unsigned{record.type()}, unsigned{record.length()});
        printDecoded(smbios, record);
        printStrings(record);
    }
}

/// The source that the command line names; nullptr when the command line is wrong.
std::shared_ptr<const SmbiosSource> chosenSource(int argumentCount, char** arguments) {
    if (argumentCount == 1) return std::make_shared<SmbiosKernelTables>();
    const std::string_view argument = arguments[1];
    if (argumentCount > 2 || argument.empty() || argument.starts_with('-')) return nullptr;
    return std::make_shared<SmbiosDumpFile>(std::string(argument));
}

int run(int argumentCount, char** arguments) {
    if (argumentCount == 2 && arguments[1] == std::string_view("--help")) {
        std::fputs(usage, stdout);
        return 0;
    }
    const auto source = chosenSource(argumentCount, arguments);
    if (!source) {
        std::fputs(usage, stderr);
        return 1;
    }
    SmBios smbios(Logger("smbios-dump", std::make_shared<StandardErrorSink>()), source);
    if (smbios.scan() != 0) return 1;
    printTable(smbios);
    // A full disk or a closed pipe shows here at the latest.
    return std::fflush(stdout) == 0 && !std::ferror(stdout) ? 0 : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) try {
    return run(argumentCount, arguments);
} catch (const std::exception& error) {
    std::fprintf(stderr, "smbios-dump: %s\n", error.what());
    return 1;
}
