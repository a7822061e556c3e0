#pragma once

#include "cimhost/mof/MofLexer.h"
#include "cimhost/repository/CimError.h"

#include <string>
#include <string_view>
#include <utility>

namespace cimhost {

/// The place of the parser in a text: looks one token ahead, and reports what it finds in the wrong
/// place.
class MofCursor {
public:
    /// Text and file name must outlive the cursor and its tokens.
    MofCursor(std::string_view text, const std::string& file) : _lexer(text, file) { take(); }

    const MofToken& peek() const noexcept { return _token; }
    const MofPosition& position() const noexcept { return _token.position; }

    /// The token that peek() showed; the cursor moves on.
    MofToken take();

    bool acceptSymbol(char symbol);
    bool acceptKeyword(std::string_view keyword);

    /// `place` says where in the text the symbol is missing: "after the property".
    void expectSymbol(char symbol, std::string_view place);
    void expectKeyword(std::string_view keyword, std::string_view place);

    /// `what` says whose name: "a class name".
    MofToken expectName(std::string_view what);
    MofToken expectKind(MofToken::Kind kind, std::string_view what);

    /// Throws the MofError "expected ..., found ...".
    [[noreturn]] void unexpected(std::string_view expected) const;

private:
    MofLexer _lexer;
    MofToken _token;
};

/// Runs what may throw CimError, which comes out as a MofError at the position.
template <typename Action>
decltype(auto) atPosition(const MofPosition& position, Action&& action) {
    try {
        return std::forward<Action>(action)();
    } catch (const CimError& error) {
        failAt(position, error.what());
    }
}

}  // namespace cimhost
