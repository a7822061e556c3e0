#pragma once

#include "cimhost/http/Stream.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <string>

namespace cimhost {

/// The in-memory twin of a connection: gives what the test put in, piece by piece, then the end of
/// the stream, and keeps what was sent.
class MemoryStream final : public Stream {
public:
    std::deque<std::string> incoming;
    std::string sent;
    std::size_t sendCount = 0;
    std::size_t waits = 0;  ///< sends that may have waited for the peer
    bool isSilent = false;  ///< after `incoming`, nothing comes until the deadline
    bool isLost = false;    ///< each send fails
    std::size_t takesAtOnce = std::string::npos;  ///< so many bytes without a wait, and no more
    bool hasEnded = false;
    bool isEnded = false;          ///< the peer is gone
    Clock::time_point deadline;    ///< of the last send that may have had to wait
    std::function<void()> onSend;  ///< called before bytes are sent that may have to wait

    void establish(Clock::time_point) override {}

    std::size_t receive(std::span<char> buffer, Clock::time_point) override {
        if (incoming.empty() && isSilent) throw StreamError(StreamError::Kind::timeout, "silence");
        if (incoming.empty()) return 0;
        const std::string_view rest = std::string_view(incoming.front()).substr(_taken);
        const std::size_t count = std::min(buffer.size(), rest.size());
        std::copy_n(rest.data(), count, buffer.data());
        _taken += count;
        if (count == rest.size()) {
            incoming.pop_front();
            _taken = 0;
        }
        return count;
    }

    void send(std::span<const std::string_view> pieces, Clock::time_point time) override {
        deadline = time;
        if (isLost) throw StreamError(StreamError::Kind::lost, "gone");
        ++sendCount;
        ++waits;
        if (onSend) onSend();
        for (const std::string_view piece : pieces) sent.append(piece);
    }

    std::size_t trySend(std::span<const std::string_view> pieces) override {
        if (isLost) throw StreamError(StreamError::Kind::lost, "gone");
        ++sendCount;
        std::size_t taken = 0;
        for (const std::string_view piece : pieces) {
            const std::string_view part = piece.substr(0, takesAtOnce);
            sent.append(part);
            taken += part.size();
            if (takesAtOnce != std::string::npos) takesAtOnce -= part.size();
        }
        return taken;
    }

    bool hasPeerEnded() const noexcept override { return isEnded; }

    void endSending() noexcept override { hasEnded = true; }

private:
    std::size_t _taken = 0;  ///< of the first piece
};

}  // namespace cimhost
