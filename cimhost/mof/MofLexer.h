#pragma once

#include "cimhost/mof/MofError.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace cimhost {

/// One word of MOF. The text is part of the lexer's and good while that is.
struct MofToken {
    enum class Kind {
        end,
        name,       ///< an identifier or keyword: MOF has no reserved words where a name can stand
        alias,      ///< `$name`
        number,     ///< as written, sign included; not checked yet
        string,     ///< with its quotes, escapes not looked at
        character,  ///< with its apostrophes
        symbol,     ///< any other character
    };

    Kind kind = Kind::end;
    std::string_view text;
    MofPosition position;

    bool isSymbol(char symbol) const noexcept {
        return kind == Kind::symbol && text.front() == symbol;
    }
    bool isName(std::string_view name) const noexcept;
};

/// The token as a message shows it: "'uint32'", "a string", "the end of the file".
std::string describe(const MofToken& token);

/// The place of the byte in the token; tokens never span lines.
MofPosition positionIn(const MofToken& token, std::size_t place) noexcept;

/// Cuts MOF text into tokens, dropping space, comments and a byte order mark.
class MofLexer {
public:
    /// Text and file name must outlive the lexer and its tokens.
    MofLexer(std::string_view text, const std::string& file);

    /// The next token; `end` again and again at the end.
    /// Throws MofError for a comment or a quote that is not closed.
    MofToken next();

private:
    std::string_view _rest() const noexcept { return _text.substr(_place); }
    MofPosition _position() const noexcept;
    MofToken _take(MofToken::Kind kind, std::size_t length) noexcept;
    void _skipSpaceAndComments();
    void _skipLine() noexcept;
    void _skipBlockComment();
    void _countLines(std::size_t from, std::size_t to) noexcept;
    MofToken _quoted(MofToken::Kind kind, char quote, const char* what);

    std::string_view _text;
    const std::string& _file;
    std::size_t _place = 0;
    std::size_t _line = 1;
    std::size_t _lineStart = 0;
};

}  // namespace cimhost
