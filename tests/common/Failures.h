#pragma once

#include "cmpicpp/CmpiStatus.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

/// A status of a provider's own, which is to arrive as what it is.
class DetailedStatus : public CmpiCpp::CmpiStatus {
public:
    DetailedStatus(CMPIrc rc, const std::string& message, int detailNumber)
        : CmpiStatus(rc, message), detail(detailNumber) {}
    int detail;
};

/// Everything that a provider may throw, by name.
struct Failure {
    const char* name;
    void (*raise)();
};

inline const std::vector<Failure>& allFailures() {
    static const std::vector<Failure> failures = {
        {"status 6 gone", [] { throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "gone"); }},
        {"detailed 1 broken 42", [] { throw DetailedStatus(CMPI_RC_ERR_FAILED, "broken", 42); }},
        {"exception odd", [] { throw std::runtime_error("odd"); }},
        {"int 7", [] { throw 7; }},
        {"bad_alloc", [] { throw std::bad_alloc(); }},
    };
    return failures;
}

/// What the action throws, named as in the table above; "none" when it throws nothing.
inline std::string outcomeOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DetailedStatus& status) {
        return "detailed " + std::to_string(status.rc()) + " " + status.message() + " " +
               std::to_string(status.detail);
    } catch (const CmpiCpp::CmpiStatus& status) {
        return "status " + std::to_string(status.rc()) + " " + status.message();
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    } catch (const std::exception& error) {
        return std::string("exception ") + error.what();
    } catch (int number) {
        return "int " + std::to_string(number);
    }
    return "none";
}
