#include "cimhost/mof/MofLiterals.h"

#include "cimhost/repository/Literals.h"

namespace cimhost {
namespace {

// The digits behind the point are the ones that must be there.
std::errc readMofReal(std::string_view text, Value& value) {
    const std::size_t point = text.find('.');
    const bool hasFraction = text.find_first_of("0123456789", point) == point + 1;
    return hasFraction ? readReal(text, CimType::real64, value) : std::errc::invalid_argument;
}

template <typename Action>
auto atLiteral(const MofToken& token, Action&& action) {
    try {
        return action();
    } catch (const LiteralError& error) {
        failAt(positionIn(token, error.place()), error.what());
    }
}

}  // namespace

Value numberOf(const MofToken& token) {
    Value value;
    const bool isReal = token.text.find('.') != std::string_view::npos;
    const std::errc error =
        isReal ? readMofReal(token.text, value) : readInteger(token.text, IntegerForms::all, value);
    if (error == std::errc()) return value;
    failAt(token.position,
           describe(token) + (error == std::errc::result_out_of_range ? " does not fit into 64 bits"
                                                                      : " is not a number"));
}

Value characterOf(const MofToken& token) {
    const std::string_view text = token.text.substr(0, token.text.size() - 1);
    std::size_t place = 1;
    if (place == text.size()) {
        failAt(token.position, "expected a character between the apostrophes");
    }
    const char32_t unit = atLiteral(token, [&] { return readMofUnit(text, place); });
    if (place < text.size()) {
        failAt(token.position, "more than one character between the apostrophes");
    }
    if (unit > 0xFFFF) failAt(token.position, "the character does not fit into char16");
    return Value::unsignedInteger(CimType::char16, unit);
}

void appendString(const MofToken& token, std::string& text) {
    // The first literal is nearly always the only one, and its length is known.
    if (text.empty()) text.reserve(token.text.size());
    atLiteral(token, [&] { readQuoted(token.text, Escapes::mof, text); });
}

}  // namespace cimhost
