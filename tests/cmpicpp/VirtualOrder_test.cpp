// The interfaces are a binary contract between modules and this library: every operation keeps its
// place in the virtual table (Itanium C++ ABI, 2.3: a pointer to a virtual function holds one plus
// the offset of its entry). The destructor takes the entries 0 and 1.

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace CmpiCpp {
namespace {

#if defined(__x86_64__)

template <typename Member>
std::ptrdiff_t entryOf(Member member) {
    std::ptrdiff_t words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
    EXPECT_EQ(words[0] % 2, 1) << "not virtual";
    return words[0] / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(VirtualOrder, OfTheProvider) {
    EXPECT_EQ(entryOf(&CmpiProvider::unloadOK), 2);
    EXPECT_EQ(entryOf(&CmpiProvider::cleanup), 3);
    EXPECT_EQ(entryOf(&CmpiProvider::getBroker), 4);
}

TEST(VirtualOrder, OfTheInstanceProvider) {
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::enumInstanceNames), 2);
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::enumInstances), 3);
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::getInstance), 4);
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::createInstance), 5);
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::modifyInstance), 6);
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::deleteInstance), 7);
    EXPECT_EQ(entryOf(&CmpiInstanceProvider::execQuery), 8);
}

TEST(VirtualOrder, OfTheMethodProvider) {
    EXPECT_EQ(entryOf(&CmpiMethodProvider::invokeMethod), 2);
}

TEST(VirtualOrder, OfTheAssociationProvider) {
    EXPECT_EQ(entryOf(&CmpiAssociationProvider::associators), 2);
    EXPECT_EQ(entryOf(&CmpiAssociationProvider::associatorNames), 3);
    EXPECT_EQ(entryOf(&CmpiAssociationProvider::references), 4);
    EXPECT_EQ(entryOf(&CmpiAssociationProvider::referenceNames), 5);
}

TEST(VirtualOrder, OfTheIndicationProvider) {
    EXPECT_EQ(entryOf(&CmpiIndicationProvider::authorizeFilter), 2);
    EXPECT_EQ(entryOf(&CmpiIndicationProvider::mustPoll), 3);
    EXPECT_EQ(entryOf(&CmpiIndicationProvider::activateFilter), 4);
    EXPECT_EQ(entryOf(&CmpiIndicationProvider::deactivateFilter), 5);
    EXPECT_EQ(entryOf(&CmpiIndicationProvider::enableIndications), 6);
    EXPECT_EQ(entryOf(&CmpiIndicationProvider::disableIndications), 7);
}

TEST(VirtualOrder, OfTheSinks) {
    EXPECT_EQ(entryOf(&CmpiObjectPathResult::deliver), 2);
    EXPECT_EQ(entryOf(&CmpiInstanceResult::deliver), 2);
}

template <typename Value>
std::ptrdiff_t returned() {
    return entryOf(static_cast<void (CmpiMethodResult::*)(Value)>(&CmpiMethodResult::deliver));
}

template <typename Value>
std::ptrdiff_t output() {
    return entryOf(static_cast<void (CmpiMethodResult::*)(const CmpiName&, Value)>(
        &CmpiMethodResult::deliver));
}

template <typename... Values>
void expectRowsOfDelivers(std::ptrdiff_t entry) {
    for (const std::ptrdiff_t found : {returned<Values>()...}) EXPECT_EQ(found, entry++);
    for (const std::ptrdiff_t found : {output<Values>()...}) EXPECT_EQ(found, entry++);
}

TEST(VirtualOrder, OfTheMethodResult) {
    expectRowsOfDelivers<const CmpiData&, unsigned char, signed char, unsigned short, short,
                         unsigned int, int, unsigned long long, long long, float, double, bool,
                         const char*, const std::string&, const CmpiObjectPath&>(2);
}

#endif

}  // namespace
}  // namespace CmpiCpp
