#pragma once

#include <mutex>

namespace KAXML {

/// A mutual-exclusion lock. A thread that holds it must not take it again.
class ThreadLock {
  public:
    ThreadLock() = default;
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;
    virtual ~ThreadLock() = default;

    void Obtain() { m_mutex.lock(); }
    void Release() noexcept { m_mutex.unlock(); }

  private:
    std::mutex m_mutex;
};

} // namespace KAXML
