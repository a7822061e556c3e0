#pragma once

#include "cmpi/cmpift.h"
#include "pylcommon_export.h"

#include <string>

namespace CmpiCpp {

/// The circumstances of one request: a borrowed pointer, good until the provider's function
/// returns.
class PYL_EXPORT CmpiContext {
public:
    /// Borrows the context of a request, or of a CmpiThreadContext.
    explicit CmpiContext(const CMPIContext* context) noexcept : _context(context) {}

    /// For calls of the C interface.
    const CMPIContext* toCMPI() const noexcept { return _context; }

    /// @{
    /// The entry of the CMPI context, or the empty text (0) when the broker gives none. Not every
    /// object manager tells the name space: that of a request is in its path.
    std::string nameSpace() const;
    std::string principal() const;
    std::string acceptLanguage() const;
    CMPIFlags invocationFlags() const;
    /// @}

private:
    const CMPIContext* _context;
};

}  // namespace CmpiCpp
