#pragma once

#include "cmpi/cmpift.h"

#include <string>
#include <string_view>
#include <vector>

namespace cimtest {

/// A broker that fails on order, in front of a real one: every table of the broker and of its
/// objects is interposed, so that each single call can be made to fail.
///
/// Objects that its calls give out are interposed too; those that come from elsewhere, such as the
/// context and the arguments of an MI call, are handed to `adopt`. Only getMessage and getMessage2
/// pass untouched, for they are variadic. One such broker lives at a time; its calls may come from
/// several threads, its own functions from one.
///
///     FaultyBroker faulty(real.handle());
///     for (const std::string& slot : FaultyBroker::slots()) {
///         faulty.failCall(slot, 1, FaultyBroker::Fault::status);
///         ... run; whatever happens must be orderly ...
///     }
class FaultyBroker {
public:
    /// In which way a call fails.
    enum class Fault {
        /// The code, and a null, zero or bad result. Calls that give something back (release,
        /// free..., detachThread, destroy...) do their work first, so that nothing is left over.
        status,
        /// Code 0 and yet a null pointer, a zero, or data that is NULL. A CMPIStatus result, which
        /// has nothing of the kind, fails as with `status`.
        null,
        /// Code 0 and data of another type than the one there is; other results as with `null`.
        wrongType,
    };

    /// Borrows the real broker, which must outlive this one.
    explicit FaultyBroker(const CMPIBroker* real);
    ~FaultyBroker();
    FaultyBroker(const FaultyBroker&) = delete;
    FaultyBroker& operator=(const FaultyBroker&) = delete;

    /// The broker that fails, for the code under test.
    const CMPIBroker* handle() const noexcept { return &_handle; }

    /// Every slot as "CMPIObjectPathFT.addKey", table by table.
    static std::vector<std::string> slots();

    /// Sets all counters back and makes the nth call (from 1) of this slot fail from now on; the
    /// ones before and after it succeed. Throws std::invalid_argument for an unknown slot.
    void failCall(std::string_view slot, unsigned nth, Fault fault,
                  CMPIrc code = CMPI_RC_ERR_FAILED);
    /// The same for the nth call and all that follow it.
    void failFrom(std::string_view slot, unsigned nth, Fault fault,
                  CMPIrc code = CMPI_RC_ERR_FAILED);
    /// No call fails any more; all counters are set back.
    void heal();

    /// Whether the ordered failure has happened.
    bool hasFailed() const noexcept;
    /// Calls of this slot since the counters were last set back.
    unsigned calls(std::string_view slot) const;

    /// Interposes the table of an object and returns the object; null stays null.
    template <typename Handle>
    static Handle* adopt(Handle* object);

private:
    CMPIBroker _handle;
};

}  // namespace cimtest

#include "cimhost/testing/FaultyTables.h"

namespace cimtest {

template <typename Handle>
Handle* FaultyBroker::adopt(Handle* object) {
    interpose(object);
    return object;
}

}  // namespace cimtest
