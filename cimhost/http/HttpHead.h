#pragma once

#include "cimhost/http/HttpLimits.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace cimhost {

/// Gathers the lines of one request head and holds each to the limits as its bytes arrive, so that
/// a head that is too long, too many or no HTTP at all is refused before the rest of it came. What
/// the lines mean is the parser's business. Used by one thread.
class HttpHead {
public:
    explicit HttpHead(const HttpLimits& limits) : _limits(limits) {}

    /// Takes bytes up to the end of the head and returns how many; takes no more once refused.
    std::size_t feed(std::string_view bytes);

    bool isComplete() const noexcept { return _complete; }
    /// The HTTP status that answers what was fed, or 0 when there is nothing to refuse.
    int refusal() const noexcept { return _refusal; }
    /// The head with its closing empty line; without empty lines before the request line.
    const std::string& text() const noexcept { return _text; }
    bool isEmpty() const noexcept { return _text.empty() && _skippedBytes == 0; }

    void clear() noexcept;

private:
    std::size_t _feedLine(std::string_view bytes);
    void _checkLine(std::string_view added);
    void _endLine();

    const HttpLimits& _limits;
    std::string _text;
    std::size_t _lineBegin = 0;
    std::size_t _lineCount = 0;
    std::size_t _skippedBytes = 0;
    int _refusal = 0;
    bool _complete = false;
};

}  // namespace cimhost
