#include "common/PYLConstants.h"

namespace PYL {

constinit char const* const PRPNameSpace = "interop";

}  // namespace PYL
