#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/objects/Objects.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// The request and what providers added. The entries that CMPI names come from the request, those
/// with an empty text left out, save role and languages, which may be empty. What providers add
/// under such a name goes back into the request, so that up-calls heed it.
struct ContextObject : ObjectBase<CMPIContext, ObjectKind::context> {
    static const CMPIContextFT table;

    /// Raw bytes (CMPI_ptr) stay the provider's own; only where they lie is kept.
    struct Entry {
        std::string name;
        Value value;
        std::optional<CMPIValuePtr> bytes;
    };

    explicit ContextObject(RequestContext context) : request(std::move(context)) {}

    RequestContext request;
    std::string role;
    std::vector<Entry> added;
    bool isBare = false;  ///< shows nothing but what was added
};

}  // namespace cimhost
