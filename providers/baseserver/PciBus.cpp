#include "providers/baseserver/PciBus.h"

#include "platform/host/HostFiles.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <limits>
#include <map>
#include <string_view>
#include <system_error>

namespace baseserver {

namespace fs = std::filesystem;

namespace {

constexpr const char* devicesDirectory = "/sys/bus/pci/devices";
constexpr const char* slotsDirectory = "/sys/bus/pci/slots";

struct HexField {
    std::size_t minimumDigits;
    std::size_t maximumDigits;
    int maximum;
    std::string_view separator;  ///< what follows; the last field ends the text
};

// "%04x:%02x:%02x.%d" of the kernel; domains beyond 16 bits stand behind some host bridges.
constexpr HexField domainField{4, 8, std::numeric_limits<int>::max(), ":"};
constexpr HexField busField{2, 2, 0xFF, ":"};
constexpr HexField deviceField{2, 2, 0x1F, "."};
constexpr HexField functionField{1, 1, 7, ""};

/// The number at the front of the text, which is cut off with the separator behind it.
std::optional<int> takeField(std::string_view& text, const HexField& field) {
    const auto digits = std::min(text.find_first_not_of("0123456789abcdef"), text.size());
    if (digits < field.minimumDigits || digits > field.maximumDigits) return std::nullopt;
    int value = 0;
    const auto error = std::from_chars(text.data(), text.data() + digits, value, 16).ec;
    if (error != std::errc() || value > field.maximum) return std::nullopt;
    text.remove_prefix(digits);
    if (!text.starts_with(field.separator)) return std::nullopt;
    text.remove_prefix(field.separator.size());
    return value;
}

/// A kernel attribute such as "0x8086"; nullopt when it is missing, malformed or out of range.
template <typename Number>
std::optional<Number> hexAttribute(const HostFiles& files, const std::string& path) {
    const auto line = files.line(path);
    if (!line) return std::nullopt;
    std::string_view digits = *line;
    if (digits.starts_with("0x")) digits.remove_prefix(2);
    std::uint64_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    if (value > std::numeric_limits<Number>::max()) return std::nullopt;
    return static_cast<Number>(value);
}

/// The names in a directory, in order: the file system's own order is any.
std::vector<std::string> entriesOf(const std::string& directory) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

std::optional<std::string> driverOf(const std::string& deviceDirectory) {
    std::error_code error;
    const auto target = fs::read_symlink(deviceDirectory + "/driver", error);
    if (error) return std::nullopt;
    return target.filename().string();
}

/// The number behind "TOTAL_ERR_..." in one of the kernel's tables of errors.
std::optional<std::uint64_t> totalOf(const std::optional<std::string>& table,
                                     std::string_view name) {
    const auto at = table ? table->find(name) : std::string::npos;
    if (at == std::string::npos) return std::nullopt;
    const auto digits = table->find_first_not_of(' ', at + name.size());
    if (digits == std::string::npos) return std::nullopt;
    std::uint64_t total = 0;
    const auto* const from = table->data() + digits;
    if (std::from_chars(from, table->data() + table->size(), total).ec != std::errc()) {
        return std::nullopt;
    }
    return total;
}

std::optional<PciErrors> errorsOf(const HostFiles& files, const std::string& directory) {
    const auto fatal = totalOf(files.text(directory + "/aer_dev_fatal"), "TOTAL_ERR_FATAL");
    const auto nonFatal =
        totalOf(files.text(directory + "/aer_dev_nonfatal"), "TOTAL_ERR_NONFATAL");
    if (!fatal || !nonFatal) return std::nullopt;
    return PciErrors{*fatal, *nonFatal};
}

/// Slot names by the "domain:bus:device" that the kernel gives as a slot's address.
std::map<std::string, std::string> readSlots(const std::string& root, const HostFiles& files) {
    std::map<std::string, std::string> slots;
    for (const auto& name : entriesOf(root + slotsDirectory)) {
        if (const auto address =
                files.line(std::string(slotsDirectory) + "/" + name + "/address")) {
            slots.emplace(*address, name);
        }
    }
    return slots;
}

}  // namespace

std::optional<PciAddress> parsePciAddress(const std::string& text) {
    std::string_view rest = text;
    const auto domain = takeField(rest, domainField);
    if (!domain) return std::nullopt;
    const auto bus = takeField(rest, busField);
    if (!bus) return std::nullopt;
    const auto device = takeField(rest, deviceField);
    if (!device) return std::nullopt;
    const auto function = takeField(rest, functionField);
    if (!function || !rest.empty()) return std::nullopt;
    return PciAddress{*domain, *bus, *device, *function};
}

std::vector<PciFunction> readPciFunctions(const std::string& root) {
    const HostFiles files(root);
    const auto slots = readSlots(root, files);
    std::vector<PciFunction> functions;
    for (const auto& name : entriesOf(root + devicesDirectory)) {
        const auto address = parsePciAddress(name);
        if (!address) continue;
        const auto directory = std::string(devicesDirectory) + "/" + name;
        PciFunction function;
        function.address = *address;
        function.classCode = hexAttribute<std::uint32_t>(files, directory + "/class");
        function.vendorId = hexAttribute<std::uint16_t>(files, directory + "/vendor");
        function.deviceId = hexAttribute<std::uint16_t>(files, directory + "/device");
        function.subsystemVendorId =
            hexAttribute<std::uint16_t>(files, directory + "/subsystem_vendor");
        function.subsystemId = hexAttribute<std::uint16_t>(files, directory + "/subsystem_device");
        function.revision = hexAttribute<std::uint8_t>(files, directory + "/revision");
        function.driver = driverOf(root + directory);
        function.errors = errorsOf(files, directory);
        if (const auto slot = slots.find(name.substr(0, name.rfind('.'))); slot != slots.end()) {
            function.slot = slot->second;
        }
        functions.push_back(std::move(function));
    }
    std::ranges::sort(functions, [](const auto& left, const auto& right) {
        return left.address < right.address;
    });
    return functions;
}

}  // namespace baseserver
