#pragma once

#include "common/DecoratorUtils.h"
#include "common/ProviderOperations.h"

// clang-format off

#define PYL_ARGUMENTS(...) __VA_ARGS__

/// Defines a forwarded operation of the class that PYL_DECORATOR names, in namespace PYL, as one
/// call of its member
///
///     template <auto asInterface, auto operation, typename... Arguments>
///     void _forward(const char* name, Arguments&... arguments);
///
/// with the cast that finds the interface, the operation of the interface, its name, and the
/// arguments as they came.
#define PYL_FORWARD(interface, operation, arguments, ...) \
    void PYL_DECORATOR::operation(__VA_ARGS__) { \
        _forward<as##interface##Provider, &CmpiCpp::Cmpi##interface##Provider::operation>( \
            #operation, PYL_ARGUMENTS arguments); \
    }

/// Defines none of the operations that are the decorator's own.
#define PYL_LEAVE(...)
