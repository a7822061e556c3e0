/* The switch to the system's headers has to work in C too, without a warning. */

#include "cmpi/cmpimacs.h"

#ifndef PYL_STAND_IN_CMPIMACS
#error "cmpi/cmpimacs.h is not the system's"
#endif

CMPIStatus returnNotFound(void);

CMPIStatus returnNotFound(void) { CMReturn(CMPI_RC_ERR_NOT_FOUND); }
