# The Debian packages, by `cpack -G DEB`. packaging/debs makes those of the release; what is here takes any build.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each has its own
set(CPACK_PACKAGE_CONTACT "The pylcommon developers <developers@pylcommon.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
if(PYL_ARCHITECTURE)  # not that of the machine that builds
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE "${PYL_ARCHITECTURE}")
endif()
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# What lies in the other packages of this build has no owner yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/packaging")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/debian/documents.cmake")

set(CPACK_COMPONENTS_ALL runtime development common providers)
if(PYL_BUILD_CIMHOST)
    list(APPEND CPACK_COMPONENTS_ALL cimhost)
endif()

# pyl_package(COMPONENT NAME SECTION DEPENDS DESCRIPTION [control file...])
macro(pyl_package component name section depends description)
    string(TOUPPER ${component} prefix)
    set(CPACK_DEBIAN_${prefix}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${prefix}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${prefix}_PACKAGE_DEPENDS "${depends}")
    set(CPACK_DEBIAN_${prefix}_DESCRIPTION "${description}")
    set(control_files ${ARGN})
    list(TRANSFORM control_files PREPEND "${CMAKE_CURRENT_LIST_DIR}/debian/")
    set(CPACK_DEBIAN_${prefix}_PACKAGE_CONTROL_EXTRA "${control_files}")
endmacro()

set(same "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
pyl_package(runtime libpylcommon${PROJECT_VERSION_MAJOR} libs ""
    "support library for CIM providers that speak CMPI
What provider modules written with it are linked with: managed instances,
associations, alerts, logging, and readers of the host's own data." shlibs triggers)
pyl_package(development libpylcommon-dev libdevel
    "libpylcommon${PROJECT_VERSION_MAJOR} ${same}, pylcommon-common ${same}, python3"
    "support library for CIM providers that speak CMPI - development files
Headers of the library and of the CMPI interface, a CMake package with a
function that makes a provider module, and a pkg-config file.")
pyl_package(common pylcommon-common misc ""
    "support library for CIM providers that speak CMPI - base schema
The classes that those of providers derive from, and pylcommon-register,
which makes provider modules known to an object manager.")
pyl_package(providers pylcommon-providers misc
    "libpylcommon${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION}), pylcommon-common (>= ${PROJECT_VERSION})"
    "CIM providers for a server's base data, fans, status and profiles
Modules for any object manager that speaks CMPI, with their schema and
registrations.")
pyl_package(cimhost cimhost devel "pylcommon-common (>= ${PROJECT_VERSION})"
    "development object manager for CMPI provider modules
Hosts provider modules and answers WBEM clients with CIM-XML. For desks and
test machines: its service is not started unless asked for." prerm)

foreach(component RUNTIME PROVIDERS CIMHOST)
    set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
endforeach()
set(CPACK_DEBIAN_COMMON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "cimhost, libgtest-dev")
# What cimhost box runs.
set(CPACK_DEBIAN_CIMHOST_PACKAGE_SUGGESTS
    "busybox-static, dmidecode, i2c-tools, kmod, openipmi, openssl, pciutils, python3, qemu-system-x86")
include(CPack)
