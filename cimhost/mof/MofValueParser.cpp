#include "cimhost/mof/MofValueParser.h"

#include "cimhost/mof/MofLiterals.h"
#include "cimhost/repository/ValueConversion.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

namespace cimhost {
namespace {

// Far more than any array of a schema; an element as written takes twice what its value will.
constexpr std::size_t mostElements = std::size_t{1} << 18U;

Value parseWord(MofCursor& cursor) {
    if (cursor.acceptKeyword("null")) return Value();
    if (cursor.acceptKeyword("true")) return Value::boolean(true);
    if (cursor.acceptKeyword("false")) return Value::boolean(false);
    cursor.unexpected("a value");
}

using Append = void (*)(const MofToken& token, std::string& text);

std::string joinStrings(MofCursor& cursor, const char* what, Append append) {
    std::string text;
    append(cursor.expectKind(MofToken::Kind::string, what), text);
    while (cursor.peek().kind == MofToken::Kind::string) append(cursor.take(), text);
    return text;
}

MofPragmaParameter parsePragma(MofCursor& cursor, Append append) {
    cursor.expectSymbol('(', "after the pragma");
    const MofPosition position = cursor.position();
    std::string text = joinStrings(cursor, "a string as the pragma's parameter", append);
    cursor.expectSymbol(')', "after the pragma's parameter");
    return {std::move(text), position};
}

void appendFileName(const MofToken& token, std::string& text) {
    const std::string_view quoted = token.text;
    text += quoted.substr(1, quoted.size() - 2);
}

}  // namespace

std::string parseString(MofCursor& cursor, const char* what) {
    return joinStrings(cursor, what, appendString);
}

MofPragmaParameter parsePragmaParameter(MofCursor& cursor) {
    return parsePragma(cursor, appendString);
}

MofPragmaParameter parseFilePragma(MofCursor& cursor) {
    MofPragmaParameter parameter = parsePragma(cursor, appendFileName);
    std::ranges::replace(parameter.text, '\\', '/');
    return parameter;
}

MofElement parseElement(MofCursor& cursor) {
    MofElement element;
    element.position = cursor.position();
    switch (cursor.peek().kind) {
        case MofToken::Kind::number: element.literal = numberOf(cursor.take()); break;
        case MofToken::Kind::character: element.literal = characterOf(cursor.take()); break;
        case MofToken::Kind::string:
            element.literal = Value::string(parseString(cursor, "a string"));
            break;
        case MofToken::Kind::alias: element.alias = cursor.take().text; break;
        case MofToken::Kind::name: element.literal = parseWord(cursor); break;
        case MofToken::Kind::symbol:
        case MofToken::Kind::end: cursor.unexpected("a value");
    }
    return element;
}

MofInitializer parseArray(MofCursor& cursor, MemoryBudget& budget) {
    MofInitializer initializer;
    initializer.isArray = true;
    initializer.position = cursor.position();
    cursor.expectSymbol('{', "before the elements");
    if (cursor.acceptSymbol('}')) return initializer;
    do {
        if (initializer.elements.size() == mostElements) {
            failAt(cursor.position(),
                   "an array of more than " + std::to_string(mostElements) + " elements");
        }
        atPosition(cursor.position(), [&budget] { budget.charge(sizeof(Value)); });
        initializer.elements.push_back(parseElement(cursor));
    } while (cursor.acceptSymbol(','));
    cursor.expectSymbol('}', "or ',' after the element");
    return initializer;
}

MofInitializer parseInitializer(MofCursor& cursor, MemoryBudget& budget) {
    if (cursor.peek().isSymbol('{')) return parseArray(cursor, budget);
    MofInitializer initializer;
    initializer.position = cursor.position();
    initializer.elements.push_back(parseElement(cursor));
    return initializer;
}

Value convertLiteral(const MofElement& element, CimType type) {
    if (!element.alias.empty()) {
        failAt(element.position, "the alias '" + element.alias + "' can stand only in an instance");
    }
    return atPosition(element.position, [&] { return convertScalar(element.literal, type); });
}

Value convertInitializer(const MofInitializer& initializer, const DeclaredType& type,
                         const ElementConverter& convert) {
    if (!initializer.isArray) {
        const MofElement& element = initializer.elements.front();
        const bool isNull = element.alias.empty() && element.literal.isNull();
        if (type.isArray && isNull) return Value::nullArray(type.type);
        if (type.isArray) {
            failAt(initializer.position, "expected '{' before the elements of an array");
        }
        return convert(element, type.type);
    }
    if (!type.isArray) {
        failAt(initializer.position,
               "expected a single value of type " + std::string(typeName(type.type)));
    }
    Value::Array elements;
    elements.reserve(initializer.elements.size());
    for (const MofElement& element : initializer.elements) {
        elements.push_back(convert(element, type.type));
    }
    return atPosition(initializer.position, [&] {
        return convertValue(Value::array(type.type, std::move(elements)), type.type, true,
                            type.arraySize);
    });
}

void parseArrayMark(MofCursor& cursor, DeclaredType& type) {
    if (!cursor.acceptSymbol('[')) return;
    type.isArray = true;
    if (cursor.acceptSymbol(']')) return;
    const MofToken token = cursor.expectKind(MofToken::Kind::number, "an array size or ']'");
    const Value number = numberOf(token);
    const auto* const size = number.get<std::uint64_t>();
    if (!size || *size == 0 || *size > std::numeric_limits<std::uint32_t>::max()) {
        failAt(token.position, describe(token) + " is no array size");
    }
    type.arraySize = static_cast<std::uint32_t>(*size);
    cursor.expectSymbol(']', "after the array size");
}

}  // namespace cimhost
