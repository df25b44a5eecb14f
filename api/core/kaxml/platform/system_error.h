#pragma once

#include <cerrno>
#include <string>

namespace KAXML {

/// The system's text for an error number, the same in every locale and safe in every thread.
std::wstring SystemErrorText(int error);

/// Gives the caller's errno back at the end of a scope.
class ErrnoKeeper {
  public:
    ErrnoKeeper() noexcept : m_callers(errno) {}
    ErrnoKeeper(const ErrnoKeeper&) = delete;
    ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;
    ~ErrnoKeeper() { errno = m_callers; }

  private:
    int m_callers;
};

} // namespace KAXML
