#include "cimhost/mof/MofCursor.h"

#include "cimhost/repository/Utf8.h"

namespace cimhost {

MofToken MofCursor::take() { return std::exchange(_token, _lexer.next()); }

bool MofCursor::acceptSymbol(char symbol) {
    if (!_token.isSymbol(symbol)) return false;
    take();
    return true;
}

bool MofCursor::acceptKeyword(std::string_view keyword) {
    if (!_token.isName(keyword)) return false;
    take();
    return true;
}

void MofCursor::expectSymbol(char symbol, std::string_view place) {
    if (acceptSymbol(symbol)) return;
    unexpected("'" + std::string(1, symbol) + "' " + std::string(place));
}

void MofCursor::expectKeyword(std::string_view keyword, std::string_view place) {
    if (acceptKeyword(keyword)) return;
    unexpected("'" + std::string(keyword) + "' " + std::string(place));
}

MofToken MofCursor::expectName(std::string_view what) {
    const MofToken name = expectKind(MofToken::Kind::name, what);
    const std::size_t invalid = findInvalidUtf8(name.text);
    if (invalid != std::string_view::npos) {
        failAt(positionIn(name, invalid), "the text is not UTF-8");
    }
    return name;
}

MofToken MofCursor::expectKind(MofToken::Kind kind, std::string_view what) {
    if (_token.kind != kind) unexpected(what);
    return take();
}

void MofCursor::unexpected(std::string_view expected) const {
    failAt(_token.position, "expected " + std::string(expected) + ", found " + describe(_token));
}

}  // namespace cimhost
