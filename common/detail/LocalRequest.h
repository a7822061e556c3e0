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

    /// True when the instance with this path is meant: the two are equal, or would be if the
    /// references among the request's keys that name no host named this one, as clients that were
    /// given an association's name leave it out of its ends.
    bool isFor(const CmpiCpp::CmpiObjectPath& instance);

private:
    void _readEnds();

    const CmpiCpp::CmpiObjectPath& _request;
    std::optional<CmpiCpp::CmpiObjectPath> _local;
    std::optional<CmpiCpp::CmpiObjectPath> _withLocalEnds;  // empty when all ends name a host
    bool _endsAreRead = false;
};

}  // namespace PYL
