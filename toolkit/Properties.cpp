#include "toolkit/Properties.h"

namespace PYL {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiObjectPath;

CmpiInstance makeInstanceAt(const CmpiObjectPath& path) {
    auto instance = CmpiCpp::makeCmpiInstance(localBroker(), path);
    const unsigned int keys = path.getKeyCount();
    for (unsigned int i = 0; i < keys; ++i) {
        const auto [name, value] = path.getKeyAt(i);
        instance.setProperty(name, value);
    }
    return instance;
}

void setKnown(CmpiInstance& instance, const char* name, const std::string& text) {
    if (!text.empty()) instance.setProperty(name, text);
}

}  // namespace PYL
