#pragma once

#include "cimhost/http/HttpClient.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// Where a client's requests go to, over as many connections as there are requests at once. Safe
/// from several threads.
class ClientTransport {
public:
    /// Makes a connected socket that does not block. Throws StreamError.
    using Connect = std::function<Descriptor()>;

    struct Settings {
        std::string host = "localhost";  ///< as the Host header has it
        HttpPatience patience;           ///< none: a minute of silence
    };

    ClientTransport(Connect connect, Settings settings);

    const std::string& host() const noexcept { return _settings.host; }

    /// Posts a message with these headers. Throws as HttpClient::post.
    HttpAnswerHead post(std::vector<HttpAnswerHead::Field> headers, std::string_view body,
                        const std::function<void(std::string_view)>& take);

private:
    std::unique_ptr<HttpClient> _borrow();
    void _return(std::unique_ptr<HttpClient> client);

    Connect _connect;
    Settings _settings;
    std::mutex _mutex;
    std::vector<std::unique_ptr<HttpClient>> _idle;  ///< the one used last at the end
};

}  // namespace cimhost
