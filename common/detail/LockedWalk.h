#pragma once

#include "common/AutoMutex.h"
#include "platform/logger/Logger.h"

#include <pthread.h>

namespace PYL {

/// The frame of every delivering operation of the instance collection: runs `walk`, which answers
/// how many objects it delivered, under the lock, and logs the outcome after the unlock.
/// What the walk throws is logged with `exceptionLine` under the lock and goes on unchanged.
template <typename Walk>
int lockedWalk(pthread_mutex_t& mutex, const Logger& log, const char* operation,
               const char* exceptionLine, Walk walk) {
    int count = 0;
    {
        const AutoMutex lock(mutex);
        try {
            count = walk();
        } catch (...) {
            log.error(exceptionLine);
            throw;
        }
    }
    if (count == 0) {
        log.info("%s() nothing to deliver", operation);
    } else {
        log.info("%s() delivered: %d", operation, count);
    }
    return count;
}

}  // namespace PYL
