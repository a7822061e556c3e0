#include "cmpicpp/CmpiDateTime.h"

#include "cmpicpp/detail/Calls.h"

#include <string_view>

namespace CmpiCpp {

namespace {

// The shape alone; whether the fields make a date is for the broker to say. An asterisk stands for
// a digit that is not known (DSP0004, 5.2.4).
bool looksLikeDateTime(std::string_view text) noexcept {
    constexpr std::string_view shape = "00000000000000.000000+000";
    if (text.size() != shape.size()) return false;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const char character = text[i];
        const std::string_view allowed = shape[i] == '0'   ? "0123456789*"
                                         : shape[i] == '+' ? "+-:"
                                                           : ".";
        if (allowed.find(character) == std::string_view::npos) return false;
    }
    return true;
}

CmpiDateTime wrap(const CMPIBroker* broker, CMPIDateTime* dateTime) {
    return CmpiDateTime(CmpiHandle<CMPIDateTime>::fresh(broker, made(dateTime, "datetime")));
}

}  // namespace

bool CmpiDateTime::isInterval() const {
    const CMPIDateTime* const dateTime = _handle.required();
    return ask(dateTime->ft->isInterval, dateTime) != 0;
}

std::chrono::microseconds CmpiDateTime::microseconds() const {
    const CMPIDateTime* const dateTime = _handle.required();
    // Brokers report moments before 1970 in two's complement.
    return std::chrono::microseconds(
        static_cast<std::int64_t>(ask(dateTime->ft->getBinaryFormat, dateTime)));
}

std::string CmpiDateTime::str() const {
    const CMPIDateTime* const dateTime = _handle.get();
    if (!dateTime) return {};
    return std::string(textOf(ask(dateTime->ft->getStringFormat, dateTime)));
}

CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker) {
    const CMPIBroker* const asked = required(broker.toCMPI());
    return wrap(asked, ask(asked->eft->newDateTime, asked));
}

CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker, std::chrono::microseconds value,
                              bool interval) {
    if (value.count() < 0) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER,
                         "A datetime of " + std::to_string(value.count()) + " microseconds");
    }
    const CMPIBroker* const asked = required(broker.toCMPI());
    return wrap(
        asked, ask(asked->eft->newDateTimeFromBinary, asked, static_cast<CMPIUint64>(value.count()),
                   static_cast<CMPIBoolean>(interval)));
}

CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker, const std::string& text) {
    if (!looksLikeDateTime(text)) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "No datetime: " + text);
    }
    const CMPIBroker* const asked = required(broker.toCMPI());
    return wrap(asked, ask(asked->eft->newDateTimeFromChars, asked, text.c_str()));
}

}  // namespace CmpiCpp
