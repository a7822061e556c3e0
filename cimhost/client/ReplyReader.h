#pragma once

#include "cimhost/cimxml/XmlBuilder.h"
#include "cimhost/cimxml/XmlDocument.h"
#include "cimhost/cimxml/XmlParser.h"
#include "cimhost/repository/CimError.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace cimhost {

/// Reads the reply to one operation as it comes, a result at a time, so that a reply of any length
/// takes the memory of its largest result. Used by one thread.
class ReplyReader final : private XmlEvents {
public:
    /// Takes each element of IRETURNVALUE, and RETURNVALUE and each PARAMVALUE themselves. The
    /// element is good during the call; an exception ends the reading.
    using Taker = std::function<void(const Element&)>;

    /// The reply is to the operation or method with this name.
    ReplyReader(std::string_view operation, Taker take);

    /// Throws what the taker throws; CimError failed for what is no reply to the operation.
    void read(std::string_view piece);

    /// The end of the reply. Throws the error that it holds, and as read().
    void finish();

private:
    void startElement(std::string_view name, const char* const* attributes) override;
    void endElement() override;
    void characters(std::string_view text) override;
    void declaration(std::string_view version, std::string_view encoding) override;
    void documentType() override;

    void _read(std::string_view piece, bool isLast);
    void _openEnvelope(std::string_view name, const char* const* attributes);
    void _openError(const char* const* attributes);

    /// One result under construction.
    struct Result {
        Result();

        XmlDocument document;
        XmlBuilder builder;
        std::size_t depth = 0;
    };

    std::string _operation;
    Taker _take;
    XmlPieces _pieces;
    std::size_t _depth = 0;  ///< of the envelope's elements that are open
    std::size_t _inError = 0;
    bool _isIntrinsic = false;
    bool _hasResponse = false;
    std::optional<Result> _result;
    std::optional<CimError> _error;
};

}  // namespace cimhost
