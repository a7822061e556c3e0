#pragma once

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiDateTime.h"

#include <span>
#include <string>

/// Values for the properties of indications, made by the broker that PYLUtil::setBroker() recorded.
/// All but indicationBroker() throw its CmpiStatus.
namespace PYL {

CmpiCpp::CmpiBroker indicationBroker() noexcept;

/// The present time, without fractions of a second: consoles compare times as texts.
CmpiCpp::CmpiDateTime presentSecond();

CmpiCpp::CmpiArray stringArray(std::span<const std::string> texts);
CmpiCpp::CmpiArray uint16Array(std::span<const unsigned short> numbers);

}  // namespace PYL
