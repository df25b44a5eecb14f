#pragma once

#include <mutex>

namespace KAXML {

/// A mutual-exclusion lock that one thread may take several times (a critical section).
class ThreadLock {
  public:
    ThreadLock() = default;
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;
    virtual ~ThreadLock() = default;

    void Obtain() { m_mutex.lock(); }
    void Release() noexcept { m_mutex.unlock(); }

  private:
    // A logging callback that is told of a failure inside the lock may use what the lock guards.
    std::recursive_mutex m_mutex;
};

} // namespace KAXML
