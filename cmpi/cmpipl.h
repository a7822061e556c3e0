/** The CMPI C interface: what differs between platforms. There is one, so nothing does; providers
 * and headers include it all the same. */
#pragma once
