#include <kaxml/kaxml/core/scoped_logging.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace KAXML {

// What is installed is always the same function. It hands each message to the sink of the object made
// last.
class LogSink {
  public:
    using Callable = CScopedLogging::Callable;

    explicit LogSink(Callable callable) : m_callable(std::move(callable)) {}

    static void Install(const std::shared_ptr<LogSink>& sink) {
        Installed& installed = All();
        const std::lock_guard<std::mutex> lock(installed.mutex);
        installed.sinks.push_back(sink);
        sink->m_before = SetLoggingCallback(sink->m_callable ? &Deliver : nullptr);
    }

    static void Remove(const std::shared_ptr<LogSink>& sink) {
        Installed& installed = All();
        std::unique_lock<std::mutex> lock(installed.mutex);
        auto& sinks = installed.sinks;
        const auto next = sinks.erase(std::find(sinks.begin(), sinks.end(), sink));
        if (next == sinks.end())
            SetLoggingCallback(sink->m_before);
        else
            (*next)->m_before = sink->m_before;
        installed.finished.wait(lock, [&sink] { return sink->m_calls == 0; });
    }

  private:
    // One lock for the list and the counts; it is not held while a callable runs.
    struct Installed {
        std::mutex mutex;
        std::condition_variable finished;
        std::vector<std::shared_ptr<LogSink>> sinks;
    };

    // Made before the first object is finished, so that it outlives objects of static duration too.
    static Installed& All() {
        static Installed installed;
        return installed;
    }

    // A call of the callable, counted from before to after it.
    class Call {
      public:
        Call() {
            Installed& installed = All();
            const std::lock_guard<std::mutex> lock(installed.mutex);
            if (installed.sinks.empty())
                return;
            m_sink = installed.sinks.back();
            ++m_sink->m_calls;
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        ~Call() {
            if (!m_sink)
                return;
            Installed& installed = All();
            const std::lock_guard<std::mutex> lock(installed.mutex);
            if (--m_sink->m_calls == 0)
                installed.finished.notify_all();
        }
        // None when the last object went between the message and here.
        const Callable* Target() const noexcept { return m_sink ? &m_sink->m_callable : nullptr; }

      private:
        std::shared_ptr<LogSink> m_sink;
    };

    static void Deliver(LOG_SEV severity, const wchar_t* category, const wchar_t* message) {
        const Call call;
        if (const Callable* const callable = call.Target(); callable != nullptr && *callable)
            (*callable)(severity, category, message);
    }

    Callable m_callable;
    LoggingCallback m_before = nullptr;
    int m_calls = 0;
};

CScopedLogging::CScopedLogging(Callable callable) : m_sink(std::make_shared<LogSink>(std::move(callable))) {
    LogSink::Install(m_sink);
}

CScopedLogging::~CScopedLogging() { LogSink::Remove(m_sink); }

} // namespace KAXML
