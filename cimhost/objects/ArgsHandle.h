#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/objects/Objects.h"

namespace cimhost {

struct ArgsObject : ObjectBase<CMPIArgs, ObjectKind::arguments> {
    static const CMPIArgsFT table;

    explicit ArgsObject(Arguments arguments) : model(std::move(arguments)) {}

    Arguments model;
};

}  // namespace cimhost
