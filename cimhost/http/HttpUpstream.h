#pragma once

#include "cimhost/http/HostResolver.h"
#include "cimhost/http/HttpClient.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// A server that requests of others are passed on to, over as many connections as there are
/// requests at once. Those that it leaves open are used again, for requests with the same proof of
/// who asks: a server may take a connection for one user's. Safe from several threads.
class HttpUpstream {
public:
    struct Settings {
        std::string host;  ///< name or address, an IPv6 one without brackets
        std::uint16_t port = 0;
        const TlsTrust* trust = nullptr;  ///< none: without TLS; outlives this
        std::chrono::milliseconds connectTime{10'000};
    };

    struct Request {
        std::string_view target;
        std::vector<HttpAnswerHead::Field> headers;
        std::string_view body;
        std::string_view proof;      ///< of who asks; among the headers
        bool mayBeRepeated = false;  ///< it does no harm twice
    };

    explicit HttpUpstream(Settings settings);

    /// Posts it, with the server's own Host. A kept connection that ends before anything of the
    /// answer has come is taken for one that the server had closed meanwhile: a request that may be
    /// repeated is made once more then, over a new one. Throws as HttpClient::post; StreamError for
    /// a server that is not found or cannot be connected to; TlsTrustError.
    HttpAnswerHead post(const Request& request, HttpAnswerTaker& taker,
                        const HttpPatience& patience);

private:
    struct Kept {
        std::unique_ptr<HttpClient> client;
        std::string proof;
    };

    std::unique_ptr<HttpClient> _connect();
    std::vector<SocketAddress> _resolve(Clock::time_point deadline);
    std::unique_ptr<HttpClient> _takeKept(std::string_view proof);
    void _keep(std::unique_ptr<HttpClient> client, std::string_view proof);

    static constexpr std::size_t _keptAtMost = 16;

    Settings _settings;
    std::string _authority;
    HostResolver _resolver;  ///< for the thread that looks up
    std::mutex _mutex;       ///< guards the next
    std::condition_variable _hasLookedUp;
    bool _looksUp = false;
    std::vector<Kept> _kept;  ///< the one used last at the end
};

}  // namespace cimhost
