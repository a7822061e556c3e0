// What must not allocate: copies, short names, comparisons, and the way from an entry point of a
// module to the provider. The broker of this test allocates nothing of its own.

#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <utility>

namespace {

thread_local unsigned long allocations = 0;

void* allocate(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

// Not inlined: GCC would take the malloc of one and the free of the other for a mistake.
[[gnu::noinline]] void* operator new(std::size_t size) { return allocate(size); }
[[gnu::noinline]] void* operator new[](std::size_t size) { return allocate(size); }
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete[](void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace CmpiCpp {
namespace {

template <typename Action>
unsigned long allocationsOf(Action&& action) {
    const unsigned long before = allocations;
    action();
    return allocations - before;
}

// A string's hdl is its text.
const CMPIStringFT stringTable = [] {
    CMPIStringFT table{};
    table.getCharPtr = [](const CMPIString* string, CMPIStatus*) {
        return static_cast<const char*>(string->hdl);
    };
    return table;
}();

CMPIString constant(const char* text) { return {text, &stringTable}; }

CMPIString host = constant("host");
CMPIString nameSpace = constant("root/ktq");
CMPIString className = constant("PYL_Fan");
CMPIString keyName = constant("DeviceID");
CMPIString keyValue = constant("KTQ:PYL_Fan:1");

CMPIData key() {
    CMPIData data{CMPI_string, CMPI_keyValue, {}};
    data.value.string = &keyValue;
    return data;
}

const CMPIObjectPathFT pathTable = [] {
    CMPIObjectPathFT table{};
    table.getHostname = [](const CMPIObjectPath*, CMPIStatus*) { return &host; };
    table.getNameSpace = [](const CMPIObjectPath*, CMPIStatus*) { return &nameSpace; };
    table.getClassName = [](const CMPIObjectPath*, CMPIStatus*) { return &className; };
    table.getKeyCount = [](const CMPIObjectPath*, CMPIStatus*) -> CMPICount { return 1; };
    table.getKeyAt = [](const CMPIObjectPath*, CMPICount, CMPIString** name, CMPIStatus*) {
        *name = &keyName;
        return key();
    };
    table.getKey = [](const CMPIObjectPath*, const char*, CMPIStatus*) { return key(); };
    return table;
}();

const CMPIObjectPath onePath{&pathTable, &pathTable};
const CMPIObjectPath otherPath{&pathTable, &pathTable};

CmpiObjectPath borrow(const CMPIObjectPath& path) {
    return CmpiObjectPath(CmpiHandle<CMPIObjectPath>::borrowed(nullptr, &path));
}

TEST(Allocation, IsCounted) {
    EXPECT_EQ(allocationsOf([] { ::operator delete(::operator new(1)); }), 1U);
}

TEST(Allocation, NamesOfUpTo46BytesNeedNone) {
    const std::string text(46, 'n');
    EXPECT_EQ(allocationsOf([&] {
                  const CmpiName name(text);
                  CmpiName copy(name);
                  copy = name;
                  const CmpiName moved(std::move(copy));
                  EXPECT_EQ(moved, name);
              }),
              0U);
    const std::string longer(47, 'n');
    EXPECT_EQ(allocationsOf([&] { const CmpiName name(longer); }), 1U);
}

TEST(Allocation, CopiesNeedNone) {
    const CmpiObjectPath path = borrow(onePath);
    EXPECT_EQ(allocationsOf([&] {
                  const CmpiObjectPath copy = path;
                  CmpiObjectPath assigned;
                  assigned = copy;
                  const CmpiObjectPath moved = std::move(assigned);
              }),
              0U);
}

TEST(Allocation, ReadingAPathNeedsNone) {
    const CmpiObjectPath path = borrow(onePath);
    EXPECT_EQ(allocationsOf([&] {
                  EXPECT_EQ(path.getClassName(), CmpiName("pyl_fan"));
                  EXPECT_EQ(path.getNameSpace(), CmpiName("root/ktq"));
                  EXPECT_EQ(path.getKeyAt(0).first, CmpiName("DeviceID"));
              }),
              0U);
}

TEST(Allocation, ComparingPathsNeedsNone) {
    const CmpiObjectPath left = borrow(onePath);
    const CmpiObjectPath right = borrow(otherPath);
    EXPECT_EQ(allocationsOf([&] { EXPECT_TRUE(left == right); }), 0U);
}

TEST(Allocation, TheTextOfAPathNeedsOne) {
    const CmpiObjectPath path = borrow(onePath);
    EXPECT_EQ(allocationsOf([&] {
                  EXPECT_EQ(path.str(), "//host/root/ktq:PYL_Fan.DeviceID=\"KTQ:PYL_Fan:1\"");
              }),
              1U);
}

class QuietProvider : public CmpiInstanceProvider {
public:
    void enumInstanceNames(const CmpiContext&, const CmpiObjectPath& path,
                           CmpiObjectPathResult& result) override {
        result.deliver(path);
    }
    void enumInstances(const CmpiContext&, const CmpiObjectPath&, const char**,
                       CmpiInstanceResult&) override {}
    void getInstance(const CmpiContext&, const CmpiObjectPath&, const char**,
                     CmpiInstanceResult&) override {}
    CMPIBroker* getBroker() override { return nullptr; }
};

CmpiProvider* makeQuiet(const CmpiBroker&, const CMPIContext*) { return new QuietProvider; }

constinit CmpiModule module("Quiet", makeQuiet);

TEST(Allocation, AnEntryPointNeedsNone) {
    CMPIResultFT resultTable{};
    resultTable.returnObjectPath = [](const CMPIResult*, const CMPIObjectPath*) -> CMPIStatus {
        return {CMPI_RC_OK, nullptr};
    };
    resultTable.returnDone = [](const CMPIResult*) -> CMPIStatus { return {CMPI_RC_OK, nullptr}; };
    const CMPIResult result{&resultTable, &resultTable};
    CMPIInstanceMI* const mi = module.createInstanceMI(nullptr, nullptr, nullptr);
    ASSERT_NE(mi, nullptr);
    EXPECT_EQ(allocationsOf([&] {
                  EXPECT_EQ(mi->ft->enumerateInstanceNames(mi, nullptr, &result, &onePath).rc,
                            CMPI_RC_OK);
                  EXPECT_EQ(mi->ft->getInstance(mi, nullptr, &result, &onePath, nullptr).rc,
                            CMPI_RC_OK);
              }),
              0U);
    mi->ft->cleanup(mi, nullptr, 1);
}

}  // namespace
}  // namespace CmpiCpp
