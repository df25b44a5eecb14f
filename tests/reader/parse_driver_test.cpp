#include <kaxml/kaxml/reader/parse_driver.h>

#include "support/instance_recorder.h"

#include <algorithm>

namespace KAXML::Test {
namespace {

// What the operations of the fake reader answer: its creation, both put operations, both parse
// operations. A failing one may raise its status instead.
enum { kCreate, kPutContent, kPutError, kParse, kParseUrl, kOperations };
HRESULT s_statuses[kOperations];
int s_readers = 0;

struct FakeReader final : ISAXXMLReader {
    FakeReader() { ++s_readers; }
    ~FakeReader() override { --s_readers; }
    HRESULT putContentHandler(ISAXContentHandler*) override { return s_statuses[kPutContent]; }
    HRESULT putErrorHandler(ISAXErrorHandler*) override { return s_statuses[kPutError]; }
    void putCharactersSwitch(const bool*) override {}
    HRESULT parse(const wchar_t*) override { return s_statuses[kParse]; }
    HRESULT parseURL(const wchar_t* url) override {
        const HRESULT answer = s_statuses[kParseUrl];
        return answer == E_INVALIDARG ? throw _com_error(answer, L"description", url) : answer;
    }
};

ParseRequest Request(const wchar_t* source) {
    ParseRequest request;
    request.xmlSource = source;
    request.schema = &MachinesSchema();
    request.callbacks = RequiredCallbacks();
    return request;
}

TEST(ParseDriver, ReportsEveryFailingStatusOfTheReader) {
    const std::wstring status = L" with return status of: -2147467259";
    const std::tuple<int, HRESULT, std::wstring> cases[] = {
        {kCreate, E_FAIL, L"ParseKaInstanceXML failed CoCreateInstance" + status},
        {kPutContent, E_FAIL, L"ParseKaInstanceXML failed putContentHandler" + status},
        {kPutError, E_FAIL, L"ParseKaInstanceXML failed putErrorHandler" + status},
        {kParse, E_FAIL, L"ParseKaInstanceXML: Failed to parse   " + status},
        {kParseUrl, E_FAIL, L"ParseKaInstanceXML: Failed to parse  /x " + status},
        {kParseUrl, E_INVALIDARG, L"ParseKaInstanceXML: COM Error: The parameter is incorrect. description. /x. "},
        {kParseUrl, S_FALSE, L""}, // a success with a remark, as those of the others
    };
    for (const auto& [operation, answer, failure] : cases) {
        std::fill(std::begin(s_statuses), std::end(s_statuses), S_FALSE);
        s_statuses[operation] = answer;
        ParseRequest request = Request(L"/x");
        request.isUrl = operation == kParseUrl;
        const LogRecorder log;
        const auto run = [&] {
            RunParse(request, [](std::unique_ptr<ISAXXMLReader>& reader) {
                reader = std::make_unique<FakeReader>();
                return s_statuses[kCreate];
            });
        };
        failure.empty() ? run() : ExpectThrows<KAXMLRuntimeError>(run, failure);
        EXPECT_EQ(s_readers, 0);
        EXPECT_EQ(log.Messages(LOG_INFO).size(), failure.empty() ? 1u : 0u);
    }
}

TEST(ParseDriver, NeedsASourceASchemaCallbacksAndAFactory) {
    ParseRequest request = Request(nullptr);
    const auto expect = [&](const wchar_t* message) {
        ExpectThrows<KAXMLInvalidArgument>([&] { RunParse(request, &CreateSAXXMLReader); }, message);
    };
    expect(L"Passed NULL xmlSource to ParseKaInstanceXML");
    EXPECT_NO_THROW(RunParse(Request(L"<Other/>"), &CreateSAXXMLReader));
    EXPECT_NO_THROW(RunParse(Request(WideFromUtf8(InRoot("")).c_str()), &CreateSAXXMLReader));
    EXPECT_THROW(RunParse(Request(L"<"), &CreateSAXXMLReader), KAXMLRuntimeError);
    const std::wstring item = WideFromUtf8(InRoot("<Item/>"));
    ExpectThrows<KAXMLRuntimeError>([&] { RunParse(Request(item.c_str()), &CreateSAXXMLReader); },
                                    L"CKAXMLSAXContentHandler has NULL m_pKaInstanceFactory");
    request.xmlSource = L"";
    request.schema = nullptr;
    expect(L"Passed NULL pKaSchema into CKAXMLSAXContentHandler constructor");
    request.callbacks.parsedRelationship = nullptr;
    expect(L"parsedKaRelationshipCallback cannot be NULL");
    request.callbacks.parsedInstance = nullptr;
    expect(L"parsedKaInstanceCallback cannot be NULL");
}

TEST(ParseDriver, ReadsFilesInTheirEncodingByPathAndUrl) {
    const TemporaryFolder folder;
    const std::string url = "file://" + folder.Path().string();
    const std::filesystem::path encoded = KAXML_TEST_DATA_DIR "/instances/encoded"; // the same item
    for (const char* const name : {"latin-1.xml", "utf-16-le.xml", "utf-16-be.xml"}) {
        const std::wstring path = folder.Write("a b\xC3\xA9.xml", BytesOf(encoded / name));
        for (const std::wstring& source : {path, WideFromUtf8(url + "/a%20b%C3%A9.xml")})
            EXPECT_EQ(InstanceRecorder().Run(1, source), "begin ''\ninstance Item '\xC3\xA9' Tag='\xC3\xBC\xC3\x9F'\n"
                                                         "end\nlog -3 Imported instances: 1\ndone\n");
    }
    const std::string missing = folder.Path().string() + "/none";
    for (const auto& [source, reason] :
         {std::pair(url + "/n%6Fne", missing + "': No such file or directory. " + missing),
          {"http://h/x", "http://h/x': only files and file: URLs can be read. http://h/x"}})
        EXPECT_EQ(InstanceRecorder().Run(1, WideFromUtf8(source)),
                  "KAXMLRuntimeError: ParseKaInstanceXML: COM Error: Unspecified error. Cannot open '" + reason +
                      ". \n");
}

} // namespace
} // namespace KAXML::Test
