#pragma once

#include "cmpicpp/CmpiObjectPath.h"

#include <optional>

namespace PYL {

/// A request's path as this host names it: a copy whose host is the local host name.
///
/// Clients name the host as they reached it, instances by its own name; with the host replaced the
/// two compare. The copy is made at the first use and then shared by a whole walk, since it costs
/// more than comparing. For one operation on one thread.
class LocalRequest {
public:
    /// The path must outlive this object.
    explicit LocalRequest(const CmpiCpp::CmpiObjectPath& path) : _request(path) {}

    /// Good until this object ends.
    const CmpiCpp::CmpiObjectPath& path();

private:
    const CmpiCpp::CmpiObjectPath& _request;
    std::optional<CmpiCpp::CmpiObjectPath> _local;
};

}  // namespace PYL
