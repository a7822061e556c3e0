#pragma once

#include "cimhost/repository/CimError.h"

#include <string>

/// What work throws, for tests to compare.
namespace cimhost {

/// The words of the exception of this type; empty when nothing is thrown.
template <typename Exception>
std::string refusalOf(auto&& work) {
    try {
        work();
    } catch (const Exception& error) {
        return error.what();
    }
    return {};
}

/// The CimError as "code: words"; empty when nothing is thrown.
std::string errorOf(auto&& work) {
    try {
        work();
    } catch (const CimError& error) {
        return std::to_string(static_cast<int>(error.code())) + ": " + error.what();
    }
    return {};
}

/// The code of the CimError; 0 when nothing is thrown.
int errorCodeOf(auto&& work) {
    try {
        work();
    } catch (const CimError& error) {
        return static_cast<int>(error.code());
    }
    return 0;
}

}  // namespace cimhost
