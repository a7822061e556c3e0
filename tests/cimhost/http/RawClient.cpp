#include "tests/cimhost/http/RawClient.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <charconv>

namespace cimhost {
namespace {

constexpr int patience = 10'000;  // milliseconds

/// Where the reply at the front of the bytes ends, or npos when it is not all there.
std::size_t endOfReply(std::string_view bytes) {
    const std::size_t headEnd = bytes.find("\r\n\r\n");
    if (headEnd == bytes.npos) return bytes.npos;
    const std::size_t bodyBegin = headEnd + 4;
    if (statusOf(bytes) == 100) return bodyBegin;
    if (headerOf(bytes, "Transfer-Encoding") == "chunked") {
        const std::size_t last = bytes.find("\r\n0\r\n", bodyBegin - 2);
        const std::size_t end = last == bytes.npos ? last : bytes.find("\r\n\r\n", last + 3);
        return end == bytes.npos ? end : end + 4;
    }
    std::size_t length = 0;
    const std::string text = headerOf(bytes, "Content-Length");
    std::from_chars(text.data(), text.data() + text.size(), length);
    return bytes.size() >= bodyBegin + length ? bodyBegin + length : bytes.npos;
}

}  // namespace

RawClient::RawClient(std::uint16_t port) : _socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(_socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

bool RawClient::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void RawClient::endSending() { shutdown(_socket.get(), SHUT_WR); }

bool RawClient::_readMore() {
    pollfd entry{_socket.get(), POLLIN, 0};
    if (poll(&entry, 1, patience) != 1) {
        ADD_FAILURE() << "the server says nothing; so far: " << _received.substr(0, 500);
        return false;
    }
    std::array<char, 65536> bytes;
    const ssize_t count = recv(_socket.get(), bytes.data(), bytes.size(), 0);
    if (count <= 0) return false;
    _received.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
}

std::string RawClient::readReply() {
    std::size_t end = 0;
    while ((end = endOfReply(_received)) == std::string::npos && _readMore()) {
    }
    std::string reply = _received.substr(0, end);
    _received.erase(0, end);
    return reply;
}

std::string RawClient::readUntil(std::string_view text) {
    while (_received.find(text) == std::string::npos && _readMore()) {
    }
    const std::size_t place = _received.find(text);
    const std::size_t end = place == std::string::npos ? _received.size() : place + text.size();
    std::string read = _received.substr(0, end);
    _received.erase(0, end);
    return read;
}

std::string RawClient::readAll() {
    while (_readMore()) {
    }
    return std::exchange(_received, {});
}

void RawClient::reset() {
    const linger atOnce{1, 0};
    setsockopt(_socket.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    _socket.reset();
}

int statusOf(std::string_view reply) {
    int status = 0;
    if (reply.starts_with("HTTP/1.1 ") && reply.size() > 12) {
        std::from_chars(reply.data() + 9, reply.data() + 12, status);
    }
    return status;
}

std::string headerOf(std::string_view reply, std::string_view name) {
    const std::string_view head = reply.substr(0, reply.find("\r\n\r\n") + 2);
    const std::string mark = "\r\n" + std::string(name) + ": ";
    const std::size_t begin = head.find(mark);
    if (begin == head.npos) return {};
    const std::string_view value = head.substr(begin + mark.size());
    return std::string(value.substr(0, value.find("\r\n")));
}

std::string bodyOf(std::string_view reply) {
    const std::size_t begin = reply.find("\r\n\r\n");
    if (begin == reply.npos) return {};
    std::string_view rest = reply.substr(begin + 4);
    if (headerOf(reply, "Transfer-Encoding") != "chunked") return std::string(rest);
    std::string body;
    for (;;) {
        std::size_t size = 0;
        const char* end = std::from_chars(rest.data(), rest.data() + rest.size(), size, 16).ptr;
        rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
        if (size == 0 || rest.size() < size + 4) return body;
        body.append(rest.substr(2, size));
        rest.remove_prefix(size + 4);
    }
}

std::string post(std::string_view body, std::string_view moreHeaders) {
    return "POST /cimom HTTP/1.1\r\nHost: here\r\n" + std::string(moreHeaders) +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

}  // namespace cimhost
