#include "cimhost/http/AccessLog.h"

#include "cimhost/http/Timestamp.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace cimhost {
namespace {

constexpr std::size_t maximumFieldBytes = 512;

bool isPlain(char character) noexcept {
    return character > 0x20 && character < 0x7F && character != '"' && character != '\\';
}

void appendField(std::string& line, std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    line += ' ';
    if (text.empty()) line += '-';
    for (const char character : text.substr(0, maximumFieldBytes)) {
        const auto byte = static_cast<unsigned char>(character);
        if (isPlain(character)) {
            line += character;
        } else {
            line.append({'%', digits[byte >> 4U], digits[byte & 15U]});
        }
    }
    if (text.size() > maximumFieldBytes) line += "...";
}

}  // namespace

AccessLog::AccessLog(const std::string& file) : _descriptor(STDOUT_FILENO), _owned(file != "-") {
    if (!_owned) return;
    _descriptor = open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (_descriptor < 0) {
        throw std::system_error(errno, std::generic_category(),
                                "cannot open the access log " + file);
    }
}

AccessLog::~AccessLog() {
    if (_owned) close(_descriptor);
}

void AccessLog::write(const AccessRecord& record) noexcept try {
    std::string line = formatAccess(record, std::chrono::system_clock::now());
    line += '\n';
    while (::write(_descriptor, line.data(), line.size()) < 0 && errno == EINTR) {
    }
} catch (const std::exception&) {
    // Out of memory: the line is lost, as promised.
}

std::string formatAccess(const AccessRecord& record, std::chrono::system_clock::time_point time) {
    std::string line = formatTimestamp(time);
    for (const std::string_view text :
         {record.peer, record.user, record.operation, record.object}) {
        appendField(line, text);
    }
    line.append(" ").append(std::to_string(record.status));
    appendField(line, record.outcome);
    line.append(" ").append(std::to_string(record.bytes)).append("B ");
    line.append(std::to_string(record.duration.count())).append("us");
    return line;
}

}  // namespace cimhost
