#pragma once

#include "cimhost/http/Descriptor.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace cimhost {

/// A client that sends bytes as the test likes them, well-formed or not. Each wait ends after ten
/// seconds with a failed test rather than never.
class RawClient {
public:
    explicit RawClient(std::uint16_t port);

    /// False when the server has closed the connection under it.
    bool send(std::string_view bytes);
    /// Nothing more will be sent.
    void endSending();

    /// One reply, its body included, as it came.
    std::string readReply();
    /// What comes up to this text, the text included.
    std::string readUntil(std::string_view text);
    /// What comes until the server closes the connection.
    std::string readAll();
    /// True when the server closes the connection and sends nothing before.
    bool isClosedByServer() { return readAll().empty(); }

    /// Drops the connection so that the server sees it break.
    void reset();

private:
    bool _readMore();

    Descriptor _socket;
    std::string _received;
};

/// The status of a reply, or 0 for bytes that are none.
int statusOf(std::string_view reply);
/// The value of a header of a reply, or empty.
std::string headerOf(std::string_view reply, std::string_view name);
/// The body of a reply; chunks are put together.
std::string bodyOf(std::string_view reply);

/// A complete POST request.
std::string post(std::string_view body, std::string_view moreHeaders = {});

}  // namespace cimhost
