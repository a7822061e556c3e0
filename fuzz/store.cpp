// The text store: any bytes are read as the records, at the offsets, that fscanf finds in them.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/Require.h"
#include "tests/common/PlainStore.h"
#include "tests/common/RecordWalk.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    MemoryFile const file({reinterpret_cast<char const*>(data), size});
    auto const plain = readPlainRecords(file.stream());
    auto const ours = readRecords(file.descriptor());
    require(ours == plain, "the records are those that fscanf reads");
    return 0;
}
