#include "common/PYLConstants.h"

namespace PYL {

constinit const char* const PRPNameSpace = "interop";

}  // namespace PYL
