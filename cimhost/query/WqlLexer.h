#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cimhost {

/// One word of a query. The text is part of the query's.
struct WqlToken {
    enum class Kind {
        end,
        name,    ///< an identifier or keyword
        number,  ///< digits, with sign, point and exponent as written; not checked yet
        string,  ///< with its quotes
        symbol,  ///< an operator or a single other character
    };

    Kind kind = Kind::end;
    std::string_view text;
    std::size_t place = 0;  ///< bytes before it in the query

    bool isSymbol(std::string_view symbol) const noexcept {
        return kind == Kind::symbol && text == symbol;
    }
    /// Keywords have no case.
    bool isKeyword(std::string_view word) const noexcept;
};

/// `expected "FROM" at character 10, found ...`: what a query's reader is told of an error.
[[noreturn]] void refuseQuery(const WqlToken& found, std::string_view expected);

/// Cuts a query into tokens. Used by one thread.
class WqlLexer {
public:
    /// The text must outlive the lexer and its tokens.
    explicit WqlLexer(std::string_view text) noexcept : _text(text) {}

    /// The next token; `end` again and again at the end.
    /// Throws CimError invalidQuery for a string that is not closed.
    WqlToken next();

private:
    WqlToken _take(WqlToken::Kind kind, std::size_t length) noexcept;

    std::string_view _text;
    std::size_t _place = 0;
};

/// The text between the quotes of a string token: a quote within is doubled or follows a backslash,
/// which before any other character stands for itself.
std::string unquoted(std::string_view token);

}  // namespace cimhost
