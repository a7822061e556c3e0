#pragma once

#include <optional>

#include "cmpicpp/CmpiObjectPath.h"

namespace PYL {

/// A request's path as this host names it: a copy whose host is the local host name.
///
/// Clients name the host as they reached it, instances by its own name; with the host replaced the two
/// compare. The copy is made at the first use and then shared by a whole walk, since it costs more than
/// comparing. For one operation on one thread.
class LocalRequest {
public:
    /// The path must outlive this object.
    explicit LocalRequest(CmpiCpp::CmpiObjectPath const& path) : _request(path) {}

    /// Good until this object ends.
    CmpiCpp::CmpiObjectPath const& path();

private:
    CmpiCpp::CmpiObjectPath const& _request;
    std::optional<CmpiCpp::CmpiObjectPath> _local;
};

}  // namespace PYL
