// The interfaces are a binary contract between modules and this library: every operation keeps its
// place in the virtual table. The destructor takes the entries 0 and 1.

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"
#include "tests/common/VirtualTable.h"

#include <gtest/gtest.h>

namespace CmpiCpp {
namespace {

TEST(VirtualOrder, OfTheProvider) {
    EXPECT_EQ(slotOf(&CmpiProvider::unloadOK), 2);
    EXPECT_EQ(slotOf(&CmpiProvider::cleanup), 3);
    EXPECT_EQ(slotOf(&CmpiProvider::getBroker), 4);
}

TEST(VirtualOrder, OfTheInstanceProvider) {
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::enumInstanceNames), 2);
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::enumInstances), 3);
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::getInstance), 4);
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::createInstance), 5);
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::modifyInstance), 6);
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::deleteInstance), 7);
    EXPECT_EQ(slotOf(&CmpiInstanceProvider::execQuery), 8);
}

TEST(VirtualOrder, OfTheMethodProvider) { EXPECT_EQ(slotOf(&CmpiMethodProvider::invokeMethod), 2); }

TEST(VirtualOrder, OfTheAssociationProvider) {
    EXPECT_EQ(slotOf(&CmpiAssociationProvider::associators), 2);
    EXPECT_EQ(slotOf(&CmpiAssociationProvider::associatorNames), 3);
    EXPECT_EQ(slotOf(&CmpiAssociationProvider::references), 4);
    EXPECT_EQ(slotOf(&CmpiAssociationProvider::referenceNames), 5);
}

TEST(VirtualOrder, OfTheIndicationProvider) {
    EXPECT_EQ(slotOf(&CmpiIndicationProvider::authorizeFilter), 2);
    EXPECT_EQ(slotOf(&CmpiIndicationProvider::mustPoll), 3);
    EXPECT_EQ(slotOf(&CmpiIndicationProvider::activateFilter), 4);
    EXPECT_EQ(slotOf(&CmpiIndicationProvider::deactivateFilter), 5);
    EXPECT_EQ(slotOf(&CmpiIndicationProvider::enableIndications), 6);
    EXPECT_EQ(slotOf(&CmpiIndicationProvider::disableIndications), 7);
}

TEST(VirtualOrder, OfTheSinks) {
    EXPECT_EQ(slotOf(&CmpiObjectPathResult::deliver), 2);
    EXPECT_EQ(slotOf(&CmpiInstanceResult::deliver), 2);
}

template <typename Value>
int returned() {
    return slotOf(static_cast<void (CmpiMethodResult::*)(Value)>(&CmpiMethodResult::deliver));
}

template <typename Value>
int output() {
    return slotOf(static_cast<void (CmpiMethodResult::*)(const CmpiName&, Value)>(
        &CmpiMethodResult::deliver));
}

template <typename... Values>
void expectRowsOfDelivers(int slot) {
    for (const int found : {returned<Values>()...}) EXPECT_EQ(found, slot++);
    for (const int found : {output<Values>()...}) EXPECT_EQ(found, slot++);
}

TEST(VirtualOrder, OfTheMethodResult) {
    expectRowsOfDelivers<const CmpiData&, unsigned char, signed char, unsigned short, short,
                         unsigned int, int, unsigned long long, long long, float, double, bool,
                         const char*, const std::string&, const CmpiObjectPath&>(2);
}

}  // namespace
}  // namespace CmpiCpp
