#include "cimhost/objects/MessageText.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/StringHandle.h"

#include <array>
#include <charconv>

namespace cimhost {

namespace {

constexpr CMPICount mostInserts = 10;

std::string realText(double value) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::string charsText(const char* text) { return text ? text : "NULL"; }

std::string stringText(const CMPIString* string) {
    if (!string) return "NULL";
    return std::string(requiredObject<StringObject>(string).view());
}

// A va_list that functions can share: as an argument it may be copied or not, depending on the
// machine.
struct ArgumentList {
    explicit ArgumentList(va_list arguments) { va_copy(list, arguments); }
    ~ArgumentList() { va_end(list); }
    ArgumentList(const ArgumentList&) = delete;
    ArgumentList& operator=(const ArgumentList&) = delete;

    template <typename T>
    T take() {
        return va_arg(list, T);
    }

    va_list list;
};

// The C type of each code is fixed by custom (see the CMFmt macros).
std::string takeInsert(ArgumentList& arguments) {
    switch (arguments.take<int>()) {
        case CMPI_sint32: return std::to_string(arguments.take<long>());
        case CMPI_uint32: return std::to_string(arguments.take<unsigned long>());
        case CMPI_sint64: return std::to_string(arguments.take<long long>());
        case CMPI_uint64: return std::to_string(arguments.take<unsigned long long>());
        case CMPI_real64: return realText(arguments.take<double>());
        case CMPI_boolean: return arguments.take<int>() ? "true" : "false";
        case CMPI_chars: return charsText(arguments.take<const char*>());
        case CMPI_string: return stringText(arguments.take<const CMPIString*>());
        default: throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
    }
}

bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

}  // namespace

std::vector<std::string> messageInserts(CMPICount count, va_list arguments) {
    if (count > mostInserts) throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
    ArgumentList list(arguments);
    std::vector<std::string> inserts;
    for (CMPICount i = 0; i < count; ++i) inserts.push_back(takeInsert(list));
    return inserts;
}

std::string expandMessage(std::string_view text, const std::vector<std::string>& inserts) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPlace = text[i] == '$' && i + 1 < text.size() && isDigit(text[i + 1]);
        const auto place = isPlace ? static_cast<std::size_t>(text[i + 1] - '0') : inserts.size();
        if (place < inserts.size()) {
            result += inserts[place];
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

}  // namespace cimhost
