#include "cimhost/objects/BrokerTables.h"

#include <pthread.h>

#include <bit>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <unordered_map>

// None of these functions is noexcept and none catches what it did not throw: a thread that exits
// or is cancelled unwinds through them.
namespace cimhost {

namespace {

static_assert(sizeof(pthread_t) == sizeof(void*));
static_assert(std::is_same_v<pthread_once_t, int> && PTHREAD_ONCE_INIT == 0);

// Names of libraries are few. They live as long as the process, for the broker owns them and does
// not know when a provider is done with one.
char* internedName(const std::string& name) {
    static std::mutex mutex;
    static std::unordered_map<std::string, std::unique_ptr<char[]>> names;
    const std::lock_guard lock(mutex);
    auto& kept = names[name];
    if (!kept) {
        kept = std::make_unique<char[]>(name.size() + 1);
        name.copy(kept.get(), name.size());
    }
    return kept.get();
}

char* resolveFileName(const char* name) {
    if (!name || !*name || std::strchr(name, '/')) return nullptr;
    try {
        return internedName("lib" + std::string(name) + ".so");
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

pthread_t threadOf(CMPI_THREAD_TYPE thread) { return reinterpret_cast<pthread_t>(thread); }

CMPI_THREAD_TYPE newThread(CMPIThreadFunc start, void* parameter, int detached) {
    pthread_attr_t attributes;
    if (!start || pthread_attr_init(&attributes) != 0) return nullptr;
    pthread_attr_setdetachstate(&attributes,
                                detached ? PTHREAD_CREATE_DETACHED : PTHREAD_CREATE_JOINABLE);
    pthread_t thread{};
    const int failure = pthread_create(&thread, &attributes, start, parameter);
    pthread_attr_destroy(&attributes);
    return failure == 0 ? std::bit_cast<CMPI_THREAD_TYPE>(thread) : nullptr;
}

int joinThread(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN* value) {
    return thread ? pthread_join(threadOf(thread), value) : EINVAL;
}

int exitThread(CMPI_THREAD_RETURN value) { pthread_exit(value); }

int cancelThread(CMPI_THREAD_TYPE thread) {
    return thread ? pthread_cancel(threadOf(thread)) : EINVAL;
}

// A thread that is cancelled here leaves the frame without the clean-up that AddressSanitizer would
// need to know that its variable is gone.
[[gnu::no_sanitize_address]] int threadSleep(CMPIUint32 milliseconds) {
    timespec rest{static_cast<time_t>(milliseconds / 1000),
                  static_cast<long>(milliseconds % 1000) * 1'000'000};
    int failure = 0;
    do {
        failure = clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest);
    } while (failure == EINTR);
    return failure;
}

int threadOnce(int* flag, CMPIThreadOnceFunc function) {
    return flag && function ? pthread_once(flag, function) : EINVAL;
}

// Where the highest byte comes first, the bytes that were written are the high half of an
// eight-byte key, and all of a shorter one. Keys are small numbers: the other half is zero.
pthread_key_t keyOf(CMPI_THREAD_KEY_TYPE key) {
    if constexpr (std::endian::native == std::endian::big) key |= key >> 32U;
    return static_cast<pthread_key_t>(key);
}

int createThreadKey(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup) {
    if (!key) return EINVAL;
    pthread_key_t created{};
    const int failure = pthread_key_create(&created, cleanup);
    // Four bytes: the caller's key may have no more, and the longer ones are zero by then.
    if (failure == 0) std::memcpy(key, &created, sizeof created);
    return failure;
}

int destroyThreadKey(CMPI_THREAD_KEY_TYPE key) { return pthread_key_delete(keyOf(key)); }

void* getThreadSpecific(CMPI_THREAD_KEY_TYPE key) { return pthread_getspecific(keyOf(key)); }

int setThreadSpecific(CMPI_THREAD_KEY_TYPE key, void* value) {
    return pthread_setspecific(keyOf(key), value);
}

CMPI_MUTEX_TYPE newMutex(int) {
    auto* const mutex = new (std::nothrow) pthread_mutex_t;
    pthread_mutexattr_t attributes;
    if (!mutex || pthread_mutexattr_init(&attributes) != 0) {
        delete mutex;
        return nullptr;
    }
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int failure = pthread_mutex_init(mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    if (failure == 0) return mutex;
    delete mutex;
    return nullptr;
}

pthread_mutex_t* mutexOf(CMPI_MUTEX_TYPE mutex) { return static_cast<pthread_mutex_t*>(mutex); }

// A mutex or condition that is in use is not destroyed.
int destroyMutex2(CMPI_MUTEX_TYPE mutex) {
    if (!mutex) return EINVAL;
    const int failure = pthread_mutex_destroy(mutexOf(mutex));
    if (failure == 0) delete mutexOf(mutex);
    return failure;
}

int lockMutex2(CMPI_MUTEX_TYPE mutex) {
    return mutex ? pthread_mutex_lock(mutexOf(mutex)) : EINVAL;
}

int unlockMutex2(CMPI_MUTEX_TYPE mutex) {
    return mutex ? pthread_mutex_unlock(mutexOf(mutex)) : EINVAL;
}

void destroyMutex(CMPI_MUTEX_TYPE mutex) { destroyMutex2(mutex); }
void lockMutex(CMPI_MUTEX_TYPE mutex) { lockMutex2(mutex); }
void unlockMutex(CMPI_MUTEX_TYPE mutex) { unlockMutex2(mutex); }

CMPI_COND_TYPE newCondition(int) {
    auto* const condition = new (std::nothrow) pthread_cond_t;
    if (condition && pthread_cond_init(condition, nullptr) != 0) {
        delete condition;
        return nullptr;
    }
    return condition;
}

pthread_cond_t* conditionOf(CMPI_COND_TYPE condition) {
    return static_cast<pthread_cond_t*>(condition);
}

int destroyCondition2(CMPI_COND_TYPE condition) {
    if (!condition) return EINVAL;
    const int failure = pthread_cond_destroy(conditionOf(condition));
    if (failure == 0) delete conditionOf(condition);
    return failure;
}

void destroyCondition(CMPI_COND_TYPE condition) { destroyCondition2(condition); }

int condWait(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex) {
    if (!condition || !mutex) return EINVAL;
    return pthread_cond_wait(conditionOf(condition), mutexOf(mutex));
}

int timedCondWait(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex, timespec* limit) {
    if (!condition || !mutex || !limit) return EINVAL;
    return pthread_cond_timedwait(conditionOf(condition), mutexOf(mutex), limit);
}

int signalCondition(CMPI_COND_TYPE condition) {
    return condition ? pthread_cond_signal(conditionOf(condition)) : EINVAL;
}

}  // namespace

const CMPIBrokerExtFT systemTable = {
    CMPICurrentVersion, resolveFileName,   newThread,        joinThread,      exitThread,
    cancelThread,       threadSleep,       threadOnce,       createThreadKey, destroyThreadKey,
    getThreadSpecific,  setThreadSpecific, newMutex,         destroyMutex,    lockMutex,
    unlockMutex,        newCondition,      destroyCondition, condWait,        timedCondWait,
    signalCondition,    destroyMutex2,     lockMutex2,       unlockMutex2,    destroyCondition2,
};

}  // namespace cimhost
