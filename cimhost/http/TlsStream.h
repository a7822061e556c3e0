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
    struct Deleter {
        void operator()(ssl_ctx_st* handle) const noexcept;
    };
    std::unique_ptr<ssl_ctx_st, Deleter> _handle;
};

/// TLS 1.2 or later over another stream, the server's side.
class TlsStream final : public Stream {
public:
    TlsStream(Stream& transport, const TlsContext& context);

    void establish(Clock::time_point deadline) override;
    std::size_t receive(std::span<char> buffer, Clock::time_point deadline) override;
    void send(std::span<const std::string_view> pieces, Clock::time_point deadline) override;
    std::size_t trySend(std::span<const std::string_view> pieces) override;
    bool hasPeerEnded() const noexcept override { return _ended || _transport.hasPeerEnded(); }
    void endSending() noexcept override;

private:
    struct Deleter {
        void operator()(ssl_st* handle) const noexcept;
    };

    bool _advance(int result, Clock::time_point deadline);
    void _fetch(Clock::time_point deadline);
    void _encrypt(std::span<const std::string_view> pieces);
    std::string_view _encrypted() const;
    void _flush(Clock::time_point deadline);
    bool _tryFlush();

    Stream& _transport;
    std::unique_ptr<ssl_st, Deleter> _handle;
    std::string _joined;
    std::size_t _flushed = 0;  ///< of what is encrypted
    bool _ended = false;
};

}  // namespace cimhost
