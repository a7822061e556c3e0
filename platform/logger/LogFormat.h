#pragma once

#include <span>
#include <string>

#include "platform/logger/LogArgument.h"

/// The text of a log line: the format with its arguments put in, by the rules that Logger states.
/// A null format reads "(null)". Throws only when memory is short.
std::string formatLogText(char const* format, std::span<LogArgument const> arguments);
