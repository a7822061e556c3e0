/** The CMPI C interface: threads, mutexes and conditions. Their types came in a header of their
 * own, which providers include; here cmpidt.h has them. */
#pragma once

#include "cmpidt.h"
