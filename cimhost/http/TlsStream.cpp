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

/// What is no TLS at all looks like this to OpenSSL.
bool isNoTls(unsigned long code) noexcept {
    const int reason = ERR_GET_REASON(code);
    return ERR_GET_LIB(code) == ERR_LIB_SSL &&
           (reason == SSL_R_WRONG_VERSION_NUMBER || reason == SSL_R_PACKET_LENGTH_TOO_LONG ||
            reason == SSL_R_HTTP_REQUEST);
}

/// OpenSSL's reason for the last failure on this thread, and none is left behind.
std::string takeReason() {
    const unsigned long code = ERR_get_error();
    ERR_clear_error();
    if (ERR_SYSTEM_ERROR(code)) return std::generic_category().message(ERR_GET_REASON(code));
    if (isNoTls(code)) return "the peer does not speak TLS";
    const char* reason = code == 0 ? nullptr : ERR_reason_error_string(code);
    return !reason ? "unknown reason" : reason;
}

[[noreturn]] void refuse(const std::string& what) {
    throw std::runtime_error(what + ": " + takeReason());
}

int refusePassphrase(char*, int, int, void*) { return -1; }

/// What is wrong with a certificate, for a person.
std::string describeVerdict(long verdict) {
    switch (verdict) {
        case X509_V_ERR_CERT_HAS_EXPIRED: return "its certificate has expired";
        case X509_V_ERR_CERT_NOT_YET_VALID: return "its certificate is not valid yet";
        case X509_V_ERR_HOSTNAME_MISMATCH:
        case X509_V_ERR_IP_ADDRESS_MISMATCH: return "its certificate is for another name";
        case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
            return "its certificate is signed by itself alone";
        case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
        case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
        case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
        case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
            return "its certificate is signed by an authority that is not known here";
        default: return std::string("its certificate: ") + X509_verify_cert_error_string(verdict);
    }
}

void prepare(SSL_CTX* handle) {
    if (!handle) throw std::bad_alloc();
    SSL_CTX_set_min_proto_version(handle, TLS1_2_VERSION);
    SSL_CTX_set_options(
        handle, SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION | SSL_OP_CIPHER_SERVER_PREFERENCE);
    SSL_CTX_set_mode(handle, SSL_MODE_RELEASE_BUFFERS);
}

/// The stream checks that the certificate is for this host, which is asked for by its name.
void expectHost(SSL* handle, const std::string& host) {
    X509_VERIFY_PARAM* const rules = SSL_get0_param(handle);
    if (X509_VERIFY_PARAM_set1_ip_asc(rules, host.c_str()) == 1) return;
    ERR_clear_error();
    X509_VERIFY_PARAM_set_hostflags(rules, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    if (X509_VERIFY_PARAM_set1_host(rules, host.c_str(), host.size()) != 1 ||
        SSL_set_tlsext_host_name(handle, host.c_str()) != 1) {
        refuse("no TLS with " + host);
    }
}

}  // namespace

TlsContext::TlsContext(const std::string& certificateFile, const std::string& keyFile)
    : _handle(SSL_CTX_new(TLS_server_method()), SSL_CTX_free) {
    SSL_CTX* handle = _handle.get();
    prepare(handle);
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

TlsTrust::TlsTrust(Blind) : _handle(SSL_CTX_new(TLS_client_method()), SSL_CTX_free) {
    prepare(_handle.get());
}

TlsTrust TlsTrust::blind() { return TlsTrust(Blind{}); }

TlsTrust::TlsTrust(const std::string& authorities) : TlsTrust(Blind{}) {
    SSL_CTX_set_verify(_handle.get(), SSL_VERIFY_PEER, nullptr);
    ERR_clear_error();
    if (SSL_CTX_set_default_verify_paths(_handle.get()) != 1) {
        refuse("cannot use the system's certificates");
    }
    if (!authorities.empty() && SSL_CTX_load_verify_file(_handle.get(), authorities.c_str()) != 1) {
        refuse("cannot use the certificates in " + authorities);
    }
}

TlsStream::TlsStream(Stream& transport, const TlsContext& context)
    : TlsStream(transport, context.handle()) {
    SSL_set_accept_state(_handle.get());
}

TlsStream::TlsStream(Stream& transport, const TlsTrust& trust, const std::string& host)
    : TlsStream(transport, trust.handle()) {
    expectHost(_handle.get(), host);
    SSL_set_connect_state(_handle.get());
}

TlsStream::TlsStream(Stream& transport, ssl_ctx_st* context)
    : _transport(transport), _handle(SSL_new(context), SSL_free) {
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
        _fail(text);
    }
    return true;
}

void TlsStream::_fail(const std::string& reason) const {
    const SSL* const handle = _handle.get();
    const long verdict = SSL_get_verify_result(handle);
    if (!SSL_is_server(handle) && SSL_get_verify_mode(handle) != SSL_VERIFY_NONE &&
        verdict != X509_V_OK) {
        throw TlsTrustError(describeVerdict(verdict));
    }
    throw StreamError(StreamError::Kind::lost, "TLS: " + reason);
}

bool TlsStream::hasPending() const noexcept {
    return SSL_has_pending(_handle.get()) == 1 || BIO_ctrl_pending(SSL_get_rbio(_handle.get())) > 0;
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
