#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/http/HttpHandler.h"

#include <atomic>
#include <cstdint>

namespace cimhost {

/// Where HTTP and CIM-XML meet: hands a request from the one to the other, and the reply back.
/// Safe from several threads.
class CimXmlAdapter final : public HttpHandler {
public:
    /// The handler outlives the adapter.
    explicit CimXmlAdapter(const CimXmlHandler& handler) noexcept : _handler(handler) {}

    void handle(const HttpRequest& request, HttpReply& reply) override;
    std::string_view about() const noexcept override;

private:
    const CimXmlHandler& _handler;
    std::atomic<std::uint64_t> _requests = 0;
};

/// A CIM-XML reply over an HTTP one, with the headers and trailers that DSP0200 asks for.
class CimXmlHttpReply final : public CimXmlReply {
public:
    enum class Kind {
        operation,  ///< of a server
        exported,   ///< of a listener
    };

    explicit CimXmlHttpReply(HttpReply& reply, Kind kind = Kind::operation);

    void refuse(int status, std::string_view cimError) override;
    void write(std::string_view text) override;
    bool restart() override;
    void noteFailure(int code) override;
    void fail(int code, std::string_view description) override;

private:
    void _addHeaders();

    HttpReply& _reply;
    Kind _kind;
};

/// What a person reads who comes to a server of this kind with a browser.
std::string_view aboutCimhost(CimXmlHttpReply::Kind kind) noexcept;

}  // namespace cimhost
