#include "cimhost/http/HttpRules.h"

#include <algorithm>

namespace cimhost {
namespace {

constexpr std::string_view foreignPage =
    "This request was made by a page of another site (see its Origin and Sec-Fetch-Site); such "
    "pages are not served.\n";
constexpr std::string_view unknownHost =
    "This server does not go by the name that the Host header or the target has; the option "
    "--host-name NAME adds one.\n";

auto countFields(const HttpRequest& request, std::string_view name) noexcept {
    return std::ranges::count_if(
        request.fields, [name](const HttpField& field) { return equalTokens(field.name, name); });
}

/// RFC 9112, 3.2: a request with no host, or two, is refused whatever else it holds.
bool hasHostAsRequired(const HttpRequest& request) noexcept {
    const auto count = countFields(request, "Host");
    return count == 1 || (count == 0 && !request.isHttp11);
}

bool expectsOtherThanContinue(const HttpRequest& request) noexcept {
    return std::ranges::any_of(request.fields, [](const HttpField& field) {
        return equalTokens(field.name, "Expect") && !equalTokens(field.value, "100-continue");
    });
}

/// The name in the target counts too, if there is one: some would take it for Host.
bool isKnownHost(const HttpRequest& request, const HostNames& names) {
    const auto host = request.header("Host");
    const auto authority = request.authority();
    return (!host || names.contain(*host)) && (!authority || names.contain(*authority));
}

bool isForPage(const HttpRequest& request) noexcept {
    return request.method == "GET" || request.method == "HEAD";
}

}  // namespace

bool isCrossSite(const HttpRequest& request, bool usesTls) noexcept {
    const std::string_view scheme = usesTls ? "https://" : "http://";
    const std::string_view host = request.header("Host").value_or(std::string_view{});
    const auto isForeign = [scheme, host](const HttpField& field) {
        if (equalTokens(field.name, "Origin")) {
            return !equalTokens(field.value.substr(0, scheme.size()), scheme) || host.empty() ||
                   !equalTokens(field.value.substr(scheme.size()), host);
        }
        return equalTokens(field.name, "Sec-Fetch-Site") &&
               !equalTokens(field.value, "same-origin") && !equalTokens(field.value, "none");
    };
    return std::ranges::any_of(request.fields, isForeign);
}

int refusalOf(const HttpRequest& request, const HttpRules& rules) {
    if (!hasHostAsRequired(request) || countFields(request, "Authorization") > 1) return 400;
    if (rules.names && !isKnownHost(request, *rules.names)) return 421;
    if (request.method == "M-POST") return 501;
    const bool isPage = isForPage(request) && rules.servesPages;
    if (!isPage && request.method != "POST") return 405;
    // Another site may have a link to the page, and nothing else.
    const bool isLink = isPage && request.path() == "/";
    if (!isLink && isCrossSite(request, rules.usesTls)) return 403;
    if (isPage) return request.hasBody() ? 400 : 0;
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
    } else if (status == 403) {
        reply.refuse(status, {}, foreignPage);
    } else if (status == 421) {
        reply.refuse(status, {}, unknownHost);
    } else if (status == 503) {
        reply.refuse(status, {{"Retry-After", "1"}});
    } else {
        reply.refuse(status);
    }
}

}  // namespace cimhost
