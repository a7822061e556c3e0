#pragma once

#include "cimhost/http/Stream.h"

#include <memory>
#include <string>

struct ssl_ctx_st;
struct ssl_st;

namespace cimhost {

/// The certificate and key that a server shows. Constant once made; shared by any number of
/// streams.
class TlsContext {
public:
    /// Throws std::runtime_error that names the file which cannot be used, and why. A key that is
    /// protected by a passphrase is one: nobody is there to be asked.
    TlsContext(const std::string& certificateFile, const std::string& keyFile);

    /// Whether the certificate is one for this host name.
    bool isNamed(const std::string& host) const noexcept;

    ssl_ctx_st* handle() const noexcept { return _handle.get(); }

private:
    std::unique_ptr<ssl_ctx_st, void (*)(ssl_ctx_st*)> _handle;
};

/// The server has not proven to be the one that was asked for.
class TlsTrustError : public StreamError {
public:
    explicit TlsTrustError(const std::string& message) : StreamError(Kind::lost, message) {}
};

/// Whom a client takes for the server that it asked for. Constant once made; shared by any number
/// of streams.
class TlsTrust {
public:
    /// Who has a certificate for the server's name or address from one of the system's authorities,
    /// or of those in a file where one is named. Throws std::runtime_error that names a file which
    /// cannot be used.
    explicit TlsTrust(const std::string& authorities = {});

    /// Anyone.
    static TlsTrust blind();

    ssl_ctx_st* handle() const noexcept { return _handle.get(); }

private:
    struct Blind {};
    explicit TlsTrust(Blind);

    std::unique_ptr<ssl_ctx_st, void (*)(ssl_ctx_st*)> _handle;
};

/// TLS 1.2 or later over another stream.
class TlsStream final : public Stream {
public:
    /// The server's side.
    TlsStream(Stream& transport, const TlsContext& context);
    /// The client's, towards the server with this name or address. What it does throws
    /// TlsTrustError where the server is not trusted.
    TlsStream(Stream& transport, const TlsTrust& trust, const std::string& host);

    void establish(Clock::time_point deadline) override;
    std::size_t receive(std::span<char> buffer, Clock::time_point deadline) override;
    void send(std::span<const std::string_view> pieces, Clock::time_point deadline) override;
    std::size_t trySend(std::span<const std::string_view> pieces) override;
    bool hasPeerEnded() const noexcept override { return _ended || _transport.hasPeerEnded(); }
    /// Something has come that nobody received yet.
    bool hasPending() const noexcept;
    void endSending() noexcept override;

private:
    TlsStream(Stream& transport, ssl_ctx_st* context);
    bool _advance(int result, Clock::time_point deadline);
    [[noreturn]] void _fail(const std::string& reason) const;
    void _fetch(Clock::time_point deadline);
    void _encrypt(std::span<const std::string_view> pieces);
    std::string_view _encrypted() const;
    void _flush(Clock::time_point deadline);
    bool _tryFlush();

    Stream& _transport;
    std::unique_ptr<ssl_st, void (*)(ssl_st*)> _handle;
    std::string _joined;
    std::size_t _flushed = 0;  ///< of what is encrypted
    bool _ended = false;
};

}  // namespace cimhost
