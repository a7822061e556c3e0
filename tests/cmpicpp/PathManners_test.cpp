// Paths and instances of brokers that differ from ours, as the C++ values see them.

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/detail/Enumeration.h"
#include "tests/cmpicpp/BrokerFixture.h"
#include "tests/support/MannerCall.h"

namespace CmpiCpp {
namespace {

using test::codeOf;

constexpr const char* allManners[] = {"standard", "openpegasus", "sfcb", "strict", "mean"};

struct PathManners : cimhost::MannerCall {
    explicit PathManners(const char* manner) : MannerCall(manner) {}

    CmpiBroker asked() const { return CmpiBroker(broker()); }
    CmpiObjectPath classPath(const char* className = "Test_Base") const {
        return makeCmpiObjectPath(asked(), "root/test", className);
    }
    /// Without the key that the class has.
    CmpiObjectPath otherKey(const char* className = "Test_Base") const {
        CmpiObjectPath made = classPath(className);
        made.addKey("Other", "x");
        return made;
    }
};

TEST(PathMannersTest, HaveTheKeysThatAreSet) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        const CmpiObjectPath path = host.otherKey();
        ASSERT_EQ(path.getKeyCount(), 1U);
        EXPECT_EQ(path.getKeyAt(0).first, "Other");
        EXPECT_EQ(codeOf([&] { path.getKeyAt(1); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        EXPECT_EQ(path.str(), "/root/test:Test_Base.Other=\"x\"");
        EXPECT_EQ(host.classPath().str(), "/root/test:Test_Base");
    }
}

TEST(PathMannersTest, AreEqualByTheKeysThatAreSet) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        EXPECT_EQ(host.otherKey(), host.otherKey());
        CmpiObjectPath more = host.otherKey();
        more.addKey("Name", "n");
        EXPECT_FALSE(more == host.otherKey());
        EXPECT_FALSE(host.otherKey() == more);
        EXPECT_FALSE(host.classPath() == more);
        EXPECT_FALSE(more == host.classPath());
        EXPECT_EQ(more, more.clone());
    }
}

TEST(PathMannersTest, LackAKeyByOneCode) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        EXPECT_EQ(codeOf([&] { host.classPath().getKey("Name"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        EXPECT_EQ(codeOf([&] { host.classPath().getKey("Nope"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    }
}

TEST(PathMannersTest, EndAtTheirLastItem) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        const CmpiObjectPath path = host.classPath("Test_Nobody");
        EXPECT_EQ(codeOf([&] { path.getKeyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        const CmpiInstance instance = makeCmpiInstance(host.asked(), path);
        EXPECT_EQ(codeOf([&] { instance.getPropertyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
        EXPECT_EQ(codeOf([&] { instance.getProperty("P"); }), CMPI_RC_ERR_NOT_FOUND);
    }
}

TEST(PathMannersTest, ReadTheLargestIntegerKey) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiObjectPath path = host.classPath();
        path.addKey("Number", ~0ULL);
        EXPECT_EQ(path.getKey("Number").asUint64(), ~0ULL);
    }
}

TEST(PathMannersTest, RefuseKeysThatAreNullOrHaveNoName) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiObjectPath path = host.classPath();
        const char* const none = nullptr;
        EXPECT_EQ(codeOf([&] { path.addKey("K", none); }), CMPI_RC_ERR_INVALID_PARAMETER);
        EXPECT_EQ(codeOf([&] { path.addKey("K", CmpiData()); }), CMPI_RC_ERR_INVALID_PARAMETER);
        for (const char* name : {none, ""}) {
            EXPECT_EQ(codeOf([&] { path.addKey(name, 1); }), CMPI_RC_ERR_INVALID_PARAMETER);
        }
        path.addKey("_A1", 1);
        path.addKey(
            "L\xC3\xBC"
            "fter",
            1);
        EXPECT_EQ(path.getKeyCount(), 2U);
    }
}

/// A class with keys of several types, one of which has a default.
cimhost::Class keyedClass() {
    using cimhost::CimType;
    cimhost::Class definition;
    definition.name = "Test_Keyed";
    const auto add = [&](const char* name, CimType type) {
        auto property = std::make_shared<cimhost::PropertyDefinition>();
        property->name = name;
        property->type = type;
        property->isKey = true;
        if (type == CimType::string) property->defaultValue = cimhost::Value::string("default");
        definition.properties.push_back(std::move(property));
    };
    add("Name", CimType::string);
    add("Slot", CimType::uint16);
    add("Offset", CimType::sint8);
    add("Letter", CimType::char16);
    add("Isbn", CimType::uint64);
    add("On", CimType::boolean);
    return definition;
}

TEST(PathMannersTest, MakePropertiesOfTheKeysOfANewInstance) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        PathManners host(manner);
        host.repository.make("root/test").addClass(keyedClass());
        CmpiObjectPath path = host.classPath("Test_Keyed");
        path.addKey("Name", "n");
        path.addKey("Slot", static_cast<unsigned short>(65535));
        path.addKey("Offset", static_cast<signed char>(-1));
        path.addKey("Letter", CmpiValue::char16(0x263A));
        path.addKey("Isbn", ~0ULL);
        path.addKey("On", true);
        path.addKey("Foreign", "x");
        const CmpiInstance made = makeCmpiInstance(host.asked(), path);
        EXPECT_EQ(made.getProperty("Name").asString(), "n");
        EXPECT_EQ(made.getProperty("Slot").getType(), CMPI_uint16);
        EXPECT_EQ(made.getProperty("Slot").asUint64(), 65535U);
        EXPECT_EQ(made.getProperty("Offset").getType(), CMPI_sint8);
        EXPECT_EQ(made.getProperty("Offset").asSint64(), -1);
        EXPECT_EQ(made.getProperty("Letter").asString(), "\xE2\x98\xBA");
        EXPECT_EQ(made.getProperty("Isbn").asUint64(), ~0ULL);
        EXPECT_TRUE(made.getProperty("On").asBool());
        EXPECT_EQ(made.getPath(), path);
    }
}

std::string nameOfANew(const PathManners& host, const char* name) {
    CmpiObjectPath path = host.classPath("Test_Keyed");
    path.addKey("Name", name);
    return makeCmpiInstance(host.asked(), path).getProperty("Name").asString();
}

TEST(PathMannersTest, MakePropertiesOfTheKeysOfEachInstanceOfAnEnumeration) {
    PathManners filling("standard");
    filling.repository.make("root/test").addClass(keyedClass());
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        PathManners host(manner);
        host.repository.make("root/test").addClass(keyedClass());
        const Enumeration outer;
        EXPECT_EQ(nameOfANew(filling, "asked meanwhile"), "asked meanwhile");
        const Enumeration inner;
        EXPECT_EQ(nameOfANew(host, "first"), "first");
        EXPECT_EQ(nameOfANew(host, "second"), "second");
    }
}

TEST(PathMannersTest, LeaveAKeyOutOfTheInstanceThatIsNoValueOfItsProperty) {
    for (const char* manner : {"standard", "openpegasus", "sfcb", "mean:1"}) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiObjectPath path = host.classPath("Test_Other");
        path.addKey("Size", "large");
        path.setClassName("Test_Base");
        EXPECT_EQ(codeOf([&] { makeCmpiInstance(host.asked(), path); }), CMPI_RC_OK);
    }
}

TEST(PathMannersTest, KeepTheKeysOfAFilteredInstance) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiObjectPath path = host.classPath();
        path.addKey("Name", "n");
        CmpiInstance instance = makeCmpiInstance(host.asked(), path);
        const char* wanted[] = {"Size", nullptr};
        instance.setPropertyFilter(wanted);
        EXPECT_EQ(instance.getPath(), path);
        const char* illegal[] = {"a b", nullptr};
        EXPECT_EQ(codeOf([&] { instance.setPropertyFilter(illegal); }),
                  CMPI_RC_ERR_INVALID_PARAMETER);
    }
}

TEST(PathMannersTest, TakeAnyNullForAPropertyOfTheClass) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiInstance instance = makeCmpiInstance(host.asked(), host.classPath());
        instance.setProperty("Size", 1U);
        instance.setProperty("Size", CmpiArray());
        EXPECT_TRUE(instance.getProperty("Size").isNull());
        EXPECT_EQ(instance.getProperty("Size").getType(), CMPI_uint32);
        instance.setProperty("Size", CmpiData());
        EXPECT_EQ(instance.getProperty("Size").getType(), CMPI_uint32);
    }
}

TEST(PathMannersTest, TakeAnyNullForAPropertyThatTheInstanceHasNot) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiInstance instance = makeCmpiInstance(host.asked(), host.classPath("Test_Nobody"));
        instance.setProperty("Size", CmpiArray());
        instance.setProperty("Size", CmpiData());
        EXPECT_EQ(instance.getPropertyCount(), 0U);
        instance.setProperty("Size", 1U);
        EXPECT_EQ(instance.getProperty("Size").asUint64(), 1U);
    }
}

TEST(PathMannersTest, OutliveTheCallWithAnInstanceThatIsKept) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiObjectPath path = host.classPath();
        path.addKey("Name", "n");
        const CmpiInstance kept = makeCmpiInstance(host.asked(), path).clone();
        CmpiObjectPath later;
        {
            const cimhost::CallScope call;
            later = kept.getPath();
        }
        EXPECT_EQ(later, path);
    }
}

TEST(PathMannersTest, AreOfTheirClassEverywhere) {
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        CmpiObjectPath path = host.classPath("Test_Derived");
        EXPECT_TRUE(path.classPathIsA(host.asked(), "test_base"));
        path.setNameSpace("");
        EXPECT_TRUE(path.classPathIsA(host.asked(), "test_derived"));
        EXPECT_EQ(codeOf([&] { path.classPathIsA(host.asked(), "Test_Base"); }),
                  CMPI_RC_ERR_INVALID_NAMESPACE);
    }
}

TEST(PathMannersTest, RefuseDatesThatThereAreNot) {
    using std::chrono::microseconds;
    for (const char* manner : allManners) {
        SCOPED_TRACE(manner);
        const PathManners host(manner);
        const auto ofFigure = [&](long long figure, bool interval) {
            return codeOf([&] { makeCmpiDateTime(host.asked(), microseconds(figure), interval); });
        };
        EXPECT_EQ(ofFigure(253402300799999999, false), CMPI_RC_OK);
        EXPECT_EQ(ofFigure(253402300800000000, false), CMPI_RC_ERR_INVALID_PARAMETER);
        EXPECT_EQ(ofFigure(8639999999999999999, true), CMPI_RC_OK);
        EXPECT_EQ(ofFigure(8640000000000000000, true), CMPI_RC_ERR_INVALID_PARAMETER);
        for (const char* text :
             {"20241301000000.000000+000", "20240001000000.000000+000", "20240132000000.000000+000",
              "20240230000000.000000+000", "20230229000000.000000+000", "20240101240000.000000+000",
              "20240101006000.000000+000", "20240101000060.000000+000", "00000000250000.000000:000",
              "00000000000000.000000:060", "20240431******.******+000"}) {
            EXPECT_EQ(codeOf([&] { makeCmpiDateTime(host.asked(), std::string(text)); }),
                      CMPI_RC_ERR_INVALID_PARAMETER)
                << text;
        }
        for (const char* text : {"20240229235959.999999-720", "99999999235959.999999:000",
                                 "2024**********.******+000"}) {
            EXPECT_EQ(codeOf([&] { makeCmpiDateTime(host.asked(), std::string(text)); }),
                      CMPI_RC_OK)
                << text;
        }
    }
}

}  // namespace
}  // namespace CmpiCpp
