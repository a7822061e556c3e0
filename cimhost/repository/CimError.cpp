#include "cimhost/repository/CimError.h"

#include <algorithm>
#include <array>

namespace cimhost {
namespace {

struct CodeRow {
    CimCode code;
    const char* name;
};

constexpr auto codeRows = std::to_array<CodeRow>({
    {CimCode::failed, "CIM_ERR_FAILED"},
    {CimCode::accessDenied, "CIM_ERR_ACCESS_DENIED"},
    {CimCode::invalidNamespace, "CIM_ERR_INVALID_NAMESPACE"},
    {CimCode::invalidParameter, "CIM_ERR_INVALID_PARAMETER"},
    {CimCode::invalidClass, "CIM_ERR_INVALID_CLASS"},
    {CimCode::notFound, "CIM_ERR_NOT_FOUND"},
    {CimCode::notSupported, "CIM_ERR_NOT_SUPPORTED"},
    {CimCode::classHasChildren, "CIM_ERR_CLASS_HAS_CHILDREN"},
    {CimCode::classHasInstances, "CIM_ERR_CLASS_HAS_INSTANCES"},
    {CimCode::invalidSuperclass, "CIM_ERR_INVALID_SUPERCLASS"},
    {CimCode::alreadyExists, "CIM_ERR_ALREADY_EXISTS"},
    {CimCode::noSuchProperty, "CIM_ERR_NO_SUCH_PROPERTY"},
    {CimCode::typeMismatch, "CIM_ERR_TYPE_MISMATCH"},
    {CimCode::queryLanguageNotSupported, "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED"},
    {CimCode::invalidQuery, "CIM_ERR_INVALID_QUERY"},
    {CimCode::methodNotAvailable, "CIM_ERR_METHOD_NOT_AVAILABLE"},
    {CimCode::methodNotFound, "CIM_ERR_METHOD_NOT_FOUND"},
    {CimCode::invalidEnumerationContext, "CIM_ERR_INVALID_ENUMERATION_CONTEXT"},
    {CimCode::serverLimitsExceeded, "CIM_ERR_SERVER_LIMITS_EXCEEDED"},
    {CimCode::serverIsShuttingDown, "CIM_ERR_SERVER_IS_SHUTTING_DOWN"},
    {CimCode::queryFeatureNotSupported, "CIM_ERR_QUERY_FEATURE_NOT_SUPPORTED"},
});

}  // namespace

void throwInvalidParameter(const std::string& description) {
    throw CimError(CimCode::invalidParameter, description);
}

const char* codeName(CimCode code) noexcept {
    const auto* const row = std::ranges::find(codeRows, code, &CodeRow::code);
    // A provider may answer with a number that is none of the codes.
    return row == codeRows.end() ? codeRows.front().name : row->name;
}

}  // namespace cimhost
