#include "cimhost/mof/MofLexer.h"

#include "cimhost/repository/Literals.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isSpace(char character) noexcept {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isLineEnd(char character) noexcept { return character == '\n' || character == '\r'; }

bool isPlain(char character) noexcept { return character > ' ' && character < '\x7F'; }

}  // namespace

bool MofToken::isName(std::string_view name) const noexcept {
    return kind == Kind::name && equalNames(text, name);
}

std::string describe(const MofToken& token) {
    constexpr std::size_t longest = 40;
    switch (token.kind) {
        case MofToken::Kind::end: return "the end of the file";
        case MofToken::Kind::string: return "a string";
        case MofToken::Kind::character: return "a character";
        case MofToken::Kind::symbol:
            if (!isPlain(token.text.front())) {
                return "character number " +
                       std::to_string(static_cast<unsigned char>(token.text.front()));
            }
            break;
        case MofToken::Kind::name:
        case MofToken::Kind::alias:
        case MofToken::Kind::number: break;
    }
    return "'" + std::string(token.text.substr(0, longest)) +
           (token.text.size() > longest ? "...'" : "'");
}

MofPosition positionIn(const MofToken& token, std::size_t place) noexcept {
    MofPosition position = token.position;
    position.column += place;
    return position;
}

MofLexer::MofLexer(std::string_view text, const std::string& file) : _text(text), _file(file) {
    if (_text.starts_with(byteOrderMark)) _text.remove_prefix(byteOrderMark.size());
}

MofToken MofLexer::next() {
    _skipSpaceAndComments();
    const std::string_view rest = _rest();
    if (rest.empty()) return _take(MofToken::Kind::end, 0);
    if (const std::size_t length = findNameEnd(rest)) return _take(MofToken::Kind::name, length);
    if (rest.front() == '"') return _quoted(MofToken::Kind::string, '"', "string");
    if (rest.front() == '\'') return _quoted(MofToken::Kind::character, '\'', "character");
    if (beginsNumber(rest)) return _take(MofToken::Kind::number, numberLength(rest, false));
    const std::size_t aliasLength = rest.front() == '$' ? findNameEnd(rest.substr(1)) : 0;
    if (aliasLength > 0) return _take(MofToken::Kind::alias, aliasLength + 1);
    return _take(MofToken::Kind::symbol, 1);
}

MofPosition MofLexer::_position() const noexcept {
    return {&_file, _line, _place - _lineStart + 1};
}

MofToken MofLexer::_take(MofToken::Kind kind, std::size_t length) noexcept {
    const MofToken token{kind, _text.substr(_place, length), _position()};
    _place += length;
    return token;
}

void MofLexer::_skipSpaceAndComments() {
    while (_place < _text.size()) {
        if (_rest().starts_with("//")) {
            _skipLine();
        } else if (_rest().starts_with("/*")) {
            _skipBlockComment();
        } else if (isSpace(_text[_place])) {
            _countLines(_place, _place + 1);
            ++_place;
        } else {
            return;
        }
    }
}

void MofLexer::_skipLine() noexcept { _place = std::min(_text.find('\n', _place), _text.size()); }

void MofLexer::_skipBlockComment() {
    const std::size_t end = _text.find("*/", _place + 2);
    if (end == std::string_view::npos) failAt(_position(), "the comment is not closed");
    _countLines(_place, end);
    _place = end + 2;
}

void MofLexer::_countLines(std::size_t from, std::size_t to) noexcept {
    for (std::size_t i = from; i < to; ++i) {
        if (_text[i] != '\n') continue;
        ++_line;
        _lineStart = i + 1;
    }
}

MofToken MofLexer::_quoted(MofToken::Kind kind, char quote, const char* what) {
    const std::string_view rest = _rest();
    const char stops[] = {quote, '\\', '\n', '\r', '\0'};
    std::size_t place = rest.find_first_of(stops, 1);
    while (place < rest.size() && rest[place] == '\\') {
        const bool escapesText = place + 1 < rest.size() && !isLineEnd(rest[place + 1]);
        place = rest.find_first_of(stops, place + (escapesText ? 2 : 1));
    }
    if (place >= rest.size() || rest[place] != quote) {
        failAt(_position(), std::string("the ") + what + " is not closed on its line");
    }
    return _take(kind, place + 1);
}

}  // namespace cimhost
