#include "cmpicpp/CmpiStatus.h"

#include "cmpicpp/detail/Calls.h"

#include <algorithm>
#include <array>

namespace CmpiCpp {

namespace {

struct CodeRow {
    int code;
    const char* name;
};

// By number: the headers of CMPI 2.0 lack the enumerators 18, 27, 29 and 62.
constexpr auto codeRows = std::to_array<CodeRow>({
    {0, "CMPI_RC_OK"},
    {1, "CMPI_RC_ERR_FAILED"},
    {2, "CMPI_RC_ERR_ACCESS_DENIED"},
    {3, "CMPI_RC_ERR_INVALID_NAMESPACE"},
    {4, "CMPI_RC_ERR_INVALID_PARAMETER"},
    {5, "CMPI_RC_ERR_INVALID_CLASS"},
    {6, "CMPI_RC_ERR_NOT_FOUND"},
    {7, "CMPI_RC_ERR_NOT_SUPPORTED"},
    {8, "CMPI_RC_ERR_CLASS_HAS_CHILDREN"},
    {9, "CMPI_RC_ERR_CLASS_HAS_INSTANCES"},
    {10, "CMPI_RC_ERR_INVALID_SUPERCLASS"},
    {11, "CMPI_RC_ERR_ALREADY_EXISTS"},
    {12, "CMPI_RC_ERR_NO_SUCH_PROPERTY"},
    {13, "CMPI_RC_ERR_TYPE_MISMATCH"},
    {14, "CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED"},
    {15, "CMPI_RC_ERR_INVALID_QUERY"},
    {16, "CMPI_RC_ERR_METHOD_NOT_AVAILABLE"},
    {17, "CMPI_RC_ERR_METHOD_NOT_FOUND"},
    {18, "CMPI_RC_NO_MORE_ELEMENTS"},
    {27, "CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED"},
    {29, "CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED"},
    {50, "CMPI_RC_DO_NOT_UNLOAD"},
    {51, "CMPI_RC_NEVER_UNLOAD"},
    {60, "CMPI_RC_ERR_INVALID_HANDLE"},
    {61, "CMPI_RC_ERR_INVALID_DATA_TYPE"},
    {62, "CMPI_RC_ERR_NOT_IN_CODEPAGE"},
    {100, "CMPI_RC_ERROR_SYSTEM"},
    {200, "CMPI_RC_ERROR"},
});

}  // namespace

CmpiStatus::CmpiStatus(const CMPIStatus& status)
    : std::runtime_error(textOrEmpty(status.msg)), _rc(status.rc) {}

std::string CmpiStatus::str() const {
    const char* const name = rcName(_rc);
    std::string text = !name ? "CMPI_RC" : name;
    text.append(" (").append(std::to_string(static_cast<int>(_rc))).append(1, ')');
    if (*what() != '\0') text.append(": ").append(what());
    return text;
}

void throwStatus(CMPIStatus status) { throw CmpiStatus(status); }

const char* rcName(CMPIrc rc) noexcept {
    const auto* const row =
        std::ranges::find(codeRows, static_cast<int>(rc), [](const CodeRow& r) { return r.code; });
    return row == codeRows.end() ? nullptr : row->name;
}

}  // namespace CmpiCpp
