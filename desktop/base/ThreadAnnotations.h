#pragma once

#include <mutex>

// Locks that clang checks (-Wthread-safety): a field says which mutex guards it, a function which one its caller must hold.
// Other compilers see plain locks.

#ifdef __clang__
#define THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define THREAD_ANNOTATION(attribute)
#endif

#define CAPABILITY(name) THREAD_ANNOTATION(capability(name))
#define SCOPED_CAPABILITY THREAD_ANNOTATION(scoped_lockable)
#define GUARDED_BY(mutex) THREAD_ANNOTATION(guarded_by(mutex))
#define REQUIRES(...) THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define ACQUIRE(...) THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define RELEASE(...) THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define NO_THREAD_SAFETY_ANALYSIS THREAD_ANNOTATION(no_thread_safety_analysis)

namespace desktop {

/// A mutex that fields and functions can be annotated with.
class CAPABILITY("mutex") Mutex {
public:
    void lock() ACQUIRE() { m_mutex.lock(); }
    void unlock() RELEASE() { m_mutex.unlock(); }
    std::mutex& native() { return m_mutex; }

private:
    std::mutex m_mutex;
};

/// Holds a mutex from its construction to its end.
class SCOPED_CAPABILITY LockGuard {
public:
    explicit LockGuard(Mutex& mutex) ACQUIRE(mutex)
        : m_mutex(mutex)
    {
        m_mutex.lock();
    }
    ~LockGuard() RELEASE() { m_mutex.unlock(); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;

private:
    Mutex& m_mutex;
};

/// Holds a mutex, but for the times between unlock() and lock() and while a condition variable waits on native().
class SCOPED_CAPABILITY UniqueLock {
public:
    explicit UniqueLock(Mutex& mutex) ACQUIRE(mutex)
        : m_lock(mutex.native())
    {
    }
    ~UniqueLock() RELEASE() = default;
    UniqueLock(const UniqueLock&) = delete;
    UniqueLock& operator=(const UniqueLock&) = delete;

    void lock() ACQUIRE() NO_THREAD_SAFETY_ANALYSIS { m_lock.lock(); }
    void unlock() RELEASE() NO_THREAD_SAFETY_ANALYSIS { m_lock.unlock(); }
    std::unique_lock<std::mutex>& native() { return m_lock; }

private:
    std::unique_lock<std::mutex> m_lock;
};

} // namespace desktop
