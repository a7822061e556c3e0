// Object paths as text: what is read and written is read as the same path again.
#include "cimhost/objects/Description.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ModelPathText.h"
#include "fuzz/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using cimhost::CimCode;
using cimhost::CimError;
using cimhost::describe;
using cimhost::modelPathHash;
using cimhost::ObjectPath;
using cimhost::parseModelPath;
using cimhost::sameModelPath;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ObjectPath path;
    try {
        path = parseModelPath({reinterpret_cast<const char*>(data), size});
    } catch (const CimError& error) {
        require(error.code() == CimCode::typeMismatch, "a refusal names the type");
        return 0;
    }
    const std::string text = describe(path);
    const ObjectPath again = parseModelPath(text);
    require(again.host == path.host, "the host is the same");
    require(again.nameSpace == path.nameSpace, "the namespace is the same");
    require(sameModelPath(path, again), "class and keys are the same");
    require(modelPathHash(path) == modelPathHash(again), "equal paths have equal hashes");
    require(describe(again) == text, "the text is the same");
    return 0;
}
