#include "toolkit/Properties.h"

namespace PYL {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

CmpiInstance makeInstanceAt(const CmpiObjectPath& path) {
    return CmpiCpp::makeCmpiInstance(localBroker(), path);
}

void setKnown(CmpiInstance& instance, const char* name, const std::string& text) {
    if (!text.empty()) instance.setProperty(name, text);
}

}  // namespace PYL
