// SMBIOS: a dump is refused with one line at error level, or every field of every record can be
// read.
#include "platform/smbios/SmBios.h"

#include "fuzz/Require.h"
#include "platform/logger/CapturingSink.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace {

void readEverything(const SmbiosTable& table) {
    std::size_t total = 0;
    for (const SmbiosRecord& record : table.records()) {
        for (std::size_t offset = 0; offset < 260; ++offset) {
            total += std::string(record.string(offset)).size();
            total += record.byte(offset).has_value() + record.word(offset).has_value();
            total += record.doubleWord(offset).has_value() + record.quadWord(offset).has_value();
        }
        for (const std::string_view text : record.strings()) total += std::string(text).size();
    }
    require(total > 0, "a table that was accepted has a record");
}

/// The input as a dump whose checksums are right, without which few inputs would come any further.
SmbiosSource::Bytes withChecksums(SmbiosSource::Bytes dump) {
    const auto fix = [&dump](std::size_t first, std::size_t size, std::size_t at) {
        if (dump.size() < first + size) return;
        int sum = 0;
        for (std::size_t index = first; index < first + size; ++index) sum += dump[index];
        dump[at] = static_cast<std::uint8_t>((dump[at] - sum) & 0xFF);
    };
    if (dump.size() < 5) return dump;
    if (dump[3] == '3') {
        fix(0, 0x18, 0x05);
    } else {
        fix(0x10, 0x0f, 0x15);
        fix(0, 0x1f, 0x04);
    }
    return dump;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto sink = std::make_shared<CapturingSink>();
    SmBios smbios(Logger("smbios", sink),
                  std::make_shared<SmbiosMemory>(withChecksums({data, data + size})));
    const bool isGood = smbios.scan() == 0;
    require((smbios.table() != nullptr) == isGood, "there is a table when the scan says so");
    require(sink->messages(LogLevel::error).size() == (isGood ? 0 : 1), "one line for a failure");
    if (isGood) readEverything(*smbios.table());
    return 0;
}
