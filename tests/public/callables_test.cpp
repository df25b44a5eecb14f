#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

const std::wstring kDocument = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI +
                               L"' scope='all'><Project name='A'><Pump id='1'/>"
                               L"<Feeds sourceInstanceID='1' targetInstanceID='2'/></Project><Nope/></KaInstanceXML>";

class Callables : public testing::Test {
  protected:
    Callables() {
        m_schema.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS);
        m_schema.CreateKaRelationshipClass(L"Feeds", L"", KAXML::KA_DOMAIN_CLASS);
        m_all.begin = [this](const wchar_t* scope, const KAXML::XMLAttributes&) { Note(scope); };
        m_all.instance = [this](KAXML::CKaInstance& instance) { Note(instance.InstanceID()); };
        m_all.relationship = [this](KAXML::KaRelationshipInstance& found) { Note(found.GetTargetID()); };
        m_all.projectBegin = [this](const KAXML::XMLAttributes& attributes) {
            std::wstring name;
            attributes.GetValue(L"name", name);
            Note(L"<" + name);
        };
        m_all.projectEnd = [this] { Note(L">"); };
        m_all.end = [this] { Note(L"end"); };
        m_all.error = [this](const wchar_t* report) { Note(std::wstring(report, 10)); };
    }

    void Note(const std::wstring& text) { m_notes += text + L' '; }

    KAXML::CKaSchema m_schema{L"Plant", L"pl", L""};
    KAXML::KaParseCallables m_all;
    std::wstring m_notes;
};

TEST_F(Callables, AreCalledInThePlaceOfFunctions) {
    KAXML::ParseKaInstanceText(kDocument.c_str(), &m_schema, m_all, nullptr, KAXML::SKIP_UNRECOGNIZED_CLASSES);
    EXPECT_EQ(m_notes, L"all <A 1 2 > end ");
    m_notes.clear();
    EXPECT_THROW(KAXML::ParseKaInstanceText(L"<KaInstanceXML>\n<", &m_schema, m_all), KAXML::KAXMLException);
    EXPECT_THROW(KAXML::ParseKaInstanceText(L"<", &m_schema, m_all), KAXML::KAXMLRuntimeError);
    EXPECT_EQ(m_notes, L"SAX Parser ");
    EXPECT_THROW(KAXML::ParseKaInstanceFile(L"/no/such/file.xml", &m_schema, m_all), KAXML::KAXMLRuntimeError);
    EXPECT_THROW(KAXML::ParseKaInstanceFile(nullptr, &m_schema, m_all), KAXML::KAXMLInvalidArgument);
    EXPECT_THROW(KAXML::ParseKaInstanceText(L"<a/>", nullptr, m_all), KAXML::KAXMLInvalidArgument);
}

TEST_F(Callables, MayBeEmpty) {
    KAXML::CKaSchemaInstanceFactory factory(&m_schema);
    KAXML::ParseKaInstanceText(kDocument.c_str(), &m_schema, {}, &factory, KAXML::SKIP_UNRECOGNIZED_CLASSES);
}

TEST_F(Callables, EndTheParseByThrowing) {
    m_all.relationship = [](KAXML::KaRelationshipInstance&) { throw std::make_unique<int>(7); };
    try {
        KAXML::ParseKaInstanceText(kDocument.c_str(), &m_schema, m_all);
        ADD_FAILURE();
    } catch (const std::unique_ptr<int>& thrown) {
        EXPECT_EQ(*thrown, 7);
    }
    EXPECT_EQ(m_notes, L"all <A 1 ");
}

std::wstring s_plainLog;
void PlainLog(KAXML::LOG_SEV, const wchar_t*, const wchar_t* message) { s_plainLog += message; }

KAXML::CScopedLogging::Callable AppendTo(std::wstring& log) {
    return [&log](KAXML::LOG_SEV, const wchar_t*, const wchar_t* message) { log += message; };
}

void Say(const wchar_t* message) { KAXML::Log(KAXML::LOG_INFO, L"Test", message); }

TEST(ScopedLogging, RestoresWhatWasInstalledInAnyOrder) {
    const KAXML::LoggingCallback before = KAXML::SetLoggingCallback(&PlainLog);
    std::wstring logs[2];
    for (const bool inOrder : {true, false}) {
        s_plainLog = logs[0] = logs[1] = L"";
        auto first = std::make_unique<KAXML::CScopedLogging>(AppendTo(logs[0]));
        Say(L"a");
        auto second = std::make_unique<KAXML::CScopedLogging>(AppendTo(logs[1]));
        Say(L"b");
        (inOrder ? second : first).reset();
        Say(L"c");
        (inOrder ? first : second).reset();
        Say(L"d");
        EXPECT_EQ(logs[0], inOrder ? L"ac" : L"a");
        EXPECT_EQ(logs[1], inOrder ? L"b" : L"bc");
        EXPECT_EQ(s_plainLog, L"d");
    }
    {
        const KAXML::CScopedLogging silence(nullptr);
        Say(L"e");
    }
    EXPECT_EQ(s_plainLog, L"d");
    EXPECT_EQ(KAXML::SetLoggingCallback(before), &PlainLog);
}

TEST(ScopedLogging, EndsAfterTheCallsOfOtherThreads) {
    std::mutex mutex;
    std::condition_variable changed;
    bool entered = false;
    bool left = false;
    std::thread thread;
    {
        const KAXML::CScopedLogging logging([&](KAXML::LOG_SEV, const wchar_t*, const wchar_t*) {
            {
                const std::lock_guard<std::mutex> lock(mutex);
                entered = true;
            }
            changed.notify_all();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            left = true;
        });
        thread = std::thread([] { Say(L"message"); });
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [&] { return entered; });
    }
    EXPECT_TRUE(left);
    thread.join();
}

} // namespace
