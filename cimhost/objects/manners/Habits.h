#pragma once

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Schema.h"

/// What the functions of several adapted tables have in common.
namespace cimhost {

/// The class of a path, or nullptr where the repository has none.
const Class* knownClass(const Broker& broker, const ObjectPath& path) noexcept;

/// Takes the characters from a text that is empty, as `answersAbsentTextsAsNull` has it.
CMPIString* nullIfEmpty(CMPIString* text) noexcept;

/// The instance that newInstance makes of a path; null for a class that nobody knows.
Instance instanceAs(const Manner& manner, const ObjectPath& path, const Class* definition);

/// Exchanges the makers of dates, which are functions of the broker.
void adaptMakersOfDates(CMPIBrokerEncFT& table, const Manner& manner) noexcept;

/// A status for the standard function, of which only a failure is passed on.
class QuietStatus {
public:
    explicit QuietStatus(CMPIStatus* target) noexcept : _target(target) {}
    QuietStatus(const QuietStatus&) = delete;
    QuietStatus& operator=(const QuietStatus&) = delete;
    ~QuietStatus() {
        if (_target && _own.rc != CMPI_RC_OK) *_target = _own;
    }

    CMPIStatus* get() noexcept { return &_own; }

private:
    CMPIStatus* _target;
    CMPIStatus _own{CMPI_RC_OK, nullptr};
};

/// `clone` as `leavesStatusesAlone` has it.
template <typename Object>
typename Object::Handle* quietClone(const typename Object::Handle* handle,
                                    CMPIStatus* status) noexcept {
    return Object::table.clone(handle, QuietStatus(status).get());
}

}  // namespace cimhost
