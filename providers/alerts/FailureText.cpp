#include "providers/alerts/FailureText.h"

#include <exception>
#include <new>

#include "cmpicpp/CmpiStatus.h"

namespace alerts {

namespace {

std::string wordsOfTheException() {
    try {
        throw;
    } catch (CmpiCpp::CmpiStatus const& status) {
        return status.str();
    } catch (std::exception const& failure) {
        return failure.what();
    } catch (...) {
        return "unknown exception";
    }
}

}  // namespace

std::string failureText() noexcept try {
    return wordsOfTheException();
} catch (std::bad_alloc const&) {
    return "out of memory";  // short enough for a string that takes none
}

}  // namespace alerts
