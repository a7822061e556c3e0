#include "common/AutoMutex.h"

namespace PYL {

AutoMutex::AutoMutex(pthread_mutex_t& mutex) noexcept : _mutex(mutex) {
    pthread_mutex_lock(&_mutex);
}

AutoMutex::~AutoMutex() { pthread_mutex_unlock(&_mutex); }

}  // namespace PYL
