#pragma once

/// What is known of the broker while it is asked for all instances of a class. Not installed.
namespace CmpiCpp {

/// An enumeration that runs in this thread. It makes many instances, and to look at a key of each
/// is a tenth of its work: what one of them shows holds for the others.
class Enumeration {
public:
    Enumeration() noexcept : _outer(current) { current = this; }
    Enumeration(const Enumeration&) = delete;
    Enumeration& operator=(const Enumeration&) = delete;
    ~Enumeration() { current = _outer; }

    /// Whether an instance made since the enumeration began had its keys from the broker. Without
    /// an enumeration nothing is known: the next instance may be another broker's.
    static bool brokerFillsKeys() noexcept { return current && current->_fillsKeys; }
    static void rememberFilledKeys() noexcept {
        if (current) current->_fillsKeys = true;
    }

private:
    inline static thread_local constinit Enumeration* current = nullptr;

    Enumeration* _outer;
    bool _fillsKeys = false;
};

}  // namespace CmpiCpp
