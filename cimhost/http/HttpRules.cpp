#include "cimhost/http/HttpRules.h"

#include <algorithm>

namespace cimhost {
namespace {

auto countFields(const HttpRequest& request, std::string_view name) noexcept {
    return std::count_if(request.fields.begin(), request.fields.end(),
                         [name](const HttpField& field) { return equalTokens(field.name, name); });
}

/// RFC 9112, 3.2: a request with no host, or two, is refused whatever else it holds.
bool hasHostAsRequired(const HttpRequest& request) noexcept {
    const auto count = countFields(request, "Host");
    return count == 1 || (count == 0 && !request.isHttp11);
}

bool expectsOtherThanContinue(const HttpRequest& request) noexcept {
    return std::any_of(request.fields.begin(), request.fields.end(), [](const HttpField& field) {
        return equalTokens(field.name, "Expect") && !equalTokens(field.value, "100-continue");
    });
}

bool isForPage(const HttpRequest& request) noexcept {
    return request.method == "GET" || request.method == "HEAD";
}

}  // namespace

int refusalOf(const HttpRequest& request, const HttpRules& rules) noexcept {
    if (!hasHostAsRequired(request) || countFields(request, "Authorization") > 1) return 400;
    if (request.method == "M-POST") return 501;
    if (isForPage(request) && rules.servesPages) return request.hasBody() ? 400 : 0;
    if (request.method != "POST") return 405;
    if (request.isHttp11 && expectsOtherThanContinue(request)) return 417;
    if (!request.isChunked && !request.contentLength) return 411;
    return 0;
}

bool wantsContinue(const HttpRequest& request) noexcept {
    return request.isHttp11 && request.hasBody() && request.header("Expect").has_value();
}

void refuse(HttpReply& reply, int status, const HttpRules& rules, std::string_view about) {
    if (status == 405) {
        reply.refuse(status, {{"Allow", rules.servesPages ? "GET, HEAD, POST" : "POST"}}, about);
    } else if (status == 401) {
        reply.refuse(status, {{"WWW-Authenticate", "Basic realm=\"cimhost\", charset=\"UTF-8\""}});
    } else if (status == 503) {
        reply.refuse(status, {{"Retry-After", "1"}});
    } else {
        reply.refuse(status);
    }
}

}  // namespace cimhost
