// The text store: any bytes are read as the records, at the offsets, that fscanf finds in them.
#include "fuzz/Require.h"
#include "tests/common/PlainStore.h"
#include "tests/common/RecordWalk.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file({reinterpret_cast<const char*>(data), size});
    const auto plain = readPlainRecords(file.stream());
    const auto ours = readRecords(file.descriptor());
    require(ours == plain, "the records are those that fscanf reads");
    return 0;
}
