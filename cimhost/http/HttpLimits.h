#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace cimhost {

/// What a client may ask of the HTTP server; the request that goes beyond is answered with the
/// status named here. Exactly the limit is still served.
struct HttpLimits {
    std::size_t lineBytes = 8 * 1024;   ///< one line without its CRLF: 414, 431,
    std::size_t headBytes = 64 * 1024;  ///< request line and header lines with all CRLFs: 431
    std::size_t fieldCount = 100;       ///< header lines, and trailer lines: 431
    std::uint64_t bodyBytes = 10 * 1024 * 1024;  ///< announced or arrived: 413
    /// The size line of a chunk with its extensions, or the last chunk with all trailers: 400.
    std::size_t chunkLineBytes = 8 * 1024;
    std::size_t framingBytes = 1024 * 1024;  ///< chunk sizes and extensions of one body: 413
    std::size_t connections = 128;           ///< served at once: 503

    /// Replies that are kept open, as a stream of events is; half of the connections at most: 503.
    std::size_t openReplies = 16;

    /// What has come of bodies and is not answered yet, of all connections together; the first
    /// 64 KiB of each are not counted. At least one body of the greatest length: 503.
    std::uint64_t bodyMemoryBytes = 64 * 1024 * 1024;

    /// What waits for clients that do not read their replies, of all connections together: in
    /// memory, and beyond that in temporary files. A reply that finds no room ends with an error.
    std::uint64_t spoolMemoryBytes = 32 * 1024 * 1024;
    std::uint64_t spoolDiskBytes = std::uint64_t{4} * 1024 * 1024 * 1024;
    std::string spoolFolder;  ///< empty: the one that TMPDIR names, or else /tmp

    /// A connection with no request on it is closed in silence after this time.
    std::chrono::milliseconds idleTime{30'000};
    /// A request must be there in full this long after its first byte, or it is answered 408. Each
    /// `bodyRate` bytes of the body that arrived add a second, so that no trickle can hold on.
    std::chrono::milliseconds requestTime{10'000};
    std::uint64_t bodyRate = 256 * 1024;
    /// A client that takes longer than this for one buffer of the reply is given up.
    std::chrono::milliseconds replyTime{30'000};
    /// How long a refused client may go on sending before the connection is closed under it.
    std::chrono::milliseconds lingerTime{1'000};
    /// When every connection is taken, the one that has waited longest for its client, and at least
    /// this long, makes room for a new one.
    std::chrono::milliseconds evictionTime{1'000};
};

}  // namespace cimhost
