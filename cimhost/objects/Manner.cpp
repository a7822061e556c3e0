#include "cimhost/objects/Manner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <random>
#include <stdexcept>
#include <utility>

namespace cimhost {

namespace {

using enum HabitRow::Host;

// The name as code and as text, which only the preprocessor can make of one word.
#define PYL_HABIT(word) .habit = Habit::word, .name = #word

constexpr auto rows = std::to_array<HabitRow>({
    // What a broker offers
    // Object paths
    // Instances
    // Arrays, arguments, enumerations
    // Texts and dates
    // Contexts, up-calls, threads
    // Results
    // Requests as a provider sees them
    // The life of a provider
    {PYL_HABIT(hasNoMemoryFunctions), .hosts = openPegasus | sfcb | mean,
     .says = "The table of memory functions is null.",
     .library = "CmpiMemoryMark does nothing then.",
     .provider = "Clone and release what a long walk makes."},
    {PYL_HABIT(namesAnOldVersion), .hosts = sfcb | mean,
     .says = "The broker names version 0, its encapsulation table version 1.",
     .library = "Looks at slots, never at versions.", .provider = "Do the same."},
    {PYL_HABIT(lacksQualifierGetters), .hosts = openPegasus | sfcb | mean,
     .says = "Paths have no functions for qualifiers: their slots are null.",
     .library = "Does not use them.", .provider = "Test a slot before use."},
    {PYL_HABIT(lacksCloneOfContexts), .hosts = openPegasus,
     .says = "Context.clone, Result.clone and Result.release are null.",
     .library = "Does not use them.", .provider = "Test a slot before use."},
    {PYL_HABIT(lacksErrorsAndMessages), .hosts = sfcb | mean,
     .says = "newCMPIError and what follows it, setPropertyWithOrigin and returnError are null.",
     .library = "Tests the slots that it uses.", .provider = "Test a slot before use."},
    {PYL_HABIT(refusesLogging), .hosts = sfcb | mean,
     .says = "logMessage and trace answer NOT_SUPPORTED.", .library = "Logs by itself.",
     .provider = "Never check what they return."},
    {PYL_HABIT(returnsMessagesAsFailures), .hosts = sfcb,
     .says = "getMessage gives the text and NOT_SUPPORTED with it.", .library = "Does not use it.",
     .provider = "Take the text, ignore the code."},
    {PYL_HABIT(knowsNoTypes), .hosts = sfcb | mean,
     .says = "isOfType answers 0 and getType an empty text.", .library = "Does not use them.",
     .provider = "Do not use them."},
    {PYL_HABIT(leavesStatusesAlone), .hosts = sfcb | mean,
     .says = "clone and getCharPtr do not write the status when all went well.",
     .library = "Sets every status to OK before a call.", .provider = "Do the same."},
    {PYL_HABIT(throwsOfItsOwn), .hosts = openPegasus,
     .says = "C++ exceptions that are no std::exception leave the tables on bad indexes, names and "
             "dates.",
     .library = "Checks arguments first, and catches everything around each call.",
     .provider = "Check arguments; catch (...) on threads of your own."},
    {PYL_HABIT(countsKeysOfTheClass), .hosts = openPegasus,
     .says = "A path counts all keys of its class, which come first and in its order; one that is "
             "not set answers NO_SUCH_PROPERTY by index, with its name.",
     .library = "Skips keys that are not set.", .provider = "Walk keys with that in mind."},
    {PYL_HABIT(missingKeysAreNotFound), .hosts = openPegasus | sfcb | mean,
     .says = "An unknown or unset key is NOT_FOUND by name.",
     .library = "Throws NO_SUCH_PROPERTY for both.", .provider = "Take either code."},
    {PYL_HABIT(returnsIntegerKeysAsSint64), .hosts = openPegasus,
     .says = "Integer keys read back as sint64, the largest uint64 as -1.",
     .library = "Reads any width; a negative sint64 key as its 64 bits where a uint64 is wanted.",
     .provider = "Ask for the width that you want."},
    {PYL_HABIT(checksTypesOfKeys), .hosts = openPegasus | strict | mean,
     .says =
         "A key of another type than the class declares is INVALID_DATA_TYPE, but for the width "
         "of integers.",
     .library = "Passes the code on.", .provider = "Give keys the type of the class."},
    {PYL_HABIT(refusesNullKeysAsFailed), .hosts = openPegasus, .says = "A NULL key is FAILED.",
     .library = "Refuses it before the call.", .provider = "Do not add NULL keys."},
    {PYL_HABIT(keepsNullKeys), .hosts = sfcb, .says = "A NULL key is kept.",
     .library = "Refuses it before the call.", .provider = "Do not add NULL keys."},
    {PYL_HABIT(crashesPastTheLastKey), .hosts = sfcb,
     .says = "getKeyAt past the end crashes when a name is asked for.",
     .library = "Compares the index with the count first.", .provider = "Do the same."},
    {PYL_HABIT(crashesOnNullNameSpace), .hosts = sfcb, .says = "setNameSpace(null) crashes.",
     .library = "Refuses it before the call.", .provider = "Pass an empty text."},
    {PYL_HABIT(answersAbsentTextsAsNull), .hosts = sfcb | mean,
     .says = "The characters of a name space, host or principal that is not there are null.",
     .library = "Reads them as an empty text.", .provider = "Test the characters for null."},
    {PYL_HABIT(needsNameSpaceForSubclasses), .hosts = sfcb | mean,
     .says = "classPathIsA is false for a path without a name space.",
     .library = "Knows the class itself; a collection reads it in the request's name space, others "
                "are refused.",
     .provider = "Set the name space first."},
    {PYL_HABIT(putsHostIntoRequests), .hosts = openPegasus | mean,
     .says = "The path of a request carries the server's host name.",
     .library = "Leaves the host out where it matches a request with its own instances.",
     .provider = "Do not compare hosts."},
    {PYL_HABIT(holdsAllProperties), .hosts = openPegasus | sfcb | mean,
     .says = "A new instance lists all properties of its class, NULL until set.",
     .library = "Counts on nothing but what was set.", .provider = "A count is not what you set."},
    {PYL_HABIT(fillsInDefaults), .hosts = openPegasus,
     .says = "A new instance holds the default values of its class.", .library = "Leaves them.",
     .provider = "Set what you mean, NULL too."},
    {PYL_HABIT(keepsKeyPropertiesNull), .hosts = openPegasus | mean,
     .says = "The keys of the path do not become properties of a new instance.",
     .library = "makeCmpiInstance sets every key property.",
     .provider = "Set keys in the path and as properties."},
    {PYL_HABIT(endsPathsWithTheCall), .hosts = openPegasus | sfcb | mean,
     .says = "The path of an instance ends with the call in which it was asked for, a clone's too.",
     .library = "Clones the path of an instance that is kept.",
     .provider = "Clone a path that is kept."},
    {PYL_HABIT(makesPathlessInstances), .hosts = sfcb,
     .says = "An instance of an unknown class has no path: INVALID_CLASS.",
     .library = "Passes the code on.", .provider = "Check that the class is there."},
    {PYL_HABIT(ignoresUnknownProperties), .hosts = openPegasus,
     .says = "A property that the class lacks is dropped without an error.", .library = "-",
     .provider = "Set declared properties only."},
    {PYL_HABIT(refusesUnknownProperties), .hosts = strict | mean,
     .says = "A property that the class lacks is NO_SUCH_PROPERTY.",
     .library = "Passes the code on.", .provider = "Set declared properties only."},
    {PYL_HABIT(checksTypesOfProperties), .hosts = openPegasus | strict | mean,
     .says = "A value of another type than the class declares is INVALID_DATA_TYPE.",
     .library = "Passes the code on.", .provider = "Use the exact type of the class."},
    {PYL_HABIT(refusesUntypedNulls), .hosts = openPegasus | strict | mean,
     .says = "A NULL without a type is INVALID_DATA_TYPE.",
     .library = "Gives every NULL the type of its property, and leaves it out where there is none.",
     .provider = "Give NULL the type of the property."},
    {PYL_HABIT(missingPropertiesAreNotFound), .hosts = sfcb | mean,
     .says = "An unknown property is NOT_FOUND.", .library = "Throws NOT_FOUND for either code.",
     .provider = "Take either code."},
    {PYL_HABIT(returnsNullNumbersAsZero), .hosts = openPegasus,
     .says = "NULL elements of an array of numbers read back as 0.", .library = "-",
     .provider = "Put no NULL into arrays of numbers."},
    {PYL_HABIT(returnsEmptyArraysAsNull), .hosts = openPegasus | mean,
     .says = "A property that is an empty array reads back as NULL.", .library = "-",
     .provider = "Treat both alike."},
    {PYL_HABIT(ignoresPropertyFilters), .hosts = openPegasus,
     .says = "setPropertyFilter drops nothing.", .library = "-", .provider = "Do not rely on it."},
    {PYL_HABIT(filtersDropKeys), .hosts = sfcb | mean,
     .says = "setPropertyFilter drops key properties that its key list does not name.",
     .library = "Always names the keys.", .provider = "Name the keys."},
    {PYL_HABIT(keepsPathOfNewInstance), .hosts = openPegasus | mean,
     .says = "A key property that is set later does not change the path.",
     .library = "Sets both alike.", .provider = "Set both alike."},
    {PYL_HABIT(refusesPathsOfOtherClasses), .hosts = openPegasus | strict | mean,
     .says = "setObjectPath with a path of another class is FAILED.",
     .library = "Passes the code on.", .provider = "Use the instance's own class."},
    {PYL_HABIT(refusesNullElements), .hosts = openPegasus | strict,
     .says = "setElementAt with a null pointer is INVALID_PARAMETER.",
     .library = "Sets NULL as a value of type CMPI_null.", .provider = "Do the same."},
    {PYL_HABIT(makesNullElementsGood), .hosts = sfcb,
     .says = "setElementAt with a null pointer makes a good 0.",
     .library = "Sets NULL as a value of type CMPI_null.", .provider = "Do the same."},
    {PYL_HABIT(keepsPointersOfElements), .hosts = openPegasus | sfcb | mean,
     .says = "An array keeps the pointer of an object that is put in, not a copy.",
     .library = "Puts in objects that live as long as the call.",
     .provider = "Release nothing that an array holds."},
    {PYL_HABIT(keepsTheArrayBit), .hosts = openPegasus,
     .says = "getSimpleType has the bit of arrays when the array was made with it.",
     .library = "Masks it.", .provider = "Mask it."},
    {PYL_HABIT(answersFailedToWrongElements), .hosts = sfcb,
     .says = "An element of another type than the array's, or past its end, is FAILED.",
     .library = "Checks the index first.", .provider = "Take either code."},
    {PYL_HABIT(readsQuietlyPastTheEnd), .hosts = sfcb,
     .says = "An element or argument past the end is no error: its value is bad, or anything.",
     .library = "Compares the index with the count first.", .provider = "Do the same."},
    {PYL_HABIT(crashesOnArraysWithNulls), .hosts = openPegasus,
     .says = "An array with NULL texts, dates, references or instances crashes as an argument or a "
             "result.",
     .library = "Refuses such an argument, result or property, in every host.",
     .provider = "Leave such elements out."},
    {PYL_HABIT(missingArgumentsAreNotFound), .hosts = sfcb | mean,
     .says = "An unknown argument is NOT_FOUND.", .library = "Throws NO_SUCH_PROPERTY.",
     .provider = "Take either code."},
    {PYL_HABIT(marksElementsNull), .hosts = openPegasus,
     .says = "The elements of an up-call's enumeration have the state of NULL and a good pointer.",
     .library = "Trusts the pointer.", .provider = "Trust the pointer."},
    {PYL_HABIT(endsEnumerationsQuietly), .hosts = sfcb,
     .says = "getNext past the end is OK and a bad value.", .library = "Asks hasNext.",
     .provider = "Ask hasNext."},
    {PYL_HABIT(makesNullTexts), .hosts = sfcb,
     .says = "newString(null) is a string whose characters are null.",
     .library = "Never passes null.", .provider = "Check before."},
    {PYL_HABIT(acceptsImpossibleDates), .hosts = sfcb, .says = "A date with month 13 is taken.",
     .library = "Checks the fields first.", .provider = "Check the fields."},
    {PYL_HABIT(writesDatesBeyondTheirText), .hosts = sfcb,
     .says = "A date beyond the year 9999 or an interval beyond 99999999 days overflows the buffer "
             "of its text.",
     .library = "Refuses it before the call.", .provider = "Check the range."},
    {PYL_HABIT(hasNoNameSpaceInContexts), .hosts = sfcb | mean,
     .says = "Contexts have no CMPIInitNameSpace, CMPIRole and languages.",
     .library = "Takes the name space of the path.", .provider = "Take it from the path."},
    {PYL_HABIT(hasEmptyContextsAtStart), .hosts = openPegasus | sfcb | mean,
     .says = "Contexts of factories, clean-up and enableIndications have no entries.",
     .library = "Expects none.", .provider = "Expect none."},
    {PYL_HABIT(crashesWithoutContext), .hosts = openPegasus | sfcb,
     .says = "An up-call without a context crashes.", .library = "Refuses it before the call.",
     .provider = "Always pass one."},
    {PYL_HABIT(crashesOnUnattachedThreads), .hosts = openPegasus,
     .says = "Making a path or an instance on a thread that is not attached crashes.",
     .library = "AlertThread attaches itself.", .provider = "Attach your threads."},
    {PYL_HABIT(freesNothingOfThreadsBeforeTheirEnd), .hosts = sfcb,
     .says = "What an attached thread makes is freed when it ends, not when it is detached.",
     .library = "AlertThread makes each look on a thread that ends with it.",
     .provider = "End a thread after its work; make no up-call to your own module on it."},
    {PYL_HABIT(refusesPropertyUpCalls), .hosts = sfcb | mean,
     .says = "The up-calls getProperty and setProperty are NOT_SUPPORTED.",
     .library = "Uses getInstance and modifyInstance then.",
     .provider = "Use getInstance and modifyInstance."},
    {PYL_HABIT(returnsNullPropertiesAsBoolean), .hosts = openPegasus,
     .says = "The up-call getProperty gives a NULL as a boolean.",
     .library = "Looks at the state first.", .provider = "Look at the state first."},
    {PYL_HABIT(takesEveryIndication), .hosts = sfcb | mean,
     .says = "deliverIndication is OK, whatever becomes of it.", .library = "-",
     .provider = "Its failure is no event."},
    {PYL_HABIT(cutsIndicationsInPlace), .hosts = sfcb | mean,
     .says = "deliverIndication drops what the query does not select from the provider's own "
             "instance: here all of it.",
     .library = "Makes a fresh instance for each delivery.", .provider = "Do the same."},
    {PYL_HABIT(refusesObjectsAsMethodResults), .hosts = openPegasus,
     .says =
         "A method's reference or instance is taken by returnData alone: the other functions are "
         "NOT_SUPPORTED.",
     .library = "Tries returnData then.", .provider = "Do the same."},
    {PYL_HABIT(crashesOnReferencesAsData), .hosts = sfcb,
     .says = "returnData with a reference crashes.", .library = "Tries returnObjectPath first.",
     .provider = "Do the same."},
    {PYL_HABIT(refusesNullMethodResults), .hosts = openPegasus,
     .says = "A NULL as a method's result is INVALID_PARAMETER.", .library = "Leaves it out then.",
     .provider = "Do the same."},
    {PYL_HABIT(dropsRefusedAssociations), .hosts = openPegasus,
     .says = "An association operation that a provider answers with NOT_SUPPORTED is an empty "
             "success.",
     .library = "-", .provider = "NOT_SUPPORTED means that it is not your association."},
    {PYL_HABIT(passesNamesAsWritten), .hosts = sfcb | mean,
     .says = "Name space and class are spelled as the client wrote them.",
     .library = "Compares names without case.", .provider = "Do the same."},
    {PYL_HABIT(listsAllPropertiesOfNewInstances), .hosts = openPegasus | sfcb | mean,
     .says = "The instance of createInstance lists all properties of the class.", .library = "-",
     .provider = "Look at the state of each."},
    {PYL_HABIT(namesTheRegisteredAssociation), .hosts = openPegasus,
     .says = "An association operation is called once for each registered class, which it names as "
             "the association class.",
     .library = "Answers each with its own.",
     .provider = "Expect a class that the client did not name."},
    {PYL_HABIT(passesAllProperties), .hosts = sfcb,
     .says = "What a provider delivers beyond the property list goes to the client.",
     .library = "-", .provider = "Use setPropertyFilter."},
    {PYL_HABIT(makesAnMiForEachClass), .hosts = sfcb,
     .says =
         "An MI is made for each registered class and kind, and one of each kind is cleaned up.",
     .library = "Hands out one MI a kind, and ends with the last kind.",
     .provider = "Count kinds, not MIs."},
    {PYL_HABIT(goesOnAfterRefusedUnload), .hosts = openPegasus | sfcb,
     .says = "All kinds are cleaned up though one refuses, and are used again without being made "
             "anew.",
     .library = "Keeps what a cleaned MI needs.",
     .provider = "Make clean-up repeatable, and calls after it valid."},
    {PYL_HABIT(takesTheFirstRegistration), .hosts = sfcb,
     .says = "A class belongs to the module that registered it first, for all kinds.",
     .library = "Registers no class for two modules.", .provider = "Do the same."},
    {PYL_HABIT(skipsAuthorization), .hosts = openPegasus | mean,
     .says = "authorizeFilter and mustPoll are never called.", .library = "-",
     .provider = "Decide in activateFilter."},
    {PYL_HABIT(passesNoClassToFilters), .hosts = sfcb | mean,
     .says = "activateFilter may have a null class name, deActivateFilter an empty one.",
     .library = "Its providers serve all classes alike.",
     .provider = "Take the class of the path or of the query."},
    {PYL_HABIT(disablesBeforeTheLastFilter), .hosts = sfcb,
     .says = "disableIndications comes before the last deActivateFilter.",
     .library = "Takes either order.", .provider = "Take either order."},
});

#undef PYL_HABIT

constexpr bool areInOrder() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows.at(i).habit) != i) return false;
    }
    return rows.size() == habitCount;
}
static_assert(areInOrder(), "a row a habit, in the order of the enumeration");

constexpr auto names = std::to_array<std::pair<std::string_view, std::uint8_t>>({
    {"standard", 0},
    {"openpegasus", openPegasus},
    {"sfcb", sfcb},
    {"strict", strict},
    {"mean", mean},
});

std::optional<std::uint32_t> seedOf(std::string_view name) {
    constexpr std::string_view prefix = "mean:";
    if (!name.starts_with(prefix)) return std::nullopt;
    name.remove_prefix(prefix.size());
    std::uint32_t seed = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), seed);
    if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
    return seed;
}

std::bitset<habitCount> habitsOf(std::uint8_t host) {
    std::bitset<habitCount> habits;
    for (std::size_t i = 0; i < rows.size(); ++i) habits[i] = (rows.at(i).hosts & host) != 0;
    return habits;
}

}  // namespace

std::span<const HabitRow> habitRows() noexcept { return rows; }

Manner::Manner(std::string_view name) : _name(name) {
    if (const auto seed = seedOf(name)) {
        std::mt19937 random(*seed);
        _habits = habitsOf(mean);
        // Not std::bernoulli_distribution: its numbers differ from one standard library to another.
        for (std::size_t i = 0; i < habitCount; ++i) {
            if (random() % 2 == 0) _habits[i] = false;
        }
        return;
    }
    const auto* const found =
        std::ranges::find_if(names, [&](const auto& each) { return each.first == name; });
    if (found == names.end()) {
        throw std::invalid_argument("no manner '" + std::string(name) +
                                    "': standard, openpegasus, sfcb, strict, mean or mean:SEED");
    }
    _habits = habitsOf(found->second);
}

}  // namespace cimhost
