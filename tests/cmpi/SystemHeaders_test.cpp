// Compiled with PYL_SYSTEM_CMPI. Had our headers declared anything beside the system's, the structs
// would be there twice and this would not compile.

#include "cmpi/cmpidt.h"

#ifndef PYL_STAND_IN_CMPIDT
#error "cmpi/cmpidt.h is not the system's"
#endif
#ifdef PYL_STAND_IN_CMPIFT
#error "cmpi/cmpidt.h brought more than itself"
#endif

#include "cmpi/cmpift.h"

#ifndef PYL_STAND_IN_CMPIFT
#error "cmpi/cmpift.h is not the system's"
#endif

#include "cmpi/cmpimacs.h"

#ifndef PYL_STAND_IN_CMPIMACS
#error "cmpi/cmpimacs.h is not the system's"
#endif

#include <gtest/gtest.h>

extern "C" CMPIStatus returnNotFound();

namespace {

TEST(SystemHeaders, ServeCAndCpp) {
    EXPECT_EQ(returnNotFound().rc, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(sizeof(CMPIBroker), 40u);
}

}  // namespace
