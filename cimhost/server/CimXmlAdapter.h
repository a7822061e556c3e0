#pragma once

#include "cimhost/cimxml/ExportHandler.h"
#include "cimhost/cimxml/Handler.h"
#include "cimhost/http/HttpHandler.h"
#include "cimhost/server/events/EventFeed.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace cimhost {

/// Where HTTP and CIM-XML meet: hands a request from the one to the other, and the reply back.
/// Tells a feed that somebody looks at of each that has ended. Safe from several threads.
class CimXmlAdapter final : public HttpHandler {
public:
    /// All outlive the adapter.
    explicit CimXmlAdapter(const CimXmlHandler& handler, EventFeed* feed = nullptr) noexcept
        : _handler(handler), _feed(feed) {}

    void handle(const HttpRequest& request, HttpReply& reply) override;
    std::string_view about() const noexcept override;

private:
    void _answer(const HttpRequest& request, HttpReply& reply, std::string* className) const;

    const CimXmlHandler& _handler;
    EventFeed* _feed;
    std::atomic<std::uint64_t> _requests = 0;
};

/// The same for the listener's side of CIM-XML.
class ExportAdapter final : public HttpHandler {
public:
    /// The handler outlives the adapter.
    explicit ExportAdapter(const ExportHandler& handler) noexcept : _handler(handler) {}

    void handle(const HttpRequest& request, HttpReply& reply) override;
    std::string_view about() const noexcept override;

private:
    const ExportHandler& _handler;
};

/// A CIM-XML reply over an HTTP one, with the headers and trailers that DSP0200 asks for.
class CimXmlHttpReply : public CimXmlReply {
public:
    enum class Kind {
        operation,  ///< of a server
        exported,   ///< of a listener
    };

    /// Where there is a class name, it becomes that of the class asked for.
    explicit CimXmlHttpReply(HttpReply& reply, Kind kind = Kind::operation,
                             std::string* className = nullptr);

    void refuse(int status, std::string_view cimError) override;
    void write(std::string_view text) override;
    bool restart() override;
    void noteMessage(const Message& message) override;
    void noteFailure(int code) override;
    void fail(int code, std::string_view description) override;

private:
    void _addHeaders();

    HttpReply& _reply;
    Kind _kind;
    std::string* _className;
};

/// What a person reads who comes to a server of this kind with a browser.
std::string_view aboutCimhost(CimXmlHttpReply::Kind kind) noexcept;

}  // namespace cimhost
