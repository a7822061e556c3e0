#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// How other object managers answer where the CMPI standard leaves room, or depart from it.
///
/// `standard` is cimhost as it is; every other manner is a set of habits, each a way in which it
/// differs from that. The table behind `habitRows` is the one place that says who has which: the
/// tables of objects and the operations ask for a habit, never for a host.
namespace cimhost {

/// In the order of `habitRows`, where the words for each are.
enum class Habit : std::uint8_t {
    // What a broker offers
    hasNoMemoryFunctions,
    namesAnOldVersion,
    lacksQualifierGetters,
    lacksCloneOfContexts,
    lacksErrorsAndMessages,
    refusesLogging,
    returnsMessagesAsFailures,
    knowsNoTypes,
    leavesStatusesAlone,
    throwsOfItsOwn,
    // Object paths
    countsKeysOfTheClass,
    missingKeysAreNotFound,
    returnsIntegerKeysAsSint64,
    checksTypesOfKeys,
    refusesNullKeysAsFailed,
    keepsNullKeys,
    crashesPastTheLastKey,
    crashesOnNullNameSpace,
    answersAbsentTextsAsNull,
    needsNameSpaceForSubclasses,
    putsHostIntoRequests,
    // Instances
    holdsAllProperties,
    fillsInDefaults,
    keepsKeyPropertiesNull,
    endsPathsWithTheCall,
    makesPathlessInstances,
    ignoresUnknownProperties,
    refusesUnknownProperties,
    checksTypesOfProperties,
    refusesUntypedNulls,
    missingPropertiesAreNotFound,
    returnsNullNumbersAsZero,
    returnsEmptyArraysAsNull,
    ignoresPropertyFilters,
    filtersDropKeys,
    keepsPathOfNewInstance,
    refusesPathsOfOtherClasses,
    // Arrays, arguments, enumerations
    refusesNullElements,
    makesNullElementsGood,
    keepsPointersOfElements,
    keepsTheArrayBit,
    answersFailedToWrongElements,
    readsQuietlyPastTheEnd,
    crashesOnArraysWithNulls,
    missingArgumentsAreNotFound,
    marksElementsNull,
    endsEnumerationsQuietly,
    // Texts and dates
    makesNullTexts,
    acceptsImpossibleDates,
    writesDatesBeyondTheirText,
    // Contexts, up-calls, threads
    hasNoNameSpaceInContexts,
    hasEmptyContextsAtStart,
    crashesWithoutContext,
    crashesOnUnattachedThreads,
    freesNothingOfThreadsBeforeTheirEnd,
    refusesPropertyUpCalls,
    returnsNullPropertiesAsBoolean,
    takesEveryIndication,
    cutsIndicationsInPlace,
    // Results
    refusesObjectsAsMethodResults,
    crashesOnReferencesAsData,
    refusesNullMethodResults,
    dropsRefusedAssociations,
    // Requests as a provider sees them
    passesNamesAsWritten,
    listsAllPropertiesOfNewInstances,
    namesTheRegisteredAssociation,
    passesAllProperties,
    // The life of a provider
    makesAnMiForEachClass,
    goesOnAfterRefusedUnload,
    takesTheFirstRegistration,
    skipsAuthorization,
    passesNoClassToFilters,
    disablesBeforeTheLastFilter,
};

inline constexpr std::size_t habitCount =
    static_cast<std::size_t>(Habit::disablesBeforeTheLastFilter) + 1;

struct HabitRow {
    /// Who has the habit; a set.
    enum Host : std::uint8_t {
        openPegasus = 1,
        sfcb = 2,
        strict = 4,  ///< refuses what the standard lets a broker refuse
        mean = 8,    ///< gives, within the standard, the least that a provider may count on
    };

    Habit habit;
    std::string_view name;
    std::uint8_t hosts;
    std::string_view says;      ///< what differs from `standard`
    std::string_view library;   ///< what this library does about it; "-" for nothing
    std::string_view provider;  ///< what a provider should do
};

/// One row a habit, in the order of the enumeration.
std::span<const HabitRow> habitRows() noexcept;

/// The set of habits that a broker has. Cheap to copy and to ask.
class Manner {
public:
    /// No habits: `standard`.
    Manner() = default;

    /// By name: standard, openpegasus, sfcb, strict, mean, or mean:SEED for a random part of mean's
    /// habits, the same for each seed. Throws std::invalid_argument that lists the names.
    explicit Manner(std::string_view name);

    const std::string& name() const noexcept { return _name; }
    bool has(Habit habit) const noexcept { return _habits[static_cast<std::size_t>(habit)]; }
    bool isStandard() const noexcept { return _habits.none(); }

private:
    std::string _name = "standard";
    std::bitset<habitCount> _habits;
};

}  // namespace cimhost
