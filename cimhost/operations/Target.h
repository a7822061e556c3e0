#pragma once

#include "cimhost/objects/Manner.h"
#include "cimhost/objects/Objects.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <optional>

/// What a request is about, held against the repository before any provider sees it.
/// Pure functions, safe from several threads.
namespace cimhost {

/// The class that a request is about.
struct Target {
    const NameSpace& nameSpace;
    const Class& definition;

    /// The path of the class.
    ObjectPath classPath() const;
};

/// The class of a path. A path without a namespace is in the request's.
/// Throws CimError invalidNamespace, invalidClass; invalidParameter for a path without a class.
Target requireTarget(const Repository& repository, const RequestContext& request,
                     const ObjectPath& path);

/// The instance path as its class has it: names spelled and keys typed alike, the namespace filled
/// in, the host left out. Throws CimError invalidParameter for a key that is missing, unknown,
/// given twice, NULL or not of the declared type. In an up-call a key may be unknown, and then
/// others missing: no other object manager looks, and there are providers that rely on it.
ObjectPath requireInstancePath(const Repository& repository, const RequestContext& request,
                               const Target& target, const ObjectPath& path);

/// The path as a provider gets it: spelled as in the request, where the host passes names on as
/// they were written.
ObjectPath pathForProvider(const Manner& manner, const RequestContext& request,
                           const ObjectPath& written, ObjectPath path);

/// The value as declared; a reference without a namespace leads to the target's, and has its keys
/// typed by its class where that is known. Throws CimError typeMismatch, and invalidParameter for a
/// reference with a key that its class has not.
Value declaredValue(const Repository& repository, const Target& target, const Value& value,
                    CimType type, bool isArray,
                    std::optional<std::uint32_t> arraySize = std::nullopt);

/// The instance's properties as its class declares them. The path is taken as it is.
/// Throws CimError noSuchProperty; typeMismatch; invalidParameter for a property given twice.
Instance declaredProperties(const Repository& repository, const Target& target, Instance instance);

/// What a provider is told of a request about this namespace.
RequestContext providerContext(const RequestContext& request, const NameSpace& nameSpace,
                               CMPIFlags flags);

}  // namespace cimhost
