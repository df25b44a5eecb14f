#pragma once

#include "platform/test_support.h"
#include "support/expectations.h"

#include <kaxml/kaxml/reader/content_handler.h>

#include <functional>

namespace KAXML::Test {

/// The schema of the instance documents in data/instances, read once.
CKaSchema& MachinesSchema();

std::string Repeat(std::size_t count, const std::string& text);
std::string InRoot(const std::string& content);

/// The callbacks that a parse cannot do without; they do nothing.
ParseCallbacks RequiredCallbacks();

/// Attributes of which each has the value "1".
struct FakeAttributes final : ISAXAttributes {
    HRESULT getValueFromName(const wchar_t*, int, const wchar_t*, int, std::wstring& value) override {
        return value = L"1", S_OK;
    }
};

/// An instance, or relationship, that counts how many of it live.
template <typename Base> struct Counted final : Base {
    template <typename Class> explicit Counted(Class* kaClass) : Base(kaClass) { ++s_alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() override { --s_alive; }
    inline static int s_alive = 0;
};

/// A client of the reader: makes an instance of every class it knows and writes down what it is
/// told, one line for each call.
class InstanceRecorder final : public IKaInstanceFactory {
  public:
    explicit InstanceRecorder(unsigned int parseFlags = 0) : flags(parseFlags) {}

    unsigned int flags;
    /// When set, is called with each line; its result is the callback's. It may throw.
    std::function<int(const std::string& line)> answer;
    /// When set, makes the instances.
    std::function<CKaInstance*(const std::wstring& className, int* isRelationship)> make;
    std::vector<std::string> lines;

    /// Parses with every callback set. Checks that every instance is destroyed, and none called
    /// back after the first failure.
    int Parse(int isUrl, const std::wstring& source);
    /// The lines of a parse, one for each message of the log, and the exception or "done". Checks
    /// that nothing is printed.
    std::string Run(int isUrl, const std::wstring& source);
    /// Runs a document as text and as a file, each at every slice size, and expects the same lines.
    /// What they tell about finding the text is left out.
    void ExpectEverywhere(const std::string& document, const std::string& expected);

    CKaInstance* CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className, int* isRelationship) override;

  private:
    int Note(const std::string& line);

    std::wstring m_namespaceUri;
    bool m_hasFailed = false;
};

} // namespace KAXML::Test
