#include "cimhost/objects/ContextHandle.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/BrokerFixture.h"

#include <set>

namespace cimhost {
namespace {

class ContextHandle : public BrokerTest {
protected:
    ContextHandle() {
        RequestContext request;
        request.nameSpace = "root/test";
        request.principal = "somebody";
        request.acceptLanguage = "de";
        request.flags = CMPI_FLAG_DeepInheritance;
        context = makeContext(realBroker, request);
    }

    CMPIData entry(const char* name) { return context->ft->getEntry(context, name, &status); }
    CMPIStatus add(const char* name, const char* text) {
        return context->ft->addEntry(context, name, charsValue(text), CMPI_chars);
    }

    CMPIContext* context;
};

TEST_F(ContextHandle, HasTheEntriesThatCmpiNames) {
    EXPECT_EQ(textOf(entry(CMPIInitNameSpace).value.string), "root/test");
    EXPECT_EQ(textOf(entry(CMPIPrincipal).value.string), "somebody");
    EXPECT_EQ(textOf(entry(CMPIRole).value.string), "");
    EXPECT_EQ(textOf(entry(CMPIAcceptLanguage).value.string), "de");
    EXPECT_EQ(textOf(entry(CMPIContentLanguage).value.string), "");
    const CMPIData flags = entry(CMPIInvocationFlags);
    EXPECT_EQ(flags.type, CMPI_uint32);
    EXPECT_EQ(flags.value.uint32, static_cast<CMPIUint32>(CMPI_FLAG_DeepInheritance));
    EXPECT_EQ(context->ft->getEntryCount(context, &status), 6U);
}

TEST_F(ContextHandle, ListsEachEntryOnce) {
    std::set<std::string> names;
    for (CMPICount i = 0; i < context->ft->getEntryCount(context, nullptr); ++i) {
        CMPIString* name = nullptr;
        context->ft->getEntryAt(context, i, &name, &status);
        EXPECT_EQ(status, CMPI_RC_OK);
        names.insert(textOf(name));
    }
    EXPECT_EQ(names, (std::set<std::string>{CMPIInitNameSpace, CMPIInvocationFlags, CMPIPrincipal,
                                            CMPIRole, CMPIAcceptLanguage, CMPIContentLanguage}));
    context->ft->getEntryAt(context, 6, nullptr, &status);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(ContextHandle, LeavesOutUserAndNamespaceThatItDoesNotKnow) {
    context = makeContext(realBroker, {});
    entry(CMPIPrincipal);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    entry(CMPIInitNameSpace);
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(context->ft->getEntryCount(context, &status), 4U);
}

TEST_F(ContextHandle, AnswersNoSuchPropertyForWhatIsAbsent) {
    entry("Nothing");
    EXPECT_EQ(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    entry(nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ContextHandle, AddsAndReplacesEntries) {
    EXPECT_EQ(add("Mine", "a"), CMPI_RC_OK);
    EXPECT_EQ(add("MINE", "b"), CMPI_RC_OK);
    EXPECT_EQ(textOf(entry("mine").value.string), "b");
    EXPECT_EQ(context->ft->getEntryCount(context, &status), 7U);
    EXPECT_EQ(context->ft->addEntry(context, "Mine", nullptr, CMPI_uint8), CMPI_RC_OK);
    EXPECT_EQ(entry("Mine").state, CMPI_nullValue);
    EXPECT_EQ(context->ft->addEntry(context, "X", nullptr, CMPI_enumeration),
              CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(add(nullptr, "a"), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(ContextHandle, PassesEntriesThatCmpiNamesToUpCalls) {
    const CMPIValue flags = uint32Value(CMPI_FLAG_LocalOnly);
    EXPECT_EQ(context->ft->addEntry(context, "cmpiinvocationflags", &flags, CMPI_uint32),
              CMPI_RC_OK);
    EXPECT_EQ(add(CMPIInitNameSpace, "root/other"), CMPI_RC_OK);
    EXPECT_EQ(add(CMPIContentLanguage, "fr"), CMPI_RC_OK);
    EXPECT_EQ(add(CMPIRole, "operator"), CMPI_RC_OK);
    EXPECT_EQ(modelOf(context).flags, static_cast<CMPIFlags>(CMPI_FLAG_LocalOnly));
    EXPECT_EQ(modelOf(context).nameSpace, "root/other");
    EXPECT_EQ(modelOf(context).contentLanguage, "fr");
    EXPECT_EQ(textOf(entry(CMPIRole).value.string), "operator");
    EXPECT_EQ(context->ft->getEntryCount(context, &status), 6U);
}

TEST_F(ContextHandle, KeepsTheTypesOfEntriesThatCmpiNames) {
    const CMPIValue number = uint32Value(1);
    EXPECT_EQ(context->ft->addEntry(context, CMPIPrincipal, &number, CMPI_uint32),
              CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(context->ft->addEntry(context, CMPIInvocationFlags, &number, CMPI_uint64),
              CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(textOf(entry(CMPIPrincipal).value.string), "somebody");
    EXPECT_EQ(context->ft->addEntry(context, CMPIInvocationFlags, nullptr, CMPI_uint32),
              CMPI_RC_OK);
    EXPECT_EQ(modelOf(context).flags, 0U);
}

TEST_F(ContextHandle, KeepsWhereRawBytesLie) {
    int bytes = 5;
    CMPIValue value{};
    value.dataPtr = {&bytes, sizeof bytes};
    EXPECT_EQ(context->ft->addEntry(context, "Bytes", &value, CMPI_ptr), CMPI_RC_OK);
    const CMPIData data = entry("Bytes");
    EXPECT_EQ(data.type, CMPI_ptr);
    EXPECT_EQ(data.value.dataPtr.ptr, &bytes);
    EXPECT_EQ(data.value.dataPtr.length, sizeof bytes);
}

TEST_F(ContextHandle, ClonesAreIndependent) {
    add("Mine", "a");
    CMPIContext* const copy = context->ft->clone(context, &status);
    add("Mine", "b");
    EXPECT_EQ(textOf(copy->ft->getEntry(copy, "Mine", &status).value.string), "a");
    EXPECT_EQ(textOf(copy->ft->getEntry(copy, CMPIPrincipal, &status).value.string), "somebody");
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(ContextHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    CMPIContext foreign = foreignHandle(context);
    const CMPIValue number = uint32Value(1);
    for (CMPIContext* const bad : {static_cast<CMPIContext*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        context->ft->getEntry(bad, CMPIRole, &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        status = {CMPI_RC_OK, nullptr};
        context->ft->getEntryAt(bad, 0, nullptr, &status);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(context->ft->getEntryCount(bad, &status), 0U);
        EXPECT_EQ(context->ft->addEntry(bad, "X", &number, CMPI_uint32),
                  CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(context->ft->clone(bad, &status), nullptr);
        EXPECT_EQ(context->ft->release(bad), CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_THROW(modelOf(bad), CimError);
    }
}

}  // namespace
}  // namespace cimhost
