#pragma once

#include "cimhost/http/AccessLog.h"
#include "cimhost/http/HttpHandler.h"
#include "cimhost/http/HttpLimits.h"
#include "cimhost/http/HttpParser.h"
#include "cimhost/http/HttpPresence.h"
#include "cimhost/http/HttpRules.h"
#include "cimhost/http/Stream.h"

#include <algorithm>
#include <memory>
#include <string>

namespace cimhost {

/// What the connections of one server share. All of it outlives them.
struct HttpServices {
    HttpHandler& handler;
    const HttpLimits& limits;
    Authenticator* authenticator = nullptr;  ///< none: everybody may come in, as nobody
    AccessLog* accessLog = nullptr;
    HttpHandler* pages = nullptr;      ///< answers GET and HEAD; none: 405
    const HostNames* names = nullptr;  ///< other hosts are answered 421; none: any host is served
    bool usesTls = false;              ///< the server sets it
};

/// What the connections of one server have to share. Safe from several threads.
struct HttpBudgets {
    ByteBudget bodies;
    SpoolStore spool;
    ByteBudget openReplies;  ///< counts replies

    explicit HttpBudgets(const HttpLimits& limits)
        : bodies(ByteBudget::Kind::heap, std::max(limits.bodyMemoryBytes, limits.bodyBytes)),
          spool(limits.spoolMemoryBytes, limits.spoolDiskBytes, limits.spoolFolder),
          openReplies(
              ByteBudget::Kind::other,
              std::min(limits.openReplies, std::max<std::size_t>(limits.connections / 2, 1))) {}
};

struct HttpAddresses {
    std::string peer;
    std::string local;
};

/// Serves the requests of one connection, one after the other, pipelined ones too, until either
/// side has enough. Used by one thread.
class HttpConnection {
public:
    HttpConnection(Stream& stream, const HttpServices& services, HttpBudgets& budgets,
                   const HttpAddresses& addresses, HttpPresence& presence);

    void serve() noexcept;

    /// Answers with this status whatever the client may send.
    void refuse(int status) noexcept;

private:
    bool _serveRequest();
    bool _receiveRequest();
    bool _receiveMore();
    void _feedParser();
    bool _chargeBody();
    void _releaseBody();
    void _judgeHead();
    HttpRules _rules() const noexcept;
    void _endHere(int status);
    Clock::time_point _deadline() const;
    bool _answer();
    void _fill(HttpReply& reply);
    void _callHandler(HttpReply& reply);
    void _log(HttpReply& reply, Clock::time_point start);
    void _linger();

    static constexpr std::size_t _bufferBytes = 16 * 1024;

    Stream& _stream;
    const HttpServices& _services;
    const HttpLimits& _limits;
    HttpBudgets& _budgets;
    const HttpAddresses& _addresses;
    HttpPresence& _presence;
    ByteBudget::Share _bodyShare;  ///< before the body that it stands for
    HttpParser _parser;
    std::unique_ptr<char[]> _buffer;
    std::size_t _begin = 0;  ///< of what arrived and is not used yet
    std::size_t _end = 0;
    Clock::time_point _waitBegin;
    Clock::time_point _firstByte;
    std::uint64_t _bodyBytes = 0;
    int _refusal = 0;
    bool _closes = false;  ///< where the next request begins is not known
};

}  // namespace cimhost
