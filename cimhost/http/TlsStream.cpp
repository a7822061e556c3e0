#include "cimhost/http/TlsStream.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <array>
#include <new>
#include <system_error>

namespace cimhost {
namespace {

constexpr std::size_t transportBytes = 16 * 1024 + 512;  // one TLS record

/// OpenSSL's reason for the last failure on this thread, and none is left behind.
std::string takeReason() {
    const unsigned long code = ERR_get_error();
    ERR_clear_error();
    if (ERR_SYSTEM_ERROR(code)) return std::generic_category().message(ERR_GET_REASON(code));
    const char* reason = code == 0 ? nullptr : ERR_reason_error_string(code);
    return !reason ? "unknown reason" : reason;
}

[[noreturn]] void refuse(const std::string& what) {
    throw std::runtime_error(what + ": " + takeReason());
}

int refusePassphrase(char*, int, int, void*) { return -1; }

}  // namespace

void TlsContext::Deleter::operator()(ssl_ctx_st* handle) const noexcept { SSL_CTX_free(handle); }

TlsContext::TlsContext(const std::string& certificateFile, const std::string& keyFile)
    : _handle(SSL_CTX_new(TLS_server_method())) {
    SSL_CTX* handle = _handle.get();
    if (!handle) throw std::bad_alloc();
    SSL_CTX_set_min_proto_version(handle, TLS1_2_VERSION);
    SSL_CTX_set_options(
        handle, SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION | SSL_OP_CIPHER_SERVER_PREFERENCE);
    SSL_CTX_set_mode(handle, SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_default_passwd_cb(handle, refusePassphrase);
    ERR_clear_error();
    if (SSL_CTX_use_certificate_chain_file(handle, certificateFile.c_str()) != 1) {
        refuse("cannot use the TLS certificate " + certificateFile);
    }
    if (SSL_CTX_use_PrivateKey_file(handle, keyFile.c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(handle) != 1) {
        refuse("cannot use the TLS key " + keyFile);
    }
}

bool TlsContext::isNamed(const std::string& host) const noexcept {
    X509* const certificate = SSL_CTX_get0_certificate(_handle.get());
    return X509_check_host(certificate, host.data(), host.size(), 0, nullptr) == 1;
}

void TlsStream::Deleter::operator()(ssl_st* handle) const noexcept { SSL_free(handle); }

TlsStream::TlsStream(Stream& transport, const TlsContext& context)
    : _transport(transport), _handle(SSL_new(context.handle())) {
    // Memory in between, so that deadlines and broken pipes stay the transport's business.
    BIO* incoming = BIO_new(BIO_s_mem());
    BIO* outgoing = BIO_new(BIO_s_mem());
    if (!_handle || !incoming || !outgoing) {
        BIO_free(incoming);
        BIO_free(outgoing);
        throw std::bad_alloc();
    }
    BIO_set_mem_eof_return(incoming, -1);
    SSL_set_bio(_handle.get(), incoming, outgoing);
    SSL_set_accept_state(_handle.get());
}

void TlsStream::establish(Clock::time_point deadline) {
    while (!SSL_is_init_finished(_handle.get())) {
        ERR_clear_error();
        const int result = SSL_do_handshake(_handle.get());
        if (!_advance(result, deadline)) return;
        if (_ended) throw StreamError(StreamError::Kind::lost, "TLS: no handshake");
    }
}

std::size_t TlsStream::receive(std::span<char> buffer, Clock::time_point deadline) {
    while (!_ended) {
        std::size_t count = 0;
        ERR_clear_error();
        const int result = SSL_read_ex(_handle.get(), buffer.data(), buffer.size(), &count);
        if (!_advance(result, deadline)) return count;
    }
    return 0;
}

/// Does what an OpenSSL call that gave `result` waits for; false when it waits for nothing.
bool TlsStream::_advance(int result, Clock::time_point deadline) {
    const int reason = SSL_get_error(_handle.get(), result);
    const std::string text = reason == SSL_ERROR_SSL ? takeReason() : std::string{};
    _flush(deadline);  // handshake messages, or the alert that says what was wrong
    if (reason == SSL_ERROR_NONE) return false;
    if (reason == SSL_ERROR_WANT_READ) {
        _fetch(deadline);
    } else if (reason == SSL_ERROR_ZERO_RETURN) {
        _ended = true;
    } else {
        throw StreamError(StreamError::Kind::lost, "TLS: " + text);
    }
    return true;
}

void TlsStream::_fetch(Clock::time_point deadline) {
    std::array<char, transportBytes> bytes;
    const std::size_t count = _transport.receive(bytes, deadline);
    if (count == 0) {
        _ended = true;
    } else if (BIO_write(SSL_get_rbio(_handle.get()), bytes.data(), static_cast<int>(count)) <= 0) {
        throw std::bad_alloc();
    }
}

/// What has not left yet.
std::string_view TlsStream::_encrypted() const {
    char* data = nullptr;
    const long size = BIO_get_mem_data(SSL_get_wbio(_handle.get()), &data);
    if (size <= 0) return {};
    return std::string_view(data, static_cast<std::size_t>(size)).substr(_flushed);
}

void TlsStream::_flush(Clock::time_point deadline) {
    const std::string_view piece = _encrypted();
    if (piece.empty()) return;
    _transport.send({&piece, 1}, deadline);
    BIO_reset(SSL_get_wbio(_handle.get()));
    _flushed = 0;
}

/// True when all that is encrypted has left.
bool TlsStream::_tryFlush() {
    const std::string_view piece = _encrypted();
    const std::size_t count = _transport.trySend({&piece, 1});
    _flushed += count;
    if (count < piece.size()) return false;
    BIO_reset(SSL_get_wbio(_handle.get()));
    _flushed = 0;
    return true;
}

void TlsStream::send(std::span<const std::string_view> pieces, Clock::time_point deadline) {
    _encrypt(pieces);
    _flush(deadline);
}

/// All of the pieces or none: records that do not leave at once are kept encrypted, and as long as
/// there are any the peer takes no more.
std::size_t TlsStream::trySend(std::span<const std::string_view> pieces) {
    if (!_tryFlush()) return 0;
    _encrypt(pieces);
    _tryFlush();
    return _joined.size();
}

void TlsStream::_encrypt(std::span<const std::string_view> pieces) {
    _joined.clear();
    for (const std::string_view piece : pieces) _joined.append(piece);
    if (_joined.empty()) return;
    std::size_t written = 0;
    ERR_clear_error();
    if (SSL_write_ex(_handle.get(), _joined.data(), _joined.size(), &written) != 1) {
        throw StreamError(StreamError::Kind::lost, "TLS: " + takeReason());
    }
}

void TlsStream::endSending() noexcept try {
    ERR_clear_error();
    SSL_shutdown(_handle.get());
    ERR_clear_error();
    _flush(Clock::now() + std::chrono::milliseconds(100));
    _transport.endSending();
} catch (const StreamError&) {
    // The peer is gone already.
}

}  // namespace cimhost
