#include "tests/cimhost/http/TestServer.h"

#include <filesystem>
#include <thread>

namespace cimhost {

std::string LongReply::text() {
    std::string whole;
    for (char letter = 'a'; whole.size() < bytes;
         letter = static_cast<char>(letter == 'z' ? 'a' : letter + 1)) {
        whole.append(99, letter);
    }
    return whole;
}

void LongReply::operator()(const HttpRequest&, HttpReply& reply) {
    const std::string whole = text();
    for (std::size_t at = 0; at < whole.size(); at += 10'000) {
        reply.write(std::string_view(whole).substr(at, 10'000));
    }
    ++written;
}

void OpenReply::operator()(const HttpRequest&, HttpReply& reply) {
    if (!reply.keepOpen()) return reply.refuse(503);
    reply.flush();
    ++begun;
    for (int said = 0; !reply.isEnding();) {
        for (; said < words; ++said) reply.write("word ");
        reply.flush();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ++ended;
}

bool TestServer::awaitConnections(std::size_t count) const {
    return await([this, count] { return server.connectionCount() == count; });
}

bool await(const std::function<bool()>& condition) {
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace cimhost
