#pragma once

#include <kaxml/kaxml/core/logging.h>

#include <functional>
#include <memory>

namespace KAXML {

class LogSink;

/// Sends the process's log messages to a C++ callable, a lambda above all, as long as the object
/// lives.
///
/// @code
/// std::vector<std::wstring> warnings;
/// {
///     KAXML::CScopedLogging logging([&](KAXML::LOG_SEV severity, const wchar_t*, const wchar_t* message) {
///         if (severity == KAXML::LOG_WARNING)
///             warnings.push_back(message);
///     });
///     schema.WriteXML(path);
/// } // what was installed before is installed again
/// @endcode
///
/// There is one logging callback for the process: while the object lives, messages of all threads go
/// to its callable, and to nothing else. Of several objects the last one made gets them; they may be
/// destroyed in any order. A callback that SetLoggingCallback installs meanwhile takes over until the
/// object is destroyed.
///
/// Objects may be made and destroyed on any thread.
class KAXML_API CScopedLogging {
  public:
    /// As LoggingCallback: the texts are never null and valid during the call only, what it throws is
    /// discarded, and it may be called on any thread that uses the library, from several at once.
    using Callable = std::function<void(LOG_SEV severity, const wchar_t* category, const wchar_t* message)>;

    /// Begins to send messages to the callable.
    /// @param callable  kept; an empty one turns logging off.
    /// @throws std::bad_alloc; the callback is then as it was.
    explicit CScopedLogging(Callable callable);
    CScopedLogging(const CScopedLogging&) = delete;
    CScopedLogging& operator=(const CScopedLogging&) = delete;
    /// Installs what was installed before, and returns once no thread is inside the callable, so that
    /// what it refers to may go too. So it must not run inside the callable, nor while a lock is held
    /// that the callable waits for.
    ~CScopedLogging();

  private:
    std::shared_ptr<LogSink> m_sink;
};

} // namespace KAXML
