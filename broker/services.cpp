// The broker's operating system services (threads, mutexes, conditions) and memory functions.
#include "object.h"
#include "tables.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <pthread.h>
#include <time.h>

namespace broker {

namespace {

// POSIX threads as CMPI's untyped handles.
pthread_t threadOf(void* thread) {
    return reinterpret_cast<pthread_t>(thread);
}

void* newThread(CMPIThreadFunc function, void* parameter, int detached) {
    pthread_t thread{};
    if (function == nullptr || pthread_create(&thread, nullptr, function, parameter) != 0)
        return nullptr;
    if (detached != 0)
        pthread_detach(thread);
    return reinterpret_cast<void*>(thread);
}

int joinThread(void* thread, void** result) {
    return pthread_join(threadOf(thread), result);
}

int exitThread(void* result) {
    pthread_exit(result);
}

int cancelThread(void* thread) {
    return pthread_cancel(threadOf(thread));
}

int threadSleep(CMPIUint32 milliseconds) {
    const timespec time{.tv_sec = static_cast<time_t>(milliseconds / 1000),
                        .tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000};
    return nanosleep(&time, nullptr) == 0 ? 0 : errno;
}

int threadOnce(int* once, CMPIThreadOnceFunc function) {
    static_assert(sizeof(pthread_once_t) == sizeof(int));
    return pthread_once(reinterpret_cast<pthread_once_t*>(once), function);
}

int createThreadKey(unsigned int* key, CMPIThreadKeyCleanupFunc cleanup) {
    return pthread_key_create(key, cleanup);
}

int destroyThreadKey(unsigned int key) {
    return pthread_key_delete(key);
}

void* getThreadSpecific(unsigned int key) {
    return pthread_getspecific(key);
}

int setThreadSpecific(unsigned int key, void* value) {
    return pthread_setspecific(key, value);
}

pthread_mutex_t* mutexOf(void* mutex) {
    return static_cast<pthread_mutex_t*>(mutex);
}

pthread_cond_t* conditionOf(void* condition) {
    return static_cast<pthread_cond_t*>(condition);
}

void* newMutex(int) {
    auto* mutex = static_cast<pthread_mutex_t*>(std::malloc(sizeof(pthread_mutex_t)));
    if (mutex != nullptr)
        pthread_mutex_init(mutex, nullptr);
    return mutex;
}

int destroyMutex2(void* mutex) {
    if (mutex == nullptr)
        return EINVAL;
    const int result = pthread_mutex_destroy(mutexOf(mutex));
    std::free(mutex);
    return result;
}

int lockMutex2(void* mutex) {
    return mutex != nullptr ? pthread_mutex_lock(mutexOf(mutex)) : EINVAL;
}

int unlockMutex2(void* mutex) {
    return mutex != nullptr ? pthread_mutex_unlock(mutexOf(mutex)) : EINVAL;
}

void* newCondition(int) {
    auto* condition = static_cast<pthread_cond_t*>(std::malloc(sizeof(pthread_cond_t)));
    if (condition != nullptr)
        pthread_cond_init(condition, nullptr);
    return condition;
}

int destroyCondition2(void* condition) {
    if (condition == nullptr)
        return EINVAL;
    const int result = pthread_cond_destroy(conditionOf(condition));
    std::free(condition);
    return result;
}

int condWait(void* condition, void* mutex) {
    return condition != nullptr && mutex != nullptr
               ? pthread_cond_wait(conditionOf(condition), mutexOf(mutex))
               : EINVAL;
}

int timedCondWait(void* condition, void* mutex, struct timespec* until) {
    return condition != nullptr && mutex != nullptr && until != nullptr
               ? pthread_cond_timedwait(conditionOf(condition), mutexOf(mutex), until)
               : EINVAL;
}

int signalCondition(void* condition) {
    return condition != nullptr ? pthread_cond_signal(conditionOf(condition)) : EINVAL;
}

// Members that 2.1 gave a result.
template <int (*function)(void*)>
void withoutResult(void* handle) {
    function(handle);
}

template <class Handle>
void freeObject(const CMPIBroker*, Handle* object) {
    if (object != nullptr)
        release(object);
}

} // namespace

const CMPIBrokerExtFT servicesTable{.ftVersion = CMPICurrentVersion,
                                    .resolveFileName = unsupported,
                                    .newThread = newThread,
                                    .joinThread = joinThread,
                                    .exitThread = exitThread,
                                    .cancelThread = cancelThread,
                                    .threadSleep = threadSleep,
                                    .threadOnce = threadOnce,
                                    .createThreadKey = createThreadKey,
                                    .destroyThreadKey = destroyThreadKey,
                                    .getThreadSpecific = getThreadSpecific,
                                    .setThreadSpecific = setThreadSpecific,
                                    .newMutex = newMutex,
                                    .destroyMutex = withoutResult<destroyMutex2>,
                                    .lockMutex = withoutResult<lockMutex2>,
                                    .unlockMutex = withoutResult<unlockMutex2>,
                                    .newCondition = newCondition,
                                    .destroyCondition = withoutResult<destroyCondition2>,
                                    .condWait = condWait,
                                    .timedCondWait = timedCondWait,
                                    .signalCondition = signalCondition,
                                    .destroyMutex2 = destroyMutex2,
                                    .lockMutex2 = lockMutex2,
                                    .unlockMutex2 = unlockMutex2,
                                    .destroyCondition2 = destroyCondition2};

const CMPIBrokerMemFT memoryTable{
    .ftVersion = CMPICurrentVersion,
    .mark = unsupported,
    .release = unsupported,
    .cmpiMalloc = [](const CMPIBroker*, size_t size) { return std::malloc(size); },
    .cmpiCalloc = [](const CMPIBroker*, size_t count, size_t size) { return std::calloc(count, size); },
    .cmpiRealloc = [](const CMPIBroker*, void* memory, size_t size) { return std::realloc(memory, size); },
    .cmpiStrDup = [](const CMPIBroker*,
                     const char* text) { return text != nullptr ? strdup(text) : nullptr; },
    .cmpiFree = [](const CMPIBroker*, void* memory) { std::free(memory); },
    .freeInstance = freeObject,
    .freeObjectPath = freeObject,
    .freeArgs = freeObject,
    .freeString = freeObject,
    .freeArray = freeObject,
    .freeDateTime = freeObject,
    .freeSelectExp = freeObject,
    .freeChars = [](const CMPIBroker*, char* text) { std::free(text); }};

} // namespace broker
