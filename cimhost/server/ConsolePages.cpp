#include "cimhost/server/ConsolePages.h"

#include "cimhost/http/Gunzip.h"
#include "cimhost/http/HttpLists.h"

#include <algorithm>
#include <string>

namespace cimhost {
namespace {

constexpr HttpHeader protections[] = {
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
     "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
};

constexpr std::string_view notBuilt =
    "cimhost was built without its page. To have it, install nodejs and npm and build again.\n";
constexpr std::string_view notThere =
    "There is no such page. The console is at /, and CIM-XML is answered by POST.\n";
constexpr std::string_view tooManyViewers =
    "As many pages as can be listen to what happens here already; close one of them.\n";

void refuse(HttpReply& reply, int status, std::string_view words) {
    reply.setStatus(status);
    reply.addHeader({"Content-Type", "text/plain; charset=utf-8"});
    reply.write(words);
}

/// The file as the client takes it. Each form has a tag of its own: a strong one stands for bytes.
void sendFile(const ConsoleFile& file, const HttpRequest& request, HttpReply& reply) {
    const bool isPacked = takesCoding(request, "gzip");
    const std::string tag = '"' + std::string(file.tag) + (isPacked ? "-gzip\"" : "\"");
    reply.addHeader({"ETag", tag});
    reply.addHeader({"Cache-Control", "no-cache"});
    reply.addHeader({"Vary", "Accept-Encoding"});
    if (hasTag(request, tag)) return reply.setStatus(304);
    reply.addHeader({"Content-Type", file.type});
    if (isPacked) reply.addHeader({"Content-Encoding", "gzip"});
    reply.write(isPacked ? file.gzip : gunzip(file.gzip));
}

}  // namespace

void ConsolePages::handle(const HttpRequest& request, HttpReply& reply) {
    for (const HttpHeader& header : protections) reply.addHeader(header);
    const std::string_view path = request.path();
    if (path == "/events" && _events) return _handleEvents(request, reply);
    const auto file = std::ranges::find(_files, path, &ConsoleFile::path);
    if (file != _files.end()) return sendFile(*file, request, reply);
    refuse(reply, 404, path == "/" ? notBuilt : notThere);
}

void ConsolePages::_handleEvents(const HttpRequest& request, HttpReply& reply) const {
    if (request.method != "GET") {
        reply.addHeader({"Allow", "GET"});
        return refuse(reply, 405, "Events are told to those who GET them.\n");
    }
    if (reply.keepOpen()) return _events->handle(request, reply);
    reply.addHeader({"Retry-After", "5"});
    refuse(reply, 503, tooManyViewers);
}

}  // namespace cimhost
