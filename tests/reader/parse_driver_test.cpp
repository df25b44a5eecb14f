#include <kaxml/kaxml/reader/parse_driver.h>

#include "support/instance_recorder.h"

namespace KAXML::Test {
namespace {

// What each operation of the fake reader answers; a failing one may raise its status instead.
struct Statuses {
    HRESULT create = S_OK;
    HRESULT putContentHandler = S_OK;
    HRESULT putErrorHandler = S_OK;
    HRESULT parse = S_OK;
    HRESULT parseURL = S_OK;
};
Statuses s_statuses;
int s_readers = 0;

struct FakeReader final : ISAXXMLReader {
    FakeReader() { ++s_readers; }
    ~FakeReader() override { --s_readers; }
    HRESULT putContentHandler(ISAXContentHandler*) override { return s_statuses.putContentHandler; }
    HRESULT putErrorHandler(ISAXErrorHandler*) override { return s_statuses.putErrorHandler; }
    HRESULT parse(const wchar_t*) override { return s_statuses.parse; }
    HRESULT parseURL(const wchar_t* url) override {
        if (s_statuses.parseURL == E_INVALIDARG)
            throw _com_error(E_INVALIDARG, L"description", url);
        return s_statuses.parseURL;
    }
};

TEST(ParseDriver, ReportsEveryFailingStatusOfTheReader) {
    const std::wstring status = L" with return status of: -2147467259";
    const struct {
        Statuses statuses;
        int isUrl;
        std::wstring failure;
    } cases[] = {
        {{E_FAIL}, 0, L"ParseKaInstanceXML failed CoCreateInstance" + status},
        {{S_OK, E_FAIL}, 0, L"ParseKaInstanceXML failed putContentHandler" + status},
        {{S_OK, S_OK, E_FAIL}, 0, L"ParseKaInstanceXML failed putErrorHandler" + status},
        {{S_OK, S_OK, S_OK, E_FAIL}, 0, L"ParseKaInstanceXML: Failed to parse   " + status},
        {{S_OK, S_OK, S_OK, S_OK, E_FAIL}, 1, L"ParseKaInstanceXML: Failed to parse  /x " + status},
        {{S_OK, S_OK, S_OK, S_OK, E_INVALIDARG},
         1,
         L"ParseKaInstanceXML: COM Error: The parameter is incorrect. description. /x. "},
        {{S_FALSE, S_FALSE, S_FALSE, S_FALSE, E_FAIL}, 0, L""}, // successes with a remark
    };
    for (const auto& each : cases) {
        s_statuses = each.statuses;
        ParseRequest request;
        request.isUrl = each.isUrl;
        request.xmlSource = L"/x";
        request.schema = &MachinesSchema();
        request.callbacks = RequiredCallbacks();
        const LogRecorder log;
        const auto run = [&] {
            RunParse(request, [](std::unique_ptr<ISAXXMLReader>& reader) {
                reader = std::make_unique<FakeReader>();
                return s_statuses.create;
            });
        };
        if (each.failure.empty())
            run();
        else
            ExpectThrows<KAXMLRuntimeError>(run, each.failure);
        EXPECT_EQ(s_readers, 0);
        EXPECT_EQ(log.Messages(LOG_INFO).size(), each.failure.empty() ? 1u : 0u);
    }
}

TEST(ParseDriver, NeedsASource) {
    ParseRequest request;
    request.schema = &MachinesSchema();
    request.callbacks = RequiredCallbacks();
    ExpectThrows<KAXMLInvalidArgument>([&] { RunParse(request, &CreateSAXXMLReader); },
                                       L"Passed NULL xmlSource to ParseKaInstanceXML");
}

const std::string kItem = "<Item id='\xC3\xA9'><Tag>\xC3\xBC\xC3\x9F</Tag></Item>";
const std::string kItemRead = "begin ''\ninstance Item '\xC3\xA9' Tag='\xC3\xBC\xC3\x9F'\nend\n"
                              "log -3 Imported instances: 1\ndone\n";

// Text in an encoding of one or two bytes for each character.
std::string Encoded(const std::string& utf8, bool isTwoBytes, bool isBigEndian) {
    std::string bytes;
    for (const wchar_t c : WideFromUtf8(utf8)) {
        const std::string unit{static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
        bytes += isTwoBytes ? (isBigEndian ? std::string(unit.rbegin(), unit.rend()) : unit) : unit.substr(0, 1);
    }
    return bytes;
}

TEST(ParseDriver, ReadsFilesInTheirEncodingAndUrlsOfFiles) {
    const TemporaryFolder folder;
    const std::string text = InRoot(kItem);
    const std::string marked = "\xEF\xBB\xBF" + text;
    const std::string files[] = {
        text,
        marked,
        "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>" + text,
        Encoded(marked, true, false),
        Encoded(marked, true, true),
        Encoded("\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-16'?>\n" + text, true, false),
        Encoded("<?xml version='1.0' encoding='ISO-8859-1'?>" + text, false, false),
    };
    InstanceRecorder recorder;
    AtEverySliceSize([&] {
        for (const std::string& bytes : files) {
            SCOPED_TRACE(bytes);
            EXPECT_EQ(recorder.Run(1, folder.Write("a b\xC3\xA9.xml", bytes)), kItemRead);
        }
        const std::wstring url = L"file://" + WideFromUtf8(folder.Path().string()) + L"/a%20b%C3%A9.xml";
        EXPECT_EQ(recorder.Run(1, url), kItemRead);
    });
}

TEST(ParseDriver, TakesWideTextForWhatItIsWhateverItDeclares) {
    InstanceRecorder recorder;
    AtEverySliceSize([&] {
        for (const char* start :
             {"\xEF\xBB\xBF", "<?xml version='1.0' encoding='UTF-16'?>", "<?xml version='1.0' encoding='ISO-8859-1'?>",
              "\xEF\xBB\xBF<?xml version='1.0' encoding='none'?>"})
            EXPECT_EQ(recorder.Run(0, WideFromUtf8(start + InRoot(kItem))), kItemRead) << start;
    });
}

TEST(ParseDriver, RefusesWhatItCannotOpenWithoutCallingBack) {
    const TemporaryFolder folder;
    const std::string path = folder.Path().string();
    const std::string missing = "Cannot open '" + path + "/none': No such file or directory. " + path + "/none. ";
    const struct {
        std::string url;
        std::string reason;
    } cases[] = {
        {path + "/none", missing},
        {"file://" + path + "/n%6Fne", missing},
        {path, "Cannot open '" + path + "': Is a directory. " + path + ". "},
        {"http://h/x", "Cannot open 'http://h/x': only files and file: URLs can be read. http://h/x. "},
    };
    for (const auto& each : cases)
        EXPECT_EQ(InstanceRecorder().Run(1, WideFromUtf8(each.url)),
                  "KAXMLRuntimeError: ParseKaInstanceXML: COM Error: Unspecified error. " + each.reason + "\n");
}

} // namespace
} // namespace KAXML::Test
