#pragma once

#include "cimhost/repository/CimError.h"
#include "cmpi/cmpift.h"

#include <cxxabi.h>

#include <exception>
#include <string>
#include <string_view>

/// What a provider answers or throws, as CIM errors.
namespace cimhost {

/// The CIM status for a provider's return code, which must not be OK. Codes that CIM does not have,
/// those of CMPI alone included, are `failed`.
CimCode codeFromProvider(int returnCode) noexcept;

/// The text of a status, empty when there is none.
std::string messageOf(const CMPIStatus& status);

/// Throws the CimError of a status that is not OK. Its description is the provider's message, that
/// of an error object in the result, or else the code's name; a return code that CIM does not have
/// is named in it, with the provider.
void requireSuccess(const CMPIStatus& status, std::string_view provider,
                    const CMPIResult* result = nullptr);

/// CimError failed: what a provider's exception becomes.
[[noreturn]] void throwForeignException(std::string_view provider, const char* what);

/// Runs a call into a provider. An exception that comes out of it, C++ or not, is CimError failed
/// with the provider's name; the end of the thread (pthread_exit) passes.
template <typename Call>
auto callProvider(std::string_view provider, Call&& call) {
    try {
        return call();
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (const std::exception& exception) {
        throwForeignException(provider, exception.what());
    } catch (...) {
        throwForeignException(provider, "an exception of its own type");
    }
}

}  // namespace cimhost
