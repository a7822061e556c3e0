#pragma once

#include "cimhost/http/HttpHandler.h"
#include "cimhost/http/HttpUpstream.h"
#include "cimhost/server/events/EventFeed.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>

namespace cimhost {

/// Passes requests of CIM-XML on to another WBEM server and its answers back, as they come, so that
/// a page that may ask this server alone is a client of that one. Nothing else of a request goes
/// on than CIM-XML needs, and of an answer than its client needs. A server that gives no answer is
/// 502, or 504 when it takes too long, with a sentence that says why. Tells a feed that somebody
/// looks at of each request. Safe from several threads.
class ConsoleProxy final : public HttpHandler {
public:
    struct Settings {
        std::string target;  ///< as its user calls it, for words
        std::string path;    ///< that is asked for there; empty: the client's
        std::chrono::milliseconds silence{120'000};  ///< of the target, at most
    };

    /// Indications that come are handed to `exports`; without it they are refused. All outlive
    /// this.
    ConsoleProxy(HttpUpstream& upstream, Settings settings, EventFeed& feed,
                 HttpHandler* exports = nullptr)
        : _upstream(upstream), _settings(std::move(settings)), _feed(feed), _exports(exports) {}

    void handle(const HttpRequest& request, HttpReply& reply) override;
    std::string_view about() const noexcept override;

private:
    void _tellEnd(const HttpRequest& request, HttpReply& reply);
    void _pass(const HttpRequest& request, HttpReply& reply);
    void _refuse(HttpReply& reply, int status, const std::string& reason) const;

    HttpUpstream& _upstream;
    Settings _settings;
    EventFeed& _feed;
    HttpHandler* _exports;
    std::atomic<std::uint64_t> _requests = 0;
};

}  // namespace cimhost
