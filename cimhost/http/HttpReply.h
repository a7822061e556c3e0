#pragma once

#include "cimhost/http/ByteBudget.h"
#include "cimhost/http/HttpPresence.h"
#include "cimhost/http/Spool.h"
#include "cimhost/http/Stream.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace cimhost {

/// One header line that we send. Control characters in a value go out as blanks.
struct HttpHeader {
    std::string_view name;
    std::string_view value;
};

struct AccessRecord;

/// What a handler tells the access log about a request. Any text; escaped there.
struct RequestNotes {
    std::string operation;
    std::string object;
    std::string outcome;
    /// Called once the reply has ended, or is lost, with what the log says of it. Throws nothing.
    std::function<void(const AccessRecord&)> atEnd{};
};

/// The reply to one request, on its way to the client.
///
/// Up to 64 KiB of body are held back: a reply that ends within them leaves in one piece with its
/// length. A longer one is streamed: in chunks, or to an HTTP/1.0 client up to the end of the
/// connection. Writing never waits for the client: what it does not take at once goes to a spool,
/// which finish() sends at the client's pace. Until the first byte has left, a reply can be started
/// anew. The answer to HEAD is made as that to GET is, and its body stays here. Used by one thread;
/// what a send throws is a StreamError.
///
/// A reply may stay open for hours: keepOpen() first of all, then write() and flush() for each
/// piece, and isEnding() a few times a second in between.
class HttpReply {
public:
    struct Manner {
        bool isHttp11 = true;
        bool keepAlive = true;
        std::chrono::milliseconds sendTime{30'000};  ///< for each buffer
        HttpPresence* presence = nullptr;            ///< told of waits, asked for hurry
        bool isForHead = false;                      ///< the body is counted, and does not leave
        ByteBudget* openReplies = nullptr;           ///< one for each that is kept open
    };

    /// The stream and the store outlive the reply.
    HttpReply(Stream& stream, SpoolStore& store, Manner manner);
    HttpReply(const HttpReply&) = delete;
    HttpReply& operator=(const HttpReply&) = delete;

    /// Another status than 200; with 204 and 304 there is no body. No effect after commit.
    void setStatus(int status) noexcept { _status = status; }
    /// A header line of the reply, with no effect after commit.
    void addHeader(HttpHeader header);
    /// The names of trailers that a chunked reply may end with, as the Trailer header has them.
    void announceTrailers(std::string_view names) { _announced = names; }

    /// Appends to the body. Throws SpoolError when the client is too slow for it,
    /// and from then on always; the reply can still be started anew, or end with trailers.
    void write(std::string_view text);

    /// Sends what is held back, at the client's pace; one that needs longer than the send time for
    /// a buffer is given up. In the first call the head leaves, even without a body.
    void flush();
    /// False when too many replies are kept open already: then this one should be refused with 503.
    bool keepOpen();
    /// True when a reply that is kept open should be finished: the server ends, needs the
    /// connection, or the client will ask for nothing more.
    bool isEnding() const;

    /// Drops status, headers and body; false when some of them have left already.
    bool restart();

    /// Answers with this status instead, and with words for a person as plain text, or an empty
    /// body. Only while nothing has left.
    void refuse(int status, std::initializer_list<HttpHeader> headers = {},
                std::string_view words = {});

    /// A trailer line, sent when the reply is chunked. May be set until the reply is finished.
    void setTrailer(HttpHeader trailer);

    /// Sends what is left, and waits for the client. Nothing may be written afterwards.
    void finish();

    /// True when the connection can carry another request after this reply.
    bool keepsAlive() const noexcept { return _manner.keepAlive; }
    /// From now on the reply says that the connection will be closed.
    void closeAfterwards() noexcept { _manner.keepAlive = false; }

    int status() const noexcept { return _status; }
    std::uint64_t sentBytes() const noexcept { return _sentBytes; }
    RequestNotes& notes() noexcept { return _notes; }

    static constexpr std::size_t bufferBytes = 64 * 1024;

private:
    void _beginHead(int status);
    void _appendLine(std::string& lines, HttpHeader header);
    void _beginStream();
    void _writeChunk(std::string_view more);
    void _endStream();
    void _checkHurry() const;
    bool _hasBody() const noexcept;
    bool _isChunked() const noexcept;
    void _pass(std::initializer_list<std::string_view> pieces);
    void _passSpooled();
    void _sendSpooled();
    void _send(std::initializer_list<std::string_view> pieces);
    void _send(std::initializer_list<std::string_view> pieces, Clock::time_point deadline);

    Stream& _stream;
    SpoolStore& _store;
    Manner _manner;
    Spool _spool;
    std::string
        _unspooled;  ///< the rest of a chunk that the client took in part, and no room for it
    std::string _head;
    std::string _headers;
    std::string _body;
    std::string _trailers;
    std::string_view _announced;
    RequestNotes _notes;
    std::optional<ByteBudget::Share> _openReply;
    int _status = 200;
    std::uint64_t _sentBytes = 0;
    bool _isStreamed = false;
    bool _isCut = false;  ///< what was written last found no room
    bool _finished = false;
};

/// The standard's words for a status that this server sends.
std::string_view reasonPhrase(int status) noexcept;

}  // namespace cimhost
