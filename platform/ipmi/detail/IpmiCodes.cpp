#include "platform/ipmi/detail/IpmiCodes.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace ipmi {

namespace {

struct CodeRow {
    std::uint8_t code;
    const char* text;
};

constexpr auto codeRows = std::to_array<CodeRow>({
    {0xC0, "the controller is busy"},
    {0xC1, "the controller does not know the command"},
    {0xC2, "the controller does not take the command for this LUN"},
    {0xC3, "the controller ran out of time"},
    {0xC4, "the controller is out of space"},
    {0xC5, "the reservation is gone"},
    {0xC6, "the request was cut short"},
    {0xC7, "the request has the wrong length"},
    {0xC8, "a field of the request is too long"},
    {0xC9, "a number of the request is out of range"},
    {0xCA, "the answer is too long"},
    {0xCB, "there is no such record"},
    {0xCC, "a field of the request makes no sense"},
    {0xCD, "the command makes no sense for this record"},
    {0xCE, "the controller has no answer"},
    {0xCF, "the request was a repetition"},
    {0xD0, "the data are being brought up to date"},
    {0xD1, "the controller's firmware is being brought up to date"},
    {0xD2, "the controller is starting"},
    {0xD3, "the destination is not there"},
    {0xD4, "the controller does not allow it"},
    {0xD5, "the controller cannot do it now"},
    {0xD6, "the function is switched off"},
    {0xFF, "the controller does not say why"},
});

}  // namespace

std::string completionText(int status) {
    const auto code = static_cast<std::uint8_t>(status);
    char number[32];
    std::snprintf(number, sizeof number, " (completion code %02Xh)", static_cast<unsigned>(code));
    for (const auto& row : codeRows) {
        if (row.code == code) return std::string(row.text) + number;
    }
    return std::string("the controller refused") + number;
}

}  // namespace ipmi
