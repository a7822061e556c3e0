// Object paths as text: what is read and written is read as the same path again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cimhost/broker/Description.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ModelPathText.h"
#include "fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace cimhost;
    ObjectPath path;
    try {
        path = parseModelPath({reinterpret_cast<char const*>(data), size});
    } catch (CimError const& error) {
        require(error.code() == CimCode::typeMismatch, "a refusal names the type");
        return 0;
    }
    std::string const text = describe(path);
    ObjectPath const again = parseModelPath(text);
    require(again.host == path.host, "the host is the same");
    require(again.nameSpace == path.nameSpace, "the namespace is the same");
    require(sameModelPath(path, again), "class and keys are the same");
    require(modelPathHash(path) == modelPathHash(again), "equal paths have equal hashes");
    require(describe(again) == text, "the text is the same");
    return 0;
}
