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
    const struct {
        int operation;
        HRESULT answer;
        std::wstring failure;
    } cases[] = {
        {kCreate, E_FAIL, L"ParseKaInstanceXML failed CoCreateInstance" + status},
        {kPutContent, E_FAIL, L"ParseKaInstanceXML failed putContentHandler" + status},
        {kPutError, E_FAIL, L"ParseKaInstanceXML failed putErrorHandler" + status},
        {kParse, E_FAIL, L"ParseKaInstanceXML: Failed to parse   " + status},
        {kParseUrl, E_FAIL, L"ParseKaInstanceXML: Failed to parse  /x " + status},
        {kParseUrl, E_INVALIDARG, L"ParseKaInstanceXML: COM Error: The parameter is incorrect. description. /x. "},
        {kParseUrl, S_FALSE, L""}, // a success with a remark, as those of the others
    };
    for (const auto& each : cases) {
        std::fill(std::begin(s_statuses), std::end(s_statuses), S_FALSE);
        s_statuses[each.operation] = each.answer;
        ParseRequest request = Request(L"/x");
        request.isUrl = each.operation == kParseUrl;
        const LogRecorder log;
        const auto run = [&] {
            RunParse(request, [](std::unique_ptr<ISAXXMLReader>& reader) {
                reader = std::make_unique<FakeReader>();
                return s_statuses[kCreate];
            });
        };
        each.failure.empty() ? run() : ExpectThrows<KAXMLRuntimeError>(run, each.failure);
        EXPECT_EQ(s_readers, 0);
        EXPECT_EQ(log.Messages(LOG_INFO).size(), each.failure.empty() ? 1u : 0u);
    }
}

TEST(ParseDriver, NeedsASourceASchemaCallbacksAndAFactory) {
    ParseRequest request = Request(nullptr);
    const auto expect = [&](const wchar_t* message) {
        ExpectThrows<KAXMLInvalidArgument>([&] { RunParse(request, &CreateSAXXMLReader); }, message);
    };
    expect(L"Passed NULL xmlSource to ParseKaInstanceXML");
    EXPECT_NO_THROW(RunParse(Request(L"<Other/>"), &CreateSAXXMLReader));
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

const std::string kItem = "<Item id='\xC3\xA9'><Tag>\xC3\xBC\xC3\x9F</Tag></Item>";
const std::string kItemRead = "begin ''\ninstance Item '\xC3\xA9' Tag='\xC3\xBC\xC3\x9F'\nend\n"
                              "log -3 Imported instances: 1\ndone\n";

TEST(ParseDriver, ReadsFilesInTheirEncodingAndTextWhateverItDeclares) {
    const TemporaryFolder folder;
    const std::filesystem::path encoded = KAXML_TEST_DATA_DIR "/instances/encoded"; // the same item
    const std::string mark = "\xEF\xBB\xBF";
    const std::string texts[] = {mark, "<?xml version='1.0' encoding='UTF-16'?>",
                                 mark + "<?xml version='1.0' encoding='x'?>"};
    InstanceRecorder recorder;
    AtEverySliceSize([&] {
        for (const std::string& start : texts)
            EXPECT_EQ(recorder.Run(0, WideFromUtf8(start + InRoot(kItem))), kItemRead) << start;
        for (const std::string& bytes : {InRoot(kItem), mark + InRoot(kItem), BytesOf(encoded / "latin-1.xml"),
                                         BytesOf(encoded / "utf-16-le.xml"), BytesOf(encoded / "utf-16-be.xml")})
            EXPECT_EQ(recorder.Run(1, folder.Write("a b\xC3\xA9.xml", bytes)), kItemRead) << bytes;
        const std::wstring url = L"file://" + WideFromUtf8(folder.Path().string()) + L"/a%20b%C3%A9.xml";
        EXPECT_EQ(recorder.Run(1, url), kItemRead);
    });
}

TEST(ParseDriver, RefusesWhatItCannotOpenWithoutCallingBack) {
    const TemporaryFolder folder;
    const std::string path = folder.Path().string();
    const auto expect = [](const std::string& url, const std::string& reason) {
        const std::string start = "KAXMLRuntimeError: ParseKaInstanceXML: COM Error: Unspecified error. ";
        EXPECT_EQ(InstanceRecorder().Run(1, WideFromUtf8(url)), start + reason + "\n");
    };
    expect("file://" + path + "/n%6Fne",
           "Cannot open '" + path + "/none': No such file or directory. " + path + "/none. ");
    expect(path, "Cannot open '" + path + "': Is a directory. " + path + ". ");
    expect("http://h/x", "Cannot open 'http://h/x': only files and file: URLs can be read. http://h/x. ");
}

} // namespace
} // namespace KAXML::Test
