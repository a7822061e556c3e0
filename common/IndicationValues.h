#pragma once

#include <span>
#include <string>

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiDateTime.h"

/// Values for the properties of indications, made by the broker that PYLUtil::setBroker() recorded.
/// All but indicationBroker() throw its CmpiStatus.
namespace PYL {

CmpiCpp::CmpiBroker indicationBroker() noexcept;

/// The present time, without fractions of a second: consoles compare times as texts.
CmpiCpp::CmpiDateTime presentSecond();

CmpiCpp::CmpiArray stringArray(std::span<std::string const> texts);
CmpiCpp::CmpiArray uint16Array(std::span<unsigned short const> numbers);

}  // namespace PYL
