// Our reading of the dumps against that of dmidecode.

#include "tests/platform/smbios/SmbiosImage.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>

namespace {

constexpr std::string_view dmidecode = PYL_DMIDECODE;

std::string outputOf(const std::string& command) {
    struct Close {
        void operator()(std::FILE* stream) const { ::pclose(stream); }
    };
    const std::unique_ptr<std::FILE, Close> stream(::popen(command.c_str(), "r"));
    std::string all;
    std::array<char, 4096> buffer;
    while (stream && std::fgets(buffer.data(), buffer.size(), stream.get())) all += buffer.data();
    return all;
}

std::string outputOf(const std::string& option, const std::string& machine) {
    return outputOf(std::string(dmidecode) + " " + option + " --from-dump " + dumpPath(machine));
}

/// "Handle 0x0001, DMI type 1, 27 bytes" of each structure.
std::vector<std::string> dmidecodeHeaders(const std::string& machine) {
    std::vector<std::string> headers;
    const std::string text = outputOf("", machine);
    for (std::size_t at = 0; (at = text.find("Handle 0x", at)) != std::string::npos;) {
        const std::size_t end = text.find('\n', at);
        headers.push_back(text.substr(at, end - at));
        at = end;
    }
    return headers;
}

std::vector<std::string> ownHeaders(const SmbiosTable& table) {
    std::vector<std::string> headers;
    for (const SmbiosRecord& record : table.records()) {
        std::array<char, 80> line;
        std::snprintf(line.data(), line.size(), "Handle 0x%04X, DMI type %d, %d bytes",
                      record.handle(), record.type(), record.length());
        headers.emplace_back(line.data());
    }
    return headers;
}

/// What `dmidecode --string` prints for one keyword.
std::string dmidecodeString(const std::string& keyword, const std::string& machine) {
    std::string text = outputOf("--string " + keyword, machine);
    if (text.ends_with('\n')) text.pop_back();
    return text == "Not Specified" ? "" : text;
}

class Dmidecode : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (dmidecode.empty()) {
            GTEST_SKIP() << "dmidecode is not installed";
        }
    }
};

TEST_P(Dmidecode, SeesTheSameStructures) {
    const ScannedDump scanned(readDump(GetParam()));
    ASSERT_EQ(scanned.result(), 0);
    ASSERT_FALSE(dmidecodeHeaders(GetParam()).empty());
    EXPECT_EQ(ownHeaders(*scanned->table()), dmidecodeHeaders(GetParam()));
}

TEST_P(Dmidecode, SeesTheSameTexts) {
    const ScannedDump scanned(readDump(GetParam()));
    ASSERT_EQ(scanned.result(), 0);
    std::map<std::string, std::string> texts;
    if (const auto* const bios = scanned->getDmiBios()) {
        texts["bios-vendor"] = bios->vendor;
        texts["bios-version"] = bios->version;
        texts["bios-release-date"] = bios->releaseDate;
    }
    if (const auto* const system = scanned->getDmiSystem()) {
        texts["system-manufacturer"] = system->manufacturer;
        texts["system-product-name"] = system->productName;
        texts["system-version"] = system->version;
        texts["system-serial-number"] = system->serialNumber;
        texts["system-uuid"] = system->uuid;
        texts["system-sku-number"] = system->skuNumber;
        texts["system-family"] = system->family;
    }
    if (const auto* const baseboard = scanned->getDmiBaseboard()) {
        texts["baseboard-manufacturer"] = baseboard->manufacturer;
        texts["baseboard-product-name"] = baseboard->product;
        texts["baseboard-version"] = baseboard->version;
        texts["baseboard-serial-number"] = baseboard->serialNumber;
        texts["baseboard-asset-tag"] = baseboard->assetTag;
    }
    if (const auto* const chassis = scanned->getDmiChassis()) {
        texts["chassis-manufacturer"] = chassis->manufacturer;
        texts["chassis-version"] = chassis->version;
        texts["chassis-serial-number"] = chassis->serialNumber;
        texts["chassis-asset-tag"] = chassis->assetTag;
    }
    EXPECT_EQ(texts.empty(), std::string_view(GetParam()) == "empty");
    for (const auto& [keyword, text] : texts) {
        EXPECT_EQ(text, dmidecodeString(keyword, GetParam())) << keyword;
    }
}

INSTANTIATE_TEST_SUITE_P(Machines, Dmidecode,
                         testing::Values("wavej", "wavej-marker", "wavek", "wavek-marker",
                                         "foreign", "empty", "entry21", "entry30"),
                         [](const auto& machine) {
                             std::string name = machine.param;
                             for (char& letter : name) letter = letter == '-' ? '_' : letter;
                             return name;
                         });

}  // namespace
