#include "cmpicpp/CmpiHandle.h"

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiInstance.h"
#include "tests/cmpicpp/BrokerFixture.h"

#include <optional>
#include <thread>
#include <vector>

namespace CmpiCpp {
namespace {

using PathHandle = CmpiHandle<CMPIObjectPath>;

class CmpiHandleTest : public test::BrokerTest {
protected:
    static CmpiObjectPath borrowed(const CmpiObjectPath& path) {
        return CmpiObjectPath(PathHandle::borrowed(path.broker(), path.toCMPI()));
    }
};

TEST_F(CmpiHandleTest, WritesAFreshObjectInPlace) {
    CMPIObjectPath* const object = handle()->eft->newObjectPath(handle(), "a", "C", nullptr);
    CmpiObjectPath path(PathHandle::fresh(handle(), object));
    path.setClassName("Changed");
    EXPECT_EQ(cimhost::modelOf(object).className, "Changed");
}

TEST_F(CmpiHandleTest, NeverWritesABorrowedObject) {
    CMPIObjectPath* const object = handle()->eft->newObjectPath(handle(), "a", "C", nullptr);
    CmpiObjectPath path(PathHandle::borrowed(handle(), object));
    path.setClassName("Changed");
    EXPECT_EQ(path.getClassName(), "Changed");
    EXPECT_EQ(cimhost::modelOf(object).className, "C");
}

TEST_F(CmpiHandleTest, ChangingACopyLeavesTheOriginal) {
    const CmpiObjectPath original = path();
    CmpiObjectPath copy = original;
    copy.setHost("elsewhere");
    EXPECT_TRUE(original.getHost().empty());
    EXPECT_EQ(copy.getHost(), "elsewhere");
}

TEST_F(CmpiHandleTest, ChangingTheOriginalLeavesTheCopy) {
    CmpiObjectPath original = path();
    const CmpiObjectPath copy = original;
    original.setHost("elsewhere");
    EXPECT_TRUE(copy.getHost().empty());
    EXPECT_EQ(original.getHost(), "elsewhere");
}

TEST_F(CmpiHandleTest, ChangingAnAssignedCopyLeavesTheOriginal) {
    CmpiObjectPath original = path();
    CmpiObjectPath copy = makeCmpiObjectPath(broker(), "x", "Y");
    copy = original;
    copy.setHost("copy");
    original.setHost("original");
    EXPECT_EQ(copy.getHost(), "copy");
    EXPECT_EQ(original.getHost(), "original");
}

TEST_F(CmpiHandleTest, CopiesOfACloneAreIndependent) {
    CmpiObjectPath clone = path().clone();
    CmpiObjectPath copy = clone;
    copy.setHost("copy");
    EXPECT_TRUE(clone.getHost().empty());
    clone.setHost("clone");
    EXPECT_EQ(copy.getHost(), "copy");
}

TEST_F(CmpiHandleTest, AnUnsharedCloneIsWrittenInPlace) {
    CmpiObjectPath clone = path().clone();
    const CMPIObjectPath* const before = clone.toCMPI();
    { const CmpiObjectPath copy = clone; }
    clone.setHost("h");
    EXPECT_EQ(clone.toCMPI(), before);
}

TEST_F(CmpiHandleTest, WhatWasLentOutDoesNotChangeAfterwards) {
    CmpiObjectPath path = makeCmpiObjectPath(broker(), "a", "C");
    const CMPIObjectPath* const lent = path.toCMPI();
    path.setClassName("Changed");
    EXPECT_EQ(cimhost::modelOf(lent).className, "C");
    EXPECT_EQ(path.getClassName(), "Changed");
}

TEST_F(CmpiHandleTest, MovesKeepTheRightToWriteInPlace) {
    CmpiObjectPath path = makeCmpiObjectPath(broker(), "a", "C");
    CmpiObjectPath moved = std::move(path);
    moved.setClassName("Changed");
    EXPECT_EQ(moved.getClassName(), "Changed");
    EXPECT_TRUE(path.empty());  // NOLINT(bugprone-use-after-move): what is promised
    EXPECT_EQ(test::codeOf([&] { path.setHost("h"); }), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(CmpiHandleTest, SurvivesAssignmentToItself) {
    CmpiObjectPath clone = path().clone();
    CmpiObjectPath& same = clone;
    clone = same;
    EXPECT_EQ(clone, path());
    clone = std::move(same);
    EXPECT_EQ(clone, path());
}

TEST_F(CmpiHandleTest, ACloneOutlivesTheCallItWasMadeIn) {
    std::optional<CmpiObjectPath> kept;
    {
        const cimhost::CallScope call;
        kept = path().clone();
    }
    EXPECT_EQ(*kept, path());
}

TEST_F(CmpiHandleTest, AChangedBorrowedPathOutlivesItsCallToo) {
    const CmpiObjectPath original = path();
    CmpiObjectPath copy;
    {
        const cimhost::CallScope call;
        copy = borrowed(original);
        copy.setHost("h");
    }
    EXPECT_EQ(copy.getHost(), "h");
}

TEST_F(CmpiHandleTest, ThePathOfAClonedInstanceKeepsTheInstance) {
    CmpiObjectPath part;
    {
        const CmpiInstance instance = makeCmpiInstance(broker(), path()).clone();
        part = instance.getPath();
    }
    EXPECT_EQ(part, path());
    part.setHost("h");
    EXPECT_EQ(part.getHost(), "h");
}

TEST_F(CmpiHandleTest, ChangingThePathOfAnInstanceLeavesTheInstance) {
    const CmpiInstance instance = makeCmpiInstance(broker(), path()).clone();
    CmpiObjectPath part = instance.getPath();
    part.setHost("h");
    EXPECT_TRUE(instance.getPath().getHost().empty());
}

TEST_F(CmpiHandleTest, TheCloneOfNothingIsNothing) {
    EXPECT_TRUE(CmpiObjectPath().clone().empty());
    EXPECT_TRUE(CmpiInstance().clone().empty());
    EXPECT_TRUE(CmpiArgs().clone().empty());
    EXPECT_TRUE(CmpiArray().clone().empty());
}

TEST_F(CmpiHandleTest, AnEmptyHandleIsNoObject) {
    EXPECT_EQ(test::codeOf([] { PathHandle().required(); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(test::codeOf([] { PathHandle().writable(); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(test::codeOf([this] { PathHandle::fresh(handle(), nullptr).writable(); }),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_FALSE(PathHandle());
}

TEST_F(CmpiHandleTest, IsCopiedAndDroppedFromManyThreadsAtOnce) {
    const CmpiObjectPath clone = path().clone();
    const CmpiObjectPath fresh = path();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&clone, &fresh] {
            for (int round = 0; round < 2'000; ++round) {
                const CmpiObjectPath first = clone;
                const CmpiObjectPath second = first;
                const CmpiObjectPath third = fresh;
                EXPECT_FALSE(second.empty() || third.empty());
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(clone, path());
}

TEST_F(CmpiHandleTest, TheLastThreadWithACopyReleasesTheClone) {
    for (int round = 0; round < 50; ++round) {
        CmpiObjectPath clone = path().clone();
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([copy = clone]() mutable { copy = CmpiObjectPath(); });
        }
        clone = CmpiObjectPath();
        for (std::thread& thread : threads) thread.join();
    }
}

}  // namespace
}  // namespace CmpiCpp
