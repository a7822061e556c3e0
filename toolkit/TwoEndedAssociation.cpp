#include "toolkit/TwoEndedAssociation.h"

#include "toolkit/LocalPaths.h"

#include <utility>

namespace PYL {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

TwoEndedAssociation::TwoEndedAssociation(const AssociationClass& associationClass, End first,
                                         End second, std::string nameSpace)
    : _class(associationClass),
      _first(std::move(first)),
      _second(std::move(second)),
      _nameSpace(std::move(nameSpace)) {}

CmpiObjectPath TwoEndedAssociation::getPath() {
    const auto first = _first();
    const auto second = _second();
    return makeLocalPath(_class.name, {{_class.firstRole, first}, {_class.secondRole, second}},
                         _nameSpace);
}

CmpiInstance TwoEndedAssociation::getInstance() {
    return CmpiCpp::makeCmpiInstance(localBroker(), getPath());
}

CmpiName TwoEndedAssociation::getClassName() { return _class.name; }

CmpiObjectPath TwoEndedAssociation::getAssociatedPath(const CmpiObjectPath& path) {
    auto first = _first();
    auto second = _second();
    if (path == first) return second;
    if (path == second) return first;
    return {};
}

}  // namespace PYL
