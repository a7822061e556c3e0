#include "cmpicpp/detail/Equality.h"

#include "cmpicpp/CmpiName.h"
#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"

#include <cstring>

namespace CmpiCpp {

namespace {

using NameGetter = CMPIString* (*)(const CMPIObjectPath*, CMPIStatus*);

bool sameNames(const CMPIObjectPath* left, const CMPIObjectPath* right, NameGetter leftGetter,
               NameGetter rightGetter) {
    const char* const leftName = charsOf(ask(leftGetter, left));
    const char* const rightName = charsOf(ask(rightGetter, right));
    return std::strcmp(leftName, rightName) == 0 || equalNames(leftName, rightName);
}

/// Whether the right one has the left one's keys, in any order. It is asked by name: by index a
/// broker would have to make a string of each name.
bool sameKeys(const CMPIObjectPath* left, const CMPIObjectPath* right) {
    CMPICount count = 0;
    const auto isSame = [&](const CMPIString* name, const CMPIData& key) {
        ++count;
        CMPIData other;
        return find(other, right->ft->getKey, right, charsOf(name)) && equalData(key, other);
    };
    return forEachKey(left, isSame) &&
           (count == ask(right->ft->getKeyCount, right) || count == keyCount(right));
}

/// The same for the properties of instances, of which there are `count` in both.
bool sameProperties(const CMPIInstance* left, const CMPIInstance* right, CMPICount count) {
    for (CMPICount index = 0; index < count; ++index) {
        CMPIString* name = nullptr;
        const CMPIData property = ask(left->ft->getPropertyAt, left, index, &name);
        CMPIData other;
        if (!find(other, right->ft->getProperty, right, charsOf(name)) ||
            !equalData(property, other)) {
            return false;
        }
    }
    return true;
}

bool equalArrays(const CMPIArray* left, const CMPIArray* right) {
    if (left == right) return true;
    const CMPICount size = ask(left->ft->getSize, left);
    if (size != ask(right->ft->getSize, right)) return false;
    for (CMPICount index = 0; index < size; ++index) {
        if (!equalData(ask(left->ft->getElementAt, left, index),
                       ask(right->ft->getElementAt, right, index))) {
            return false;
        }
    }
    return true;
}

bool equalInstances(const CMPIInstance* left, const CMPIInstance* right) {
    if (left == right) return true;
    const CMPICount count = ask(left->ft->getPropertyCount, left);
    return count == ask(right->ft->getPropertyCount, right) &&
           equalPaths(made(ask(left->ft->getObjectPath, left), "path"),
                      made(ask(right->ft->getObjectPath, right), "path")) &&
           sameProperties(left, right, count);
}

/// Most keys are: the kinds of others are looked into with more care.
bool areStrings(const CMPIData& left, const CMPIData& right) noexcept {
    constexpr unsigned without = CMPI_nullValue | CMPI_badValue | CMPI_notFound;
    return left.type == CMPI_string && right.type == CMPI_string && (left.state & without) == 0 &&
           (right.state & without) == 0 && left.value.string != nullptr &&
           right.value.string != nullptr;
}

bool sameTruth(CMPIBoolean left, CMPIBoolean right) noexcept { return (left != 0) == (right != 0); }

}  // namespace

std::string_view charactersOf(const CMPIData& data) {
    if (data.type == CMPI_chars) return data.value.chars;
    if (data.type == CMPI_string) return textOf(data.value.string);
    const CMPIDateTime* const dateTime = data.value.dateTime;
    return textOf(ask(dateTime->ft->getStringFormat, dateTime));
}

namespace {

/// Of everything but two strings. Not inlined: it would have strings, which most keys are, pay for
/// saving its registers.
[[gnu::noinline]] bool equalOthers(const CMPIData& left, const CMPIData& right) {
    const DataKind kind = kindOf(left);
    if (kind != kindOf(right)) return false;
    switch (kind) {
        case DataKind::null: return true;
        case DataKind::boolean: return sameTruth(left.value.boolean, right.value.boolean);
        case DataKind::char16: return left.value.char16 == right.value.char16;
        case DataKind::integer: return integerOf(left) == integerOf(right);
        case DataKind::real: return realOf(left) == realOf(right);
        case DataKind::text:
        case DataKind::dateTime: return charactersOf(left) == charactersOf(right);
        case DataKind::reference: return equalPaths(left.value.ref, right.value.ref);
        case DataKind::instance: return equalInstances(left.value.inst, right.value.inst);
        case DataKind::array: return equalArrays(left.value.array, right.value.array);
        case DataKind::bad:
        case DataKind::other: break;
    }
    return false;
}

}  // namespace

bool equalData(const CMPIData& left, const CMPIData& right) {
    if (areStrings(left, right)) {
        return std::strcmp(charsOf(left.value.string), charsOf(right.value.string)) == 0;
    }
    return equalOthers(left, right);
}

// The order of the tests is that of what tells the paths of one collection apart soonest.
bool equalPaths(const CMPIObjectPath* left, const CMPIObjectPath* right) {
    if (left == right) return true;
    const auto& leftTable = *left->ft;
    const auto& rightTable = *right->ft;
    return sameKeys(left, right) &&
           sameNames(left, right, leftTable.getClassName, rightTable.getClassName) &&
           sameNames(left, right, leftTable.getNameSpace, rightTable.getNameSpace) &&
           sameNames(left, right, leftTable.getHostname, rightTable.getHostname);
}

}  // namespace CmpiCpp
