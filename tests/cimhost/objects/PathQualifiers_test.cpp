#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class PathQualifiers : public BrokerTest {};

TEST_F(PathQualifiers, OfTheClassAreFound) {
    const CMPIObjectPath* const path = newPath();
    const CMPIData data = path->ft->getClassQualifier(path, "description", &status);
    EXPECT_EQ(status, CMPI_RC_OK);
    EXPECT_EQ(textOf(data.value.string), "the base");
}

TEST_F(PathQualifiers, OfPropertiesMethodsAndParametersAreFound) {
    const CMPIObjectPath* const path = newPath("Test_Derived");
    const CMPIData key = path->ft->getPropertyQualifier(path, "NAME", "Key", &status);
    EXPECT_EQ(key.type, CMPI_boolean);
    EXPECT_EQ(key.value.boolean, 1);
    const CMPIData method = path->ft->getMethodQualifier(path, "rename", "Description", &status);
    EXPECT_EQ(textOf(method.value.string), "gives a new name");
    const CMPIData parameter =
        path->ft->getParameterQualifier(path, "Rename", "newname", "Description", &status);
    EXPECT_EQ(textOf(parameter.value.string), "the name to have");
}

TEST_F(PathQualifiers, ThatAreAbsentAnswerNoSuchProperty) {
    const CMPIObjectPath* const path = newPath();
    path->ft->getClassQualifier(path, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    path->ft->getPropertyQualifier(path, "Nothing", "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    path->ft->getMethodQualifier(path, "Nothing", "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_METHOD_NOT_FOUND);
    path->ft->getParameterQualifier(path, "Rename", "Nothing", "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(PathQualifiers, OfAnUnknownClassOrNamespaceTellWhichItIs) {
    const CMPIObjectPath* const path = newPath("Test_Nowhere");
    path->ft->getClassQualifier(path, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_EQ(textOf(status.msg), "class Test_Nowhere is not in namespace root/test");
    path->ft->setNameSpace(path, "root/nowhere");
    path->ft->getClassQualifier(path, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_NAMESPACE);
}

TEST_F(PathQualifiers, NeedAllTheirNames) {
    const CMPIObjectPath* const path = newPath();
    path->ft->getClassQualifier(path, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    path->ft->getPropertyQualifier(path, nullptr, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    path->ft->getMethodQualifier(path, nullptr, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    path->ft->getParameterQualifier(path, "Rename", nullptr, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    path->ft->getClassQualifier(nullptr, "Key", &status);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace cimhost
