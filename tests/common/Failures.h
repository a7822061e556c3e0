#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "cmpicpp/CmpiStatus.h"

/// A status of a provider's own, which is to arrive as what it is.
class DetailedStatus : public CmpiCpp::CmpiStatus {
public:
    DetailedStatus(CMPIrc rc, std::string const& message, int detailNumber)
        : CmpiStatus(rc, message), detail(detailNumber) {}
    int detail;
};

/// Everything that a provider may throw, by name.
struct Failure {
    char const* name;
    void (*raise)();
};

inline std::vector<Failure> const& allFailures() {
    static std::vector<Failure> const failures = {
        {"status 6 gone", [] { throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "gone"); }},
        {"detailed 1 broken 42", [] { throw DetailedStatus(CMPI_RC_ERR_FAILED, "broken", 42); }},
        {"exception odd", [] { throw std::runtime_error("odd"); }},
        {"int 7", [] { throw 7; }},
        {"bad_alloc", [] { throw std::bad_alloc(); }},
    };
    return failures;
}

/// What the action throws, named as in the table above; "none" when it throws nothing.
inline std::string outcomeOf(std::function<void()> const& action) {
    try {
        action();
    } catch (DetailedStatus const& status) {
        return "detailed " + std::to_string(status.rc()) + " " + status.message() + " " +
               std::to_string(status.detail);
    } catch (CmpiCpp::CmpiStatus const& status) {
        return "status " + std::to_string(status.rc()) + " " + status.message();
    } catch (std::bad_alloc const&) {
        return "bad_alloc";
    } catch (std::exception const& error) {
        return std::string("exception ") + error.what();
    } catch (int number) {
        return "int " + std::to_string(number);
    }
    return "none";
}
