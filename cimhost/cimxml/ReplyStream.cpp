#include "cimhost/cimxml/ReplyStream.h"

namespace cimhost {

void ReplyStream::flush() {
    // A sink that writes on after a failure gets the same failure again.
    if (_failure) std::rethrow_exception(_failure);
    try {
        _reply.write(_buffer.view());
    } catch (...) {
        _failure = std::current_exception();
        throw;
    }
    _buffer.clear();
}

bool ReplyStream::restart() {
    _buffer.clear();
    if (!_reply.restart()) return false;
    _failure = nullptr;
    return true;
}

}  // namespace cimhost
