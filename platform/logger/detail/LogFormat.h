#pragma once

#include "platform/logger/LogArgument.h"

#include <span>
#include <string>

/// The text of a log line: the format with its arguments put in, by the rules that Logger states.
/// A null format reads "(null)". Throws only when memory is short.
std::string formatLogText(const char* format, std::span<const LogArgument> arguments);
