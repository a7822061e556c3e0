#include "cimhost/http/HttpHead.h"

#include <algorithm>
#include <cstring>

namespace cimhost {
namespace {

bool isForbidden(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return (byte < 0x20 && byte != '\t' && byte != '\r') || byte == 0x7F;
}

bool isDigit(char character) noexcept { return character >= '0' && character <= '9'; }

/// The status that refuses the version at the end of a request line, or 0.
int refusalOfVersion(std::string_view requestLine) noexcept {
    constexpr std::string_view form = " HTTP/1.1";
    if (requestLine.size() <= form.size()) return 400;
    const std::string_view version = requestLine.substr(requestLine.size() - form.size());
    if (version.substr(0, 6) != form.substr(0, 6) || !isDigit(version[6]) || version[7] != '.' ||
        !isDigit(version[8])) {
        return 400;
    }
    return version == form || version == " HTTP/1.0" ? 0 : 505;
}

}  // namespace

std::size_t HttpHead::feed(std::string_view bytes) {
    std::size_t used = 0;
    while (used < bytes.size() && !_complete && _refusal == 0) {
        used += _feedLine(bytes.substr(used));
    }
    return used;
}

std::size_t HttpHead::_feedLine(std::string_view bytes) {
    const void* end = std::memchr(bytes.data(), '\n', bytes.size());
    std::size_t count = bytes.size();
    if (end != nullptr) {
        count = static_cast<std::size_t>(static_cast<const char*>(end) - bytes.data()) + 1;
    }
    // Nothing beyond the limits is kept, however much arrived at once.
    count = std::min(
        count, _limits.headBytes + 1 - std::min(_skippedBytes + _text.size(), _limits.headBytes));
    const std::string_view added = bytes.substr(0, count);
    _text.append(added);
    _checkLine(added);
    if (_refusal == 0 && _text.back() == '\n') _endLine();
    if (_refusal == 0 && _skippedBytes + _text.size() > _limits.headBytes) _refusal = 431;
    return count;
}

void HttpHead::_checkLine(std::string_view added) {
    const std::size_t place = _text.size() - added.size() - _lineBegin;  // in its line
    if (added.ends_with('\n')) added.remove_suffix(1);
    // What stands beyond the limit is not looked at: the answer is the same however the bytes
    // arrive.
    added = added.substr(0, _limits.lineBytes - std::min(place, _limits.lineBytes));
    std::string_view line = std::string_view(_text).substr(_lineBegin);
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() > _limits.lineBytes) _refusal = _lineCount == 0 ? 414 : 431;
    // Folded lines are how two parsers come to read one head differently (RFC 9112, 5.2).
    const bool isFolded = line.starts_with(' ') || line.starts_with('\t');
    if (isFolded || std::ranges::any_of(added, isForbidden)) _refusal = 400;
}

void HttpHead::_endLine() {
    const std::size_t length = _text.size() - _lineBegin;
    if (length < 2 || _text[_text.size() - 2] != '\r') {
        _refusal = 400;
        return;
    }
    const std::string_view line = std::string_view(_text).substr(_lineBegin, length - 2);
    if (line.empty() &&
        _lineCount == 0) {  // RFC 9112, 2.2: empty lines before a request are ignored
        _skippedBytes += length;
        _text.clear();
        return;
    }
    _lineBegin = _text.size();
    if (line.empty()) {
        _complete = true;
    } else if (_lineCount++ == 0) {
        _refusal = refusalOfVersion(line);
    } else if (_lineCount - 1 > _limits.fieldCount) {
        _refusal = 431;
    }
}

void HttpHead::clear() noexcept {
    _text.clear();
    _lineBegin = _lineCount = _skippedBytes = 0;
    _refusal = 0;
    _complete = false;
}

}  // namespace cimhost
