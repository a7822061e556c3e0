#include "common/detail/IndicationValues.h"

#include "common/PYLUtil.h"

#include <chrono>

namespace PYL {

using CmpiCpp::CmpiArray;

namespace {

template <typename Element>
CmpiArray makeArray(std::span<const Element> elements, CMPIType type) {
    const auto size = static_cast<unsigned int>(elements.size());
    auto array = CmpiCpp::makeCmpiArray(indicationBroker(), size, type);
    for (unsigned int index = 0; index < size; ++index) array.setElementAt(index, elements[index]);
    return array;
}

}  // namespace

CmpiCpp::CmpiBroker indicationBroker() noexcept {
    return CmpiCpp::CmpiBroker(PYLUtil::getBroker());
}

CmpiCpp::CmpiDateTime presentSecond() {
    using std::chrono::system_clock;
    const auto second = std::chrono::floor<std::chrono::seconds>(system_clock::now());
    return CmpiCpp::makeCmpiDateTime(indicationBroker(), second.time_since_epoch(), false);
}

CmpiArray stringArray(std::span<const std::string> texts) { return makeArray(texts, CMPI_string); }

CmpiArray uint16Array(std::span<const unsigned short> numbers) {
    return makeArray(numbers, CMPI_uint16);
}

}  // namespace PYL
