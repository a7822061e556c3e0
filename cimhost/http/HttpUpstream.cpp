#include "cimhost/http/HttpUpstream.h"

#include "cimhost/http/Connecting.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace cimhost {
namespace {

std::string authorityOf(const HttpUpstream::Settings& settings) {
    const bool isAddress = settings.host.find(':') != std::string::npos;
    return (isAddress ? "[" + settings.host + "]" : settings.host) + ":" +
           std::to_string(settings.port);
}

}  // namespace

HttpUpstream::HttpUpstream(Settings settings)
    : _settings(std::move(settings)),
      _authority(authorityOf(_settings)),
      _resolver(_settings.host, _settings.port) {}

HttpAnswerHead HttpUpstream::post(const Request& request, HttpAnswerTaker& taker,
                                  const HttpPatience& patience) {
    std::vector<HttpAnswerHead::Field> headers{{"Host", _authority}};
    headers.insert(headers.end(), request.headers.begin(), request.headers.end());
    for (std::unique_ptr<HttpClient> client = _takeKept(request.proof);;) {
        const bool isKept = client != nullptr;
        if (!isKept) client = _connect();
        try {
            HttpAnswerHead answer =
                client->post(request.target, headers, request.body, taker, patience);
            _keep(std::move(client), request.proof);
            return answer;
        } catch (const StreamError& error) {
            const bool wasClosed =
                isKept && error.kind() == StreamError::Kind::lost && !client->hasAnswered();
            if (!wasClosed || !request.mayBeRepeated) throw;
            client.reset();
        }
    }
}

std::unique_ptr<HttpClient> HttpUpstream::_connect() {
    const Clock::time_point deadline = Clock::now() + _settings.connectTime;
    const std::vector<SocketAddress> addresses = _resolve(deadline);
    auto left = static_cast<int>(addresses.size());
    int error = 0;
    for (const SocketAddress& address : addresses) {
        const Clock::time_point now = Clock::now();
        Descriptor socket = makeSocket(address);
        // One that does not answer leaves the others their share of the time.
        error = connectSocket(socket.get(), address, now + (deadline - now) / left--);
        if (error != 0) continue;
        if (!_settings.trust) return std::make_unique<HttpClient>(std::move(socket));
        return std::make_unique<HttpClient>(std::move(socket), *_settings.trust, _settings.host);
    }
    throw StreamError(StreamError::Kind::lost, "cannot connect to " + _authority + ": " +
                                                   std::generic_category().message(error));
}

std::vector<SocketAddress> HttpUpstream::_resolve(Clock::time_point deadline) {
    {
        std::unique_lock lock(_mutex);
        if (!_hasLookedUp.wait_until(lock, deadline, [this] { return !_looksUp; })) {
            throw StreamError(StreamError::Kind::timeout,
                              "looking up host " + _settings.host + " took too long");
        }
        _looksUp = true;
    }
    const struct Turn {
        HttpUpstream& upstream;
        ~Turn() {
            const std::lock_guard lock(upstream._mutex);
            upstream._looksUp = false;
            upstream._hasLookedUp.notify_one();
        }
    } turn{*this};
    return _resolver.resolve(deadline);
}

std::unique_ptr<HttpClient> HttpUpstream::_takeKept(std::string_view proof) {
    const std::lock_guard lock(_mutex);
    std::erase_if(_kept, [](const Kept& each) { return !each.client->isReusable(); });
    const auto found = std::find_if(_kept.rbegin(), _kept.rend(),
                                    [proof](const Kept& each) { return each.proof == proof; });
    if (found == _kept.rend()) return nullptr;
    auto client = std::move(found->client);
    _kept.erase(std::next(found).base());
    return client;
}

void HttpUpstream::_keep(std::unique_ptr<HttpClient> client, std::string_view proof) {
    if (!client->isReusable()) return;
    const std::lock_guard lock(_mutex);
    if (_kept.size() == _keptAtMost) _kept.erase(_kept.begin());
    _kept.push_back({std::move(client), std::string(proof)});
}

}  // namespace cimhost
