#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace cimhost {

class CimOperations;
class Repository;
struct Message;

/// One HTTP request as the CIM-XML layer needs it. Views are good until handle() returns.
struct CimXmlRequest {
    /// The value of the header with this name (any case), or nullopt; trimmed, not percent-decoded.
    std::function<std::optional<std::string_view>(std::string_view name)> header;
    std::string_view body;
    std::string_view principal;  ///< authenticated user, or empty
    std::string_view host;       ///< host[:port] of this server for the paths in replies
    /// From one part of an object manager to another, which holds everything against the classes
    /// itself: types are those that the request says, and the reply keeps its lines.
    bool isForwarded = false;
};

/// Where the reply goes. The server holds bytes back in a buffer of 64 KiB and begins to send when
/// it overflows or the handler is done; from then on the reply is chunked. It never waits for the
/// client while the handler runs.
class CimXmlReply {
public:
    virtual ~CimXmlReply() = default;

    /// An HTTP-level answer: 400, 501 ... `cimError` is the CIMError header, or empty for what is
    /// no CIM request at all. Only while nothing has left.
    virtual void refuse(int status, std::string_view cimError) = 0;

    /// Appends body text to a 200 reply. Throws a CimError, from then on always, when the client
    /// reads so slowly that no more of the reply can be kept for it: restart() or fail() then says
    /// so. Throws something else when the client is gone.
    virtual void write(std::string_view text) = 0;

    /// Whether the other side has seen nothing for so long that what there is should be written,
    /// however little. Asked between two elements.
    virtual bool isOverdue() const noexcept { return false; }

    /// Drops what was written and starts the 200 reply anew; false when some of it has left
    /// already.
    virtual bool restart() = 0;

    /// For the records: what is asked. The message (Message.h) lives during the call.
    virtual void noteMessage(const Message&) {}

    /// For the records: the operation failed with this CIM status, however the reply then says so.
    virtual void noteFailure(int code) = 0;

    /// Once some of it has left: the operation failed in the middle. The reply ends with
    /// CIMStatusCode trailers.
    virtual void fail(int code, std::string_view description) = 0;
};

/// Answers CIM-XML requests (DSP0200, DSP0201) from the operations and the repository.
/// Safe from several threads; holds no state between requests.
class CimXmlHandler {
public:
    CimXmlHandler(CimOperations& operations, const Repository& repository);

    /// Answers in full, whatever the request holds: no exception leaves but what the reply throws.
    void handle(const CimXmlRequest& request, CimXmlReply& reply) const;

private:
    CimOperations& _operations;
    const Repository& _repository;
};

}  // namespace cimhost
