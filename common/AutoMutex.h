#pragma once

#include "pylcommon_export.h"

#include <pthread.h>

namespace PYL {

/// Holds a pthread mutex from its construction to its destruction. The mutex must outlive it.
class PYL_EXPORT AutoMutex {
public:
    /// Locks, waiting as long as it takes.
    explicit AutoMutex(pthread_mutex_t& mutex) noexcept;
    ~AutoMutex();
    AutoMutex(const AutoMutex&) = delete;
    AutoMutex& operator=(const AutoMutex&) = delete;

private:
    pthread_mutex_t& _mutex;
};

}  // namespace PYL
