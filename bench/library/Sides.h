#pragma once

#include "bench/library/PlainProvider.h"
#include "bench/library/Stage.h"
#include "bench/library/WrapperProvider.h"
#include "common/PYLUtil.h"

#include <cstddef>
#include <memory>
#include <string>

/// The same provider twice: on the library and in plain C.
class Sides {
public:
    Sides(std::size_t devices, std::size_t links)
        : _library(devices, links),
          _anchor(makePlainProvider(stageBroker().handle(), PYL::PYLUtil::getHostName().c_str(),
                                    stageNameSpace, devices, links)) {}

    CMPIInstanceMI* libraryInstances() const { return _library.instanceMI(); }
    CMPIInstanceMI* anchorInstances() const { return plainInstanceMI(_anchor.get()); }
    CMPIAssociationMI* libraryAssociations() const { return _library.associationMI(); }
    CMPIAssociationMI* anchorAssociations() const { return plainAssociationMI(_anchor.get()); }

private:
    struct Delete {
        void operator()(PlainProvider* provider) const { deletePlainProvider(provider); }
    };

    WrapperProvider _library;
    std::unique_ptr<PlainProvider, Delete> _anchor;
};

/// For rows that walk a whole collection: each round counts the same.
constexpr std::size_t fewRounds = 4;

/// Ends the program when an operation did not deliver what it should: its time would say nothing.
void requireDelivered(CMPIStatus status, std::size_t delivered, std::size_t expected);
