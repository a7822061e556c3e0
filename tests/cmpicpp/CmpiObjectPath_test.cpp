#include "cmpicpp/CmpiObjectPath.h"

#include "cmpicpp/CmpiDateTime.h"
#include "tests/cmpicpp/BrokerFixture.h"

#include <sstream>
#include <string>

namespace CmpiCpp {
namespace {

using test::codeOf;
using test::messageOf;

class CmpiObjectPathTest : public test::BrokerTest {
protected:
    CmpiObjectPath classPath(const char* className = "PYL_Fan") const {
        return makeCmpiObjectPath(broker(), "root/ktq", className);
    }

    template <typename Value>
    CmpiObjectPath withKey(const char* name, Value value) const {
        CmpiObjectPath made = classPath();
        made.addKey(name, value);
        return made;
    }
};

TEST_F(CmpiObjectPathTest, StartsWithNamespaceAndClassAlone) {
    const CmpiObjectPath made = makeCmpiObjectPath(broker(), CmpiName("root/ktq"), CmpiName("C"));
    EXPECT_EQ(made.getNameSpace(), "root/ktq");
    EXPECT_EQ(made.getClassName(), "C");
    EXPECT_TRUE(made.getHost().empty());
    EXPECT_EQ(made.getKeyCount(), 0U);
    EXPECT_FALSE(made.empty());
}

TEST_F(CmpiObjectPathTest, TakesNewNames) {
    CmpiObjectPath made = classPath();
    made.setHost("host");
    made.setNameSpace("interop");
    made.setClassName("D");
    EXPECT_EQ(made.str(), "//host/interop:D");
}

TEST_F(CmpiObjectPathTest, KeepsTheOrderOfItsKeys) {
    CmpiObjectPath made = path();
    made.addKey(CmpiName("Third"), true);
    made.addKey("DEVICEID", "replaced");
    ASSERT_EQ(made.getKeyCount(), 3U);
    EXPECT_EQ(made.getKeyAt(0).first, "DeviceID");
    EXPECT_EQ(made.getKeyAt(0).second.asString(), "replaced");
    EXPECT_EQ(made.getKeyAt(1).second.asUint64(), 2U);
    EXPECT_EQ(made.getKeyAt(2).first, "Third");
    EXPECT_TRUE(made.getKey(CmpiName("third")).asBool());
}

TEST_F(CmpiObjectPathTest, HasNoOtherKeys) {
    EXPECT_EQ(codeOf([&] { path().getKey("Nope"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { path().getKeyAt(2); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { path().getKeyAt(0xFFFFFFFF); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiObjectPathTest, TakesAKeyThatItGaveItself) {
    CmpiObjectPath made = path();
    made.addKey("Copy", made.getKey("DeviceID"));
    EXPECT_EQ(made.getKey("Copy").asString(), "1");
    CmpiObjectPath clone = path().clone();
    clone.addKey("Copy", clone.getKey("DeviceID"));
    EXPECT_EQ(clone.getKey("Copy").asString(), "1");
}

TEST_F(CmpiObjectPathTest, EmptyPathsReadAsNothing) {
    const CmpiObjectPath none;
    EXPECT_TRUE(none.empty());
    EXPECT_TRUE(none.getHost().empty());
    EXPECT_TRUE(none.getNameSpace().empty());
    EXPECT_TRUE(none.getClassName().empty());
    EXPECT_EQ(none.getKeyCount(), 0U);
    EXPECT_EQ(none.str(), "");
    EXPECT_EQ(none.toCMPI(), nullptr);
    EXPECT_EQ(codeOf([&] { none.getKey("K"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(codeOf([&] { none.getKeyAt(0); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(CmpiObjectPathTest, EmptyPathsMayNameTheirBroker) {
    const CmpiObjectPath none(broker());
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.broker(), broker().toCMPI());
    EXPECT_EQ(CmpiObjectPath(none).broker(), broker().toCMPI());
    EXPECT_EQ(none, CmpiObjectPath());
    EXPECT_EQ(none.str(), "");
    EXPECT_EQ(none.toCMPI(), nullptr);
}

TEST_F(CmpiObjectPathTest, EmptyPathsCannotBeChanged) {
    CmpiObjectPath none;
    EXPECT_EQ(codeOf([&] { none.setHost("h"); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.setNameSpace("n"); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.setClassName("c"); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.addKey("k", 1); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.classPathIsA(broker(), "c"); }), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(CmpiObjectPathTest, NeedsABroker) {
    const CmpiBroker none(nullptr);
    EXPECT_EQ(codeOf([&] { makeCmpiObjectPath(none, "n", "c"); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { path().classPathIsA(none, "c"); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(messageOf([&] { makeCmpiObjectPath(none, "n", "c"); }),
              "There is no broker to ask: was it recorded with setBroker()?");
}

TEST_F(CmpiObjectPathTest, RefusesANullKey) {
    CmpiObjectPath made = classPath();
    const char* const none = nullptr;
    EXPECT_NE(codeOf([&] { made.addKey("K", none); }), CMPI_RC_OK);
}

TEST_F(CmpiObjectPathTest, IsAnInstanceOfItsOwnClass) {
    EXPECT_TRUE(classPath().classPathIsA(broker(), "pyl_fan"));
}

TEST_F(CmpiObjectPathTest, IsWrittenAsAWbemUri) {
    CmpiObjectPath made = path();
    EXPECT_EQ(made.str(), "/root/ktq:PYL_Fan.DeviceID=\"1\",Slot=2");
    made.setHost("host");
    EXPECT_EQ(made.str(), "//host/root/ktq:PYL_Fan.DeviceID=\"1\",Slot=2");
    EXPECT_EQ(classPath().str(), "/root/ktq:PYL_Fan");
}

TEST_F(CmpiObjectPathTest, EscapesQuotesAndBackslashesInKeys) {
    EXPECT_EQ(withKey("K", "a\"b\\c,D=\"x").str(), "/root/ktq:PYL_Fan.K=\"a\\\"b\\\\c,D=\\\"x\"");
}

TEST_F(CmpiObjectPathTest, IsOneLineWhateverItHolds) {
    CmpiObjectPath made = classPath();
    made.setHost("h\r");
    CMPIValue text{};
    text.string = handle()->eft->newString(handle(), "line\nbreak\x1B[0m", nullptr);
    made.toCMPI()->ft->addKey(made.toCMPI(), "K\n", &text, CMPI_string);
    EXPECT_EQ(made.str(), "//h\\r/root/ktq:PYL_Fan.K\\n=\"line\\nbreak\\x001B[0m\"");
}

TEST_F(CmpiObjectPathTest, KeepsUtf8) {
    EXPECT_EQ(withKey("K",
                      "L\xC3\xBC"
                      "fter")
                  .str(),
              "/root/ktq:PYL_Fan.K=\"L\xC3\xBC"
              "fter\"");
}

TEST_F(CmpiObjectPathTest, WritesEveryTypeOfKey) {
    EXPECT_EQ(withKey("K", true).str(), "/root/ktq:PYL_Fan.K=true");
    EXPECT_EQ(withKey("K", -5).str(), "/root/ktq:PYL_Fan.K=-5");
    EXPECT_EQ(withKey("K", CmpiValue::char16('x')).str(), "/root/ktq:PYL_Fan.K='x'");
    EXPECT_EQ(withKey("K", makeCmpiDateTime(broker(), "00000001000000.000000:000")).str(),
              "/root/ktq:PYL_Fan.K=\"00000001000000.000000:000\"");
    EXPECT_EQ(withKey("K", path()).str(),
              "/root/ktq:PYL_Fan.K=\"/root/ktq:PYL_Fan.DeviceID=\\\"1\\\",Slot=2\"");
}

TEST_F(CmpiObjectPathTest, GoesToStreamsAsItsText) {
    std::ostringstream out;
    out << path();
    EXPECT_EQ(out.str(), path().str());
}

TEST_F(CmpiObjectPathTest, IsEqualToItsLike) {
    const CmpiObjectPath made = path();
    EXPECT_EQ(made, path());
    EXPECT_EQ(made, made);
    EXPECT_EQ(made, made.clone());
    EXPECT_EQ(CmpiObjectPath(), CmpiObjectPath());
    EXPECT_FALSE(made == CmpiObjectPath());
    EXPECT_FALSE(CmpiObjectPath() == made);
}

TEST_F(CmpiObjectPathTest, NamesCompareWithoutCaseButAllCount) {
    CmpiObjectPath other = path();
    other.setClassName("pyl_FAN");
    other.setNameSpace("ROOT/ktq");
    EXPECT_EQ(other, path());
    other.setHost("host");
    EXPECT_FALSE(other == path());
    CmpiObjectPath sameHost = path();
    sameHost.setHost("HOST");
    EXPECT_EQ(other, sameHost);
    other.setNameSpace("interop");
    EXPECT_FALSE(other == sameHost);
    other.setNameSpace("root/ktq");
    other.setClassName("PYL_Fan2");
    EXPECT_FALSE(other == sameHost);
}

TEST_F(CmpiObjectPathTest, KeysCompareInAnyOrderAndCaseOfName) {
    CmpiObjectPath other = classPath();
    other.addKey("slot", 2U);
    other.addKey("DEVICEID", "1");
    EXPECT_EQ(other, path());
}

TEST_F(CmpiObjectPathTest, KeysAreEqualAcrossIntegerWidths) {
    EXPECT_EQ(withKey("K", 2U), withKey("K", 2LL));
    EXPECT_EQ(withKey("K", static_cast<unsigned char>(2)), withKey("K", 2ULL));
    EXPECT_FALSE(withKey("K", 2U) == withKey("K", 3U));
    EXPECT_FALSE(withKey("K", -1) == withKey("K", 0xFFFFFFFFU));
}

TEST_F(CmpiObjectPathTest, KeysOfAnotherTypeOrTextDiffer) {
    EXPECT_FALSE(withKey("K", "2") == withKey("K", 2U));
    EXPECT_FALSE(withKey("K", "a") == withKey("K", "A"));
    EXPECT_FALSE(withKey("K", true) == withKey("K", 1));
}

TEST_F(CmpiObjectPathTest, KeysDifferInNumberOrName) {
    EXPECT_FALSE(withKey("K", 1) == classPath());
    EXPECT_FALSE(withKey("K", 1) == withKey("L", 1));
    CmpiObjectPath two = withKey("K", 1);
    two.addKey("L", 1);
    EXPECT_FALSE(two == withKey("K", 1));
    EXPECT_FALSE(withKey("K", 1) == two) << "nor does the one that has fewer";
}

TEST_F(CmpiObjectPathTest, ReferencesAreEqualByTheirPaths) {
    CmpiObjectPath other = path();
    EXPECT_EQ(withKey("K", path()), withKey("K", other));
    other.setHost("h");
    EXPECT_FALSE(withKey("K", path()) == withKey("K", other));
}

}  // namespace
}  // namespace CmpiCpp
