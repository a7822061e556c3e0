#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/cimxml/XmlBuffer.h"

#include <exception>

namespace cimhost {

/// Passes XML on to a reply in pieces, so that an answer of any length takes one small buffer.
/// Not safe from several threads; the reply must outlive it.
class ReplyStream {
public:
    /// `keepsLines` as for the buffer.
    explicit ReplyStream(CimXmlReply& reply, bool keepsLines = false)
        : _reply(reply), _buffer(keepsLines) {}
    ReplyStream(const ReplyStream&) = delete;
    ReplyStream& operator=(const ReplyStream&) = delete;

    XmlBuffer& buffer() noexcept { return _buffer; }

    /// Between two elements: sends what has gathered if it is worth it.
    void checkpoint() {
        if (_buffer.size() >= threshold || _reply.isOverdue()) flush();
    }
    void flush();

    /// Takes back all text; false when some of it has left already.
    bool restart();

    /// What the reply threw, or null. A provider stands between our writing and our caller and may
    /// have turned the exception into something else.
    std::exception_ptr failure() const noexcept { return _failure; }

private:
    static constexpr std::size_t threshold = 16 * 1024;

    CimXmlReply& _reply;
    XmlBuffer _buffer;
    std::exception_ptr _failure;
};

}  // namespace cimhost
