#pragma once

#include "cimhost/query/WqlQuery.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/NameSpace.h"

#include <string>

/// Whether queries hold. Conditions have three values: what compares with NULL, or compares things
/// that cannot be compared, is neither true nor false, and neither are conditions that depend on
/// it. A query selects what its condition is true of.
///
/// Numbers compare by value, whatever their types; strings byte by byte, with regard to case;
/// datetimes of one kind, and a string that reads as one, by their time. LIKE knows `%`, `_`,
/// `[ab]`, `[a-z]` and `[^ab]`. `__CLASS` is the name of the instance's class.
namespace cimhost {

enum class Truth : signed char { no = -1, unknown = 0, yes = 1 };

/// Where the values of properties come from. Used by one thread.
class WqlValues {
public:
    virtual ~WqlValues() = default;

    /// The value of this property of the instance itself, or nullptr for NULL. Good as long as
    /// this.
    virtual const Value* find(const std::string& property) = 0;
};

class InstanceValues final : public WqlValues {
public:
    /// The instance outlives this.
    explicit InstanceValues(const Instance& instance)
        : _instance(instance), _className(Value::string(instance.className())) {}

    const Value* find(const std::string& property) override;

private:
    const Instance& _instance;
    Value _className;
};

/// `nameSpace` knows the classes that ISA asks for; without one each class is only of its own kind.
Truth evaluate(const WqlPredicate& predicate, WqlValues& values, const NameSpace* nameSpace);
Truth evaluate(const WqlCondition& condition, WqlValues& values, const NameSpace* nameSpace);

/// True when the query's condition holds, whatever class the instance is of.
bool meetsCondition(const WqlQuery& query, WqlValues& values, const NameSpace* nameSpace);

/// True when the instance is of the query's class or a subclass, and its condition holds.
bool selects(const WqlQuery& query, const Instance& instance, const NameSpace* nameSpace);

}  // namespace cimhost
