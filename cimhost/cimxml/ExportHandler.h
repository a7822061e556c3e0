#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/repository/Instance.h"

#include <functional>

namespace cimhost {

/// The listener's side of export messages: reads them, hands each indication on and answers
/// (DSP0200, 6.3). It knows no classes: properties have the types that the message says.
/// Safe from several threads, as far as the taker is.
class ExportHandler {
public:
    /// Takes an indication; the class is in its path. What it throws is answered as an error.
    using Taker = std::function<void(const Instance&)>;

    explicit ExportHandler(Taker taker) : _take(std::move(taker)) {}

    /// Answers in full, whatever the request holds: no exception leaves but what the reply throws.
    void handle(const CimXmlRequest& request, CimXmlReply& reply) const;

private:
    Taker _take;
};

}  // namespace cimhost
