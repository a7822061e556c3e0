#include "common/IndicationValues.h"

#include <chrono>

#include "common/PYLUtil.h"

namespace PYL {

using CmpiCpp::CmpiArray;

namespace {

template <typename Element>
CmpiArray makeArray(std::span<Element const> elements, CMPIType type) {
    auto const size = static_cast<unsigned int>(elements.size());
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
    auto const second = std::chrono::floor<std::chrono::seconds>(system_clock::now());
    return CmpiCpp::makeCmpiDateTime(indicationBroker(), second.time_since_epoch(), false);
}

CmpiArray stringArray(std::span<std::string const> texts) {
    return makeArray(texts, CMPI_string);
}

CmpiArray uint16Array(std::span<unsigned short const> numbers) {
    return makeArray(numbers, CMPI_uint16);
}

}  // namespace PYL
