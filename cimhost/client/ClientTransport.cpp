#include "cimhost/client/ClientTransport.h"

#include <utility>

namespace cimhost {
namespace {

constexpr std::chrono::seconds usualPatience{60};

}  // namespace

ClientTransport::ClientTransport(Connect connect, Settings settings)
    : _connect(std::move(connect)), _settings(std::move(settings)) {
    if (_settings.patience) return;
    _settings.patience = [](auto silentSince) { return silentSince + usualPatience; };
}

HttpAnswerHead ClientTransport::post(std::vector<HttpAnswerHead::Field> headers,
                                     std::string_view body,
                                     const std::function<void(std::string_view)>& take) {
    headers.push_back({"Host", _settings.host});
    headers.push_back({"Content-Type", "application/xml; charset=\"utf-8\""});
    auto client = _borrow();
    HttpAnswerHead answer = client->post("/cimom", headers, body, take, _settings.patience);
    _return(std::move(client));
    return answer;
}

std::unique_ptr<HttpClient> ClientTransport::_borrow() {
    {
        const std::lock_guard lock(_mutex);
        while (!_idle.empty()) {
            auto client = std::move(_idle.back());
            _idle.pop_back();
            if (client->isReusable()) return client;
        }
    }
    return std::make_unique<HttpClient>(_connect());
}

void ClientTransport::_return(std::unique_ptr<HttpClient> client) {
    if (!client->isReusable()) return;
    const std::lock_guard lock(_mutex);
    _idle.push_back(std::move(client));
}

}  // namespace cimhost
