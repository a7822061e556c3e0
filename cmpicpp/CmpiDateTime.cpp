#include "cmpicpp/CmpiDateTime.h"

#include "cmpicpp/detail/Calls.h"

#include <optional>
#include <string_view>

namespace CmpiCpp {

namespace {

// The shape alone. An asterisk stands for a digit that is not known (DSP0004, 5.2.4).
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

/// The number in these digits, or nothing when one is not known.
std::optional<int> field(std::string_view text, std::size_t begin, std::size_t size) noexcept {
    int number = 0;
    for (const char digit : text.substr(begin, size)) {
        if (digit == '*') return std::nullopt;
        number = 10 * number + (digit - '0');
    }
    return number;
}

bool isWithin(std::optional<int> number, int least, int most) noexcept {
    return !number || (*number >= least && *number <= most);
}

int daysOf(std::optional<int> year, std::optional<int> month) noexcept {
    if (!month) return 31;
    if (*month != 2) return *month == 4 || *month == 6 || *month == 9 || *month == 11 ? 30 : 31;
    const bool isLeap = !year || (*year % 4 == 0 && (*year % 100 != 0 || *year % 400 == 0));
    return isLeap ? 29 : 28;
}

// Not every broker looks at the fields of a text that has the shape.
bool hasFieldsOfDateTime(std::string_view text) noexcept {
    const auto month = field(text, 4, 2);
    const bool isDay = text[21] == ':'
                           ? text.ends_with(":000")
                           : isWithin(month, 1, 12) &&
                                 isWithin(field(text, 6, 2), 1, daysOf(field(text, 0, 4), month));
    return isDay && isWithin(field(text, 8, 2), 0, 23) && isWithin(field(text, 10, 2), 0, 59) &&
           isWithin(field(text, 12, 2), 0, 59);
}

/// The largest figures that 25 characters have room for: the end of the year 9999, and 99999999
/// days to the end of the last.
constexpr long long lastMoment = 253402300799999999;
constexpr long long longestInterval = 8639999999999999999;

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
    if (value.count() < 0 || value.count() > (interval ? longestInterval : lastMoment)) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER,
                         "A datetime of " + std::to_string(value.count()) + " microseconds");
    }
    const CMPIBroker* const asked = required(broker.toCMPI());
    return wrap(
        asked, ask(asked->eft->newDateTimeFromBinary, asked, static_cast<CMPIUint64>(value.count()),
                   static_cast<CMPIBoolean>(interval)));
}

CmpiDateTime makeCmpiDateTime(const CmpiBroker& broker, const std::string& text) {
    if (!looksLikeDateTime(text) || !hasFieldsOfDateTime(text)) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "No datetime: " + text);
    }
    const CMPIBroker* const asked = required(broker.toCMPI());
    return wrap(asked, ask(asked->eft->newDateTimeFromChars, asked, text.c_str()));
}

}  // namespace CmpiCpp
