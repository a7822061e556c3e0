#include "cimhost/query/WqlLexer.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Literals.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

bool isQuote(char character) noexcept { return character == '"' || character == '\''; }

std::size_t symbolLength(std::string_view text) noexcept {
    constexpr std::string_view pairs[] = {"<>", "<=", ">=", "!="};
    return std::ranges::any_of(pairs, [&](auto pair) { return text.starts_with(pair); }) ? 2 : 1;
}

std::string describe(const WqlToken& token) {
    if (token.kind == WqlToken::Kind::end) return "the end of the query";
    constexpr std::size_t longest = 40;
    return "'" + std::string(token.text.substr(0, longest)) + "'";
}

}  // namespace

bool WqlToken::isKeyword(std::string_view word) const noexcept {
    return kind == Kind::name && equalNames(text, word);
}

void refuseQuery(const WqlToken& found, std::string_view expected) {
    throw CimError(CimCode::invalidQuery, "the query has " + describe(found) + " at character " +
                                              std::to_string(found.place + 1) + " where " +
                                              std::string(expected) + " is expected");
}

WqlToken WqlLexer::_take(WqlToken::Kind kind, std::size_t length) noexcept {
    const WqlToken token{kind, _text.substr(_place, length), _place};
    _place += length;
    return token;
}

WqlToken WqlLexer::next() {
    _place = std::min(_text.find_first_not_of(" \t\r\n\f\v", _place), _text.size());
    const std::string_view rest = _text.substr(_place);
    if (rest.empty()) return _take(WqlToken::Kind::end, 0);
    if (isQuote(rest.front())) {
        std::string text;
        const std::size_t end = readQuoted(rest, Escapes::quotes, text);
        if (end == std::string_view::npos) {
            refuseQuery(_take(WqlToken::Kind::symbol, rest.size()), "a string that is closed");
        }
        return _take(WqlToken::Kind::string, end);
    }
    if (const std::size_t end = findNameEnd(rest); end != 0) {
        return _take(WqlToken::Kind::name, end);
    }
    if (beginsNumber(rest)) return _take(WqlToken::Kind::number, numberLength(rest, true));
    return _take(WqlToken::Kind::symbol, symbolLength(rest));
}

std::string unquoted(std::string_view token) {
    std::string text;
    readQuoted(token, Escapes::quotes, text);
    return text;
}

}  // namespace cimhost
