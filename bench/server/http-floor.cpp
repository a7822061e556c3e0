// The least that a server of HTTP can do: reads requests and answers each with the same stored
// bytes.
//   http_floor REPLY-FILE
// Prints its port and runs until it is ended.
#include "bench/server/MessageReader.h"
#include "bench/server/Socket.h"

#include <exception>
#include <iostream>
#include <string>
#include <thread>

namespace {

void serve(Socket connection, const std::string& reply) noexcept try {
    MessageReader reader(connection);
    while (reader.read() != 0) connection.write(reply);
} catch (const std::exception& failure) {
    std::cerr << "http_floor: " << failure.what() << '\n';
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::cerr << "usage: http_floor REPLY-FILE\n";
        return 2;
    }
    const std::string reply = readFile(argv[1]);
    const Socket listener = Socket::listen();
    std::cout << listener.port() << std::endl;
    for (;;) {
        std::thread([connection = listener.accept(), &reply]() mutable {
            serve(std::move(connection), reply);
        }).detach();
    }
} catch (const std::exception& failure) {
    std::cerr << "http_floor: " << failure.what() << '\n';
    return 1;
}
