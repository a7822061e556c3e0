#include "toolkit/Properties.h"

namespace PYL {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

CmpiInstance makeInstanceAt(const CmpiObjectPath& path) {
    auto instance = CmpiCpp::makeCmpiInstance(localBroker(), path);
    for (unsigned int i = 0; i < path.getKeyCount(); ++i) {
        const auto [name, value] = path.getKeyAt(i);
        instance.setProperty(name, value);
    }
    return instance;
}

void setKnown(CmpiInstance& instance, const char* name, const std::string& text) {
    if (!text.empty()) instance.setProperty(name, text);
}

}  // namespace PYL
