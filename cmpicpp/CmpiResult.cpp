#include "cmpicpp/CmpiResult.h"

namespace CmpiCpp {

CmpiResult::~CmpiResult() = default;

}  // namespace CmpiCpp
