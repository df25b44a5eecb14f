#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace {

using namespace KAXML;

const std::wstring kDocument = std::wstring(L"<KaInstanceXML xmlns='") + KAXML_NAMESPACE_URI +
                               L"' scope='all'><Project name='A'><Pump id='1'/>"
                               L"<Feeds sourceInstanceID='1' targetInstanceID='2'/></Project><Nope/></KaInstanceXML>";

class Callables : public testing::Test {
  protected:
    Callables() {
        m_schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
        m_schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
        m_all.begin = [this](const wchar_t* scope, const XMLAttributes&) { Note(scope); };
        m_all.instance = [this](CKaInstance& instance) { Note(instance.InstanceID()); };
        m_all.relationship = [this](KaRelationshipInstance& found) { Note(found.GetTargetID()); };
        m_all.projectBegin = [this](const XMLAttributes& attributes) {
            std::wstring name;
            attributes.GetValue(L"name", name);
            Note(L"<" + name);
        };
        m_all.projectEnd = [this] { Note(L">"); };
        m_all.end = [this] { Note(L"end"); };
        m_all.error = [this](const wchar_t* report) { Note(std::wstring(report, 10)); };
    }

    void Note(const std::wstring& text) { m_notes += text + L' '; }

    CKaSchema m_schema{L"Plant", L"pl", L""};
    KaParseCallables m_all;
    std::wstring m_notes;
};

TEST_F(Callables, AreCalledInThePlaceOfFunctionsAndMayBeEmpty) {
    ParseKaInstanceText(kDocument.c_str(), &m_schema, m_all, nullptr, SKIP_UNRECOGNIZED_CLASSES);
    EXPECT_EQ(m_notes, L"all <A 1 2 > end ");
    m_notes.clear();
    EXPECT_THROW(ParseKaInstanceText(L"<", &m_schema, m_all), KAXMLRuntimeError);
    EXPECT_EQ(m_notes, L"SAX Parser ");
    ParseKaInstanceText(kDocument.c_str(), &m_schema, {}, nullptr, SKIP_UNRECOGNIZED_CLASSES);
    EXPECT_THROW(ParseKaInstanceFile(L"/no/such/file.xml", &m_schema, {}), KAXMLRuntimeError);
    EXPECT_THROW(ParseKaInstanceFile(nullptr, &m_schema, {}), KAXMLInvalidArgument);
    EXPECT_THROW(ParseKaInstanceText(L"<a/>", nullptr, {}), KAXMLInvalidArgument);
}

TEST_F(Callables, EndTheParseByThrowing) {
    m_all.relationship = [](KaRelationshipInstance&) { throw std::make_unique<int>(7); };
    EXPECT_THROW(ParseKaInstanceText(kDocument.c_str(), &m_schema, m_all), std::unique_ptr<int>);
    EXPECT_EQ(m_notes, L"all <A 1 ");
}

std::wstring s_plainLog;
void PlainLog(LOG_SEV, const wchar_t*, const wchar_t* message) { s_plainLog += message; }

CScopedLogging::Callable AppendTo(std::wstring& log) {
    return [&log](LOG_SEV, const wchar_t*, const wchar_t* message) { log += message; };
}

void Say(const wchar_t* message) { Log(LOG_INFO, L"Test", message); }

TEST(ScopedLogging, RestoresWhatWasInstalledInAnyOrder) {
    const LoggingCallback before = SetLoggingCallback(&PlainLog);
    std::wstring logs[2];
    for (const bool inOrder : {true, false}) {
        s_plainLog = logs[0] = logs[1] = L"";
        auto first = std::make_unique<CScopedLogging>(AppendTo(logs[0]));
        Say(L"a");
        auto second = std::make_unique<CScopedLogging>(AppendTo(logs[1]));
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
        const CScopedLogging silence(nullptr);
        Say(L"e");
    }
    EXPECT_EQ(s_plainLog, L"d");
    EXPECT_EQ(SetLoggingCallback(before), &PlainLog);
}

TEST(ScopedLogging, EndsAfterTheCallsOfOtherThreads) {
    std::promise<void> entered;
    bool left = false;
    std::jthread thread;
    {
        const CScopedLogging logging([&](LOG_SEV, const wchar_t*, const wchar_t*) {
            entered.set_value();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            left = true;
        });
        thread = std::jthread([] { Say(L"message"); });
        entered.get_future().wait();
    }
    EXPECT_TRUE(left);
}

} // namespace
