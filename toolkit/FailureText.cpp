#include "toolkit/FailureText.h"

#include "cmpicpp/CmpiStatus.h"

#include <exception>
#include <new>

namespace PYL {

namespace {

std::string wordsOfTheException() {
    try {
        throw;
    } catch (const CmpiCpp::CmpiStatus& status) {
        return status.str();
    } catch (const std::exception& failure) {
        return failure.what();
    } catch (...) {
        return "unknown exception";
    }
}

}  // namespace

std::string failureText() noexcept try {
    return wordsOfTheException();
} catch (const std::bad_alloc&) {
    return "out of memory";  // short enough for a string that takes none
}

}  // namespace PYL
