/* Two providers of associations: one answers, the other serves another class and says so. */
#include <cmpidt.h>
#include <cmpift.h>
#include <cmpimacs.h>

static const CMPIBroker* broker;

static CMPIStatus answer(const CMPIResult* result, const CMPIObjectPath* path) {
    CMPIObjectPath* made =
        CMNewObjectPath(broker, CMGetCharPtr(CMGetNameSpace(path, NULL)), "TST_Thing", NULL);
    CMPIString* name = CMNewString(broker, "found", NULL);
    CMAddKey(made, "Name", &name, CMPI_string);
    CMReturnObjectPath(result, made);
    return CMReturnDone(result);
}

static CMPIStatus GuestAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* context,
                                          CMPIBoolean terminating) {
    (void)mi;
    (void)context;
    (void)terminating;
    CMReturn(CMPI_RC_OK);
}

static CMPIStatus GuestAssociators(CMPIAssociationMI* mi, const CMPIContext* context,
                                   const CMPIResult* result, const CMPIObjectPath* path,
                                   const char* associationClass, const char* resultClass,
                                   const char* role, const char* resultRole,
                                   const char** properties) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    (void)associationClass;
    (void)resultClass;
    (void)role;
    (void)resultRole;
    (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char* associationClass, const char* resultClass,
                                       const char* role, const char* resultRole) {
    (void)mi;
    (void)context;
    (void)associationClass;
    (void)resultClass;
    (void)role;
    (void)resultRole;
    return answer(result, path);
}

static CMPIStatus GuestReferences(CMPIAssociationMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* associationClass, const char* role,
                                  const char** properties) {
    (void)mi;
    (void)context;
    (void)result;
    (void)path;
    (void)associationClass;
    (void)role;
    (void)properties;
    CMReturn(CMPI_RC_ERR_NOT_SUPPORTED);
}

static CMPIStatus GuestReferenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* associationClass, const char* role) {
    (void)mi;
    (void)context;
    (void)associationClass;
    (void)role;
    return answer(result, path);
}

static CMPIStatus ShyAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* associationClass, const char* resultClass,
                                     const char* role, const char* resultRole) {
    return GuestAssociators(mi, context, result, path, associationClass, resultClass, role,
                            resultRole, NULL);
}

static CMPIStatus ShyReferenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                                    const CMPIResult* result, const CMPIObjectPath* path,
                                    const char* associationClass, const char* role) {
    return GuestReferences(mi, context, result, path, associationClass, role, NULL);
}

#define ShyAssociationCleanup GuestAssociationCleanup
#define ShyAssociators GuestAssociators
#define ShyReferences GuestReferences

CMAssociationMIStub(Guest, AnsweringGuest, broker, CMNoHook)

    CMAssociationMIStub(Shy, ShyGuest, broker, CMNoHook)
