#pragma once

#include <kaxml/platform/thread_lock.h>

namespace KAXML {

/// Takes a ThreadLock.
struct ThreadLockObtain {
    void operator()(ThreadLock* lock) const { lock->Obtain(); }
};

/// Gives a ThreadLock back.
struct ThreadLockRelease {
    void operator()(ThreadLock* lock) const noexcept { lock->Release(); }
};

/// Holds a resource from construction to destruction, also when an exception passes.
template <typename Resource, typename Obtain, typename Release> class ScopedResource {
  public:
    explicit ScopedResource(Resource resource) : m_resource(resource) {
        Obtain()(m_resource);
        m_held = true;
    }
    ScopedResource(const ScopedResource&) = delete;
    ScopedResource& operator=(const ScopedResource&) = delete;
    virtual ~ScopedResource() {
        if (m_held)
            Release()(m_resource);
    }

  private:
    Resource m_resource;
    bool m_held = false;
};

using ScopedThreadLock = ScopedResource<ThreadLock*, ThreadLockObtain, ThreadLockRelease>;

} // namespace KAXML
