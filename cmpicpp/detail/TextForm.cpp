#include "cmpicpp/detail/TextForm.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"
#include "cmpicpp/detail/Equality.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace CmpiCpp {

namespace {

/// What must be spelled otherwise, by its byte: looked up, since each character of a text is asked.
using ByteSet = std::array<bool, 256>;

constexpr ByteSet controls = [] {
    ByteSet set{};
    std::fill_n(set.begin(), 0x20, true);
    set[0x7F] = true;
    return set;
}();

constexpr ByteSet controlsAnd(char quote) {
    ByteSet set = controls;
    set[static_cast<unsigned char>(quote)] = true;
    set['\\'] = true;
    return set;
}

constexpr bool contains(const ByteSet& set, char character) noexcept {
    return set[static_cast<unsigned char>(character)];
}

// MOF reads one to four digits after \x: always four, so that the next character cannot join them.
void appendCode(std::string& out, unsigned code) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    out += "\\x";
    for (int shift = 12; shift >= 0; shift -= 4) out += digits[(code >> shift) & 0xF];
}

void appendControl(std::string& out, char character) {
    switch (character) {
        case '\b': out += "\\b"; break;
        case '\t': out += "\\t"; break;
        case '\n': out += "\\n"; break;
        case '\f': out += "\\f"; break;
        case '\r': out += "\\r"; break;
        default: appendCode(out, static_cast<unsigned char>(character));
    }
}

/// Appends text with another spelling for each special character.
template <typename Spell>
void appendSpelled(std::string& out, std::string_view text, const ByteSet& special, Spell spell) {
    const auto isSpecial = [&special](char character) { return contains(special, character); };
    for (auto from = text.begin(); from != text.end();) {
        const auto found = std::find_if(from, text.end(), isSpecial);
        out.append(from, found);
        if (found == text.end()) return;
        spell(*found);
        from = found + 1;
    }
}

template <char quote>
void appendEscaped(std::string& out, std::string_view text) {
    static constexpr ByteSet special = controlsAnd(quote);
    appendSpelled(out, text, special, [&](char character) {
        if (contains(controls, character)) {
            appendControl(out, character);
        } else {
            out.append({'\\', character});
        }
    });
}

void appendQuoted(std::string& out, std::string_view text) {
    out += '"';
    appendEscaped<'"'>(out, text);
    out += '"';
}

// Names stand without quotes, so only what would break the line is escaped.
void appendName(std::string& out, std::string_view name) {
    appendSpelled(out, name, controls, [&out](char control) { appendControl(out, control); });
}

template <typename Number>
void appendNumber(std::string& out, Number number) {
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    out.append(digits.data(), end);
}

void appendInteger(std::string& out, Integer integer) {
    if (integer.negative) {
        appendNumber(out, static_cast<long long>(integer.bits));
    } else {
        appendNumber(out, integer.bits);
    }
}

// The shortest digits that read back as the same number. MOF wants a point in every real.
template <typename Real>
void appendReal(std::string& out, Real real) {
    const std::size_t begin = out.size();
    appendNumber(out, real);
    const std::size_t end = out.find_first_of(".ein", begin);
    if (end == std::string::npos) {
        out += ".0";
    } else if (out[end] == 'e') {
        out.insert(end, ".0");
    }
}

void appendChar16(std::string& out, CMPIChar16 unit) {
    std::string text;
    out += '\'';
    if (appendUtf8(text, unit)) {
        appendEscaped<'\''>(out, text);
    } else {
        appendCode(out, unit);
    }
    out += '\'';
}

void appendReference(std::string& out, const CMPIObjectPath* path) {
    std::string text;
    appendPath(text, path);
    appendQuoted(out, text);
}

void appendGoodData(std::string& out, const CMPIData& data) {
    switch (kindOf(data)) {
        case DataKind::null: out += "NULL"; break;
        case DataKind::boolean: out += data.value.boolean != 0 ? "true" : "false"; break;
        case DataKind::char16: appendChar16(out, data.value.char16); break;
        case DataKind::integer: appendInteger(out, integerOf(data)); break;
        case DataKind::real:
            if (data.type == CMPI_real32) {
                appendReal(out, data.value.real32);
            } else {
                appendReal(out, data.value.real64);
            }
            break;
        case DataKind::text:
        case DataKind::dateTime: appendQuoted(out, charactersOf(data)); break;
        case DataKind::reference: appendReference(out, data.value.ref); break;
        case DataKind::instance: appendInstance(out, data.value.inst); break;
        case DataKind::array: appendArray(out, data.value.array); break;
        case DataKind::bad:
        case DataKind::other: throw CmpiStatus(CMPI_RC_ERR_INVALID_DATA_TYPE);
    }
}

}  // namespace

void appendData(std::string& out, const CMPIData& data) {
    const std::size_t begin = out.size();
    try {
        appendGoodData(out, data);
    } catch (const CmpiStatus&) {
        out.resize(begin);
        out += "<bad value>";
    }
}

void appendPath(std::string& out, const CMPIObjectPath* path) {
    if (const auto host = textOf(ask(path->ft->getHostname, path)); !host.empty()) {
        out += "//";
        appendName(out, host);
    }
    out += '/';
    appendName(out, textOf(ask(path->ft->getNameSpace, path)));
    out += ':';
    appendName(out, textOf(ask(path->ft->getClassName, path)));
    char separator = '.';
    forEachKey(path, [&](const CMPIString* name, const CMPIData& key) {
        out += separator;
        separator = ',';
        appendName(out, textOf(name));
        out += '=';
        appendData(out, key);
        return true;
    });
}

void appendInstance(std::string& out, const CMPIInstance* instance) {
    const CMPIObjectPath* const path = made(ask(instance->ft->getObjectPath, instance), "path");
    out += "instance of ";
    appendName(out, textOf(ask(path->ft->getClassName, path)));
    out += " {";
    const CMPICount count = ask(instance->ft->getPropertyCount, instance);
    for (CMPICount index = 0; index < count; ++index) {
        CMPIString* name = nullptr;
        const CMPIData data = ask(instance->ft->getPropertyAt, instance, index, &name);
        if (index != 0) out += ' ';
        appendName(out, textOf(name));
        out += " = ";
        appendData(out, data);
        out += ';';
    }
    out += '}';
}

void appendArray(std::string& out, const CMPIArray* array) {
    out += '{';
    const CMPICount size = ask(array->ft->getSize, array);
    for (CMPICount index = 0; index < size; ++index) {
        if (index != 0) out += ", ";
        appendData(out, ask(array->ft->getElementAt, array, index));
    }
    out += '}';
}

bool appendUtf8(std::string& out, CMPIChar16 unit) {
    if (unit >= 0xD800 && unit < 0xE000) return false;
    const auto continuation = [](unsigned bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (unit < 0x80) {
        out += static_cast<char>(unit);
    } else if (unit < 0x800) {
        out += static_cast<char>(0xC0 | (unit >> 6));
        out += continuation(unit);
    } else {
        out += static_cast<char>(0xE0 | (unit >> 12));
        out += continuation(unit >> 6);
        out += continuation(unit);
    }
    return true;
}

}  // namespace CmpiCpp
