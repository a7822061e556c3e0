#pragma once

#include "cimhost/http/HttpReply.h"
#include "cimhost/http/HttpRequest.h"

#include <optional>
#include <string>
#include <string_view>

namespace cimhost {

/// Answers requests that HTTP itself found nothing wrong with. Called by several threads at once.
class HttpHandler {
public:
    virtual ~HttpHandler() = default;

    /// Fills the reply; the caller finishes it. A StreamError of the reply may pass through;
    /// another exception is answered with 500, or by a broken connection when the reply is on its
    /// way. A reply that is kept open is finished soon after it says that it is ending.
    virtual void handle(const HttpRequest& request, HttpReply& reply) = 0;

    /// A line for people who come with a browser: what is served here, and where one reads on.
    virtual std::string_view about() const noexcept { return {}; }
};

/// Knows which users may come in. Called by several threads at once.
class Authenticator {
public:
    virtual ~Authenticator() = default;

    /// The user whom an Authorization header of the client at this address:port proves, or empty.
    /// Good as long as the authenticator. Nothing when it cannot be judged now.
    virtual std::optional<std::string_view> authenticate(std::string_view authorization,
                                                         const std::string& peer) = 0;
};

}  // namespace cimhost
