// HTTP requests: read alike however their bytes arrive.
#include "cimhost/http/HttpParser.h"
#include "fuzz/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using cimhost::HttpParser;

struct Outcome {
    HttpParser::State state;
    int refusal;
    std::string text;  ///< all that the request says
    bool operator==(const Outcome&) const = default;
};

std::string textOf(const cimhost::HttpRequest& request) {
    std::string text(request.method);
    text.append("\n").append(request.target).append("\n").append(request.serverName());
    text.append("\n").append(request.path());
    text.append("\n").append(request.authority().value_or("none"));
    for (const cimhost::HttpField& field : request.fields) {
        text.append("\n").append(field.name).append(":").append(field.value);
        require(request.header(field.name).has_value(), "a field that is there is found");
    }
    return text + "\n\n" + request.body + (request.keepAlive ? "k" : "") +
           (request.isHttp11 ? "1" : "") + (request.isChunked ? "c" : "");
}

/// Feeds `step` bytes at a time up to the end of the first request.
Outcome readRequest(std::string_view bytes, std::size_t step) {
    using State = HttpParser::State;
    // Limits that short inputs come to.
    static const cimhost::HttpLimits limits{.lineBytes = 64,
                                            .headBytes = 512,
                                            .fieldCount = 4,
                                            .bodyBytes = 64,
                                            .chunkLineBytes = 32,
                                            .framingBytes = 128};
    HttpParser parser(limits);
    std::string kept;
    bool headIsRead = false;
    for (std::size_t place = 0; place < bytes.size(); place += step) {
        kept += bytes.substr(place, step);
        for (bool goesOn = true; goesOn;) {
            const State before = parser.state();
            const std::size_t used = parser.feed(kept);
            require(used <= kept.size(), "no more is used than there is");
            kept.erase(0, used);
            headIsRead = headIsRead || parser.state() == State::headComplete;
            if (parser.state() == State::complete || parser.state() == State::refused) {
                return {parser.state(), parser.refusal(),
                        parser.state() == State::complete ? textOf(parser.request()) : ""};
            }
            goesOn = parser.state() != before || (used > 0 && !kept.empty());
        }
    }
    return {parser.state(), 0, headIsRead ? textOf(parser.request()) : ""};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const Outcome whole = readRequest(bytes, std::max<std::size_t>(size, 1));
    require(readRequest(bytes, 1) == whole, "byte by byte it is the same");
    require(readRequest(bytes, 7) == whole, "in pieces it is the same");
    return 0;
}
