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

    void Obtain() {
        // What the lock guards takes less time than it takes to put a thread to sleep and wake it.
        for (int i = 0; i < kTries; ++i)
            if (m_mutex.try_lock())
                return;
        m_mutex.lock();
    }
    void Release() noexcept { m_mutex.unlock(); }

  private:
    static constexpr int kTries = 100;

    std::mutex m_mutex;
};

} // namespace KAXML
