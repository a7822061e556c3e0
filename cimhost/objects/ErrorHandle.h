#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/Instance.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace cimhost {

/// The attributes of CIM_Error. Texts and arrays that were never set are NULL.
struct ErrorObject : ObjectBase<CMPIError, ObjectKind::error> {
    static const CMPIErrorFT table;

    enum class Text {
        owningEntity,
        messageId,
        message,
        otherErrorType,
        probableCauseDescription,
        errorSource,
        otherErrorSourceFormat,
        cimStatusCodeDescription,
        count,
    };
    enum class List { recommendedActions, messageArguments, count };

    Instance asInstance() const;

    std::string_view message() const noexcept {
        const auto& text = texts[static_cast<std::size_t>(Text::message)];
        return text ? std::string_view(*text) : std::string_view();
    }

    std::array<std::optional<std::string>, static_cast<std::size_t>(Text::count)> texts;
    std::array<std::optional<Value::Array>, static_cast<std::size_t>(List::count)> lists;
    CMPIErrorType errorType = UnknownErrorType;
    CMPIErrorSeverity severity = ErrorSevUnknown;
    CMPIErrorProbableCause probableCause = ErrorProbCauseUnknown;
    CMPIErrorSrcFormat sourceFormat = CMPIErrSrcUnknown;
    CMPIrc cimStatus = CMPI_RC_OK;
};

/// The attributes that newCMPIError takes. Failure CMPI_RC_ERR_INVALID_PARAMETER for a null text or
/// a number that CIM_Error has not.
struct CoreError {
    const char* owningEntity;
    const char* messageId;
    const char* message;
    CMPIErrorSeverity severity;
    CMPIErrorProbableCause probableCause;
    CMPIrc cimStatus;
};
ErrorObject& makeError(const Home& home, const CoreError& core);

}  // namespace cimhost
