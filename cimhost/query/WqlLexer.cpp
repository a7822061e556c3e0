#include "cimhost/query/WqlLexer.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

namespace {

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

bool isQuote(char character) noexcept {
    return character == '"' || character == '\'';
}

/// The end of the string at the front of the text, or npos.
std::size_t stringEnd(std::string_view text) noexcept {
    const char quote = text.front();
    for (std::size_t i = 1; i < text.size(); ++i) {
        const bool isPair = i + 1 < text.size() &&
                            ((text[i] == '\\' && (text[i + 1] == '\\' || isQuote(text[i + 1]))) ||
                             (text[i] == quote && text[i + 1] == quote));
        if (isPair) {
            ++i;
        } else if (text[i] == quote) {
            return i + 1;
        }
    }
    return std::string_view::npos;
}

bool beginsNumber(std::string_view text) noexcept {
    if (text.front() == '+' || text.front() == '-') text.remove_prefix(1);
    if (text.starts_with('.')) text.remove_prefix(1);
    return !text.empty() && isDigit(text.front());
}

std::size_t numberEnd(std::string_view text) noexcept {
    std::size_t i = text.front() == '+' || text.front() == '-' ? 1 : 0;
    while (i < text.size()) {
        const bool isSign =
            (text[i] == '+' || text[i] == '-') && (text[i - 1] == 'e' || text[i - 1] == 'E');
        if (!isSign && text[i] != '.' && findNameEnd(text.substr(i, 1)) == 0 && !isDigit(text[i])) {
            break;
        }
        ++i;
    }
    return i;
}

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
        const std::size_t end = stringEnd(rest);
        if (end == std::string_view::npos) {
            refuseQuery(_take(WqlToken::Kind::symbol, rest.size()), "a string that is closed");
        }
        return _take(WqlToken::Kind::string, end);
    }
    if (const std::size_t end = findNameEnd(rest); end != 0) {
        return _take(WqlToken::Kind::name, end);
    }
    if (beginsNumber(rest)) return _take(WqlToken::Kind::number, numberEnd(rest));
    return _take(WqlToken::Kind::symbol, symbolLength(rest));
}

std::string unquoted(std::string_view token) {
    const char quote = token.front();
    const std::string_view inside = token.substr(1, token.size() - 2);
    std::string text;
    text.reserve(inside.size());
    for (std::size_t i = 0; i < inside.size(); ++i) {
        const bool isPair =
            i + 1 < inside.size() &&
            ((inside[i] == '\\' && (inside[i + 1] == '\\' || isQuote(inside[i + 1]))) ||
             (inside[i] == quote && inside[i + 1] == quote));
        if (isPair) ++i;
        text += inside[i];
    }
    return text;
}

}  // namespace cimhost
