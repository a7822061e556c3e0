#include "providers/baseserver/PciNames.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>

namespace baseserver {

namespace {

// Where distributions have it: Debian, and others.
constexpr const char* lists[] = {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"};

struct Entry {
    std::uint16_t number;
    std::string_view name;
};

/// "8086  Intel Corporation"
std::optional<Entry> entryIn(std::string_view line) {
    constexpr std::size_t digits = 4;
    constexpr std::string_view gap = "  ";
    if (line.size() <= digits || !line.substr(digits).starts_with(gap)) return std::nullopt;
    std::uint16_t number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + digits, number, 16);
    if (error != std::errc() || end != line.data() + digits) return std::nullopt;
    line.remove_prefix(digits + gap.size());
    if (line.ends_with('\r')) line.remove_suffix(1);
    return Entry{number, line};
}

std::map<PciId, std::string> namesIn(std::istream& list, const std::set<PciId>& wanted) {
    std::map<PciId, std::string> names;
    std::optional<std::uint16_t> vendor;
    std::string vendorName;
    for (std::string line; names.size() < wanted.size() && std::getline(list, line);) {
        const std::string_view text = line;
        if (text.empty() || text.starts_with('#') || text.starts_with("\t\t")) continue;
        if (!text.starts_with('\t')) {
            // What is no vendor, such as the classes of devices, has lines like those of devices.
            const auto entry = entryIn(text);
            vendor = entry ? std::optional(entry->number) : std::nullopt;
            vendorName = entry ? entry->name : "";
            continue;
        }
        const auto device = vendor ? entryIn(text.substr(1)) : std::nullopt;
        if (!device || !wanted.contains({*vendor, device->number})) continue;
        names.emplace(PciId(*vendor, device->number), vendorName + " " + std::string(device->name));
    }
    return names;
}

}  // namespace

std::map<PciId, std::string> findPciNames(const std::set<PciId>& wanted, const std::string& root) {
    if (wanted.empty()) return {};
    for (const auto* const path : lists) {
        std::ifstream list(root + path);
        if (list) return namesIn(list, wanted);
    }
    return {};
}

}  // namespace baseserver
