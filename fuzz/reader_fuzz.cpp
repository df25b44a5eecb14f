#include "oracles.h"

/// Any bytes as an instance document, from text or from a file. Unless they begin a document, the
/// first four choose the size of slices, the route with flags and factory, the call that fails, and
/// how. The recorder checks that every instance is destroyed once and nothing follows a failure.
namespace KAXML::Fuzz {

// What takes the place of malformed bytes in a text.
constexpr wchar_t kOdd[] = {0xFFFD, 0xD800, 0xDC00, 0xFFFE, 1, 0x10FFFF, 0x110000, static_cast<wchar_t>(-1)};
enum Route { file = 4, everythingIsPump = 8 };
struct ClientsOwn {};

struct Way {
    unsigned slice, route, failingCall, throws;
};

std::string Outcome(const Way& way, const std::wstring& source) {
    unsigned calls = 0;
    const auto hasFailed = [&] { return calls != 0 && calls == way.failingCall; };
    Test::InstanceRecorder recorder(way.route & 3);
    recorder.answer = [&](const std::string&) {
        return ++calls != way.failingCall ? 0 : way.throws != 0 ? throw ClientsOwn() : 1;
    };
    if ((way.route & everythingIsPump) != 0)
        recorder.make = [](auto, int*) -> CKaInstance* {
            return new Test::Counted<CKaInstance>(Test::MachinesSchema().FindKaClass(L"Pump", KA_ANY_CLASS_TYPE));
        };
    std::string outcome;
    try {
        recorder.Parse((way.route & file) != 0, source);
        EXPECT_FALSE(hasFailed());
    } catch (const ClientsOwn&) {
        EXPECT_TRUE(hasFailed());
    } catch (const KAXMLException& error) {
        EXPECT_TRUE(!hasFailed() || (way.throws == 0 && typeid(error) == typeid(KAXMLRuntimeError)));
        outcome = Test::Narrow(error.Message());
    }
    for (const std::string& line : recorder.lines)
        outcome += "\n" + line;
    return outcome;
}

void Read(Bytes& input) {
    const auto way = input.rest.starts_with('<') ? Way{} : Way{input.Next(), input.Next(), input.Next(), input.Next()};
    std::wstring source = WideFromUtf8(input.rest);
    std::replace(source.begin(), source.end(), kOdd[0], kOdd[way.route >> 5]);
    if ((way.route & file) != 0)
        source = Folder().Write("document", std::string(input.rest));
    const Test::LogRecorder log;
    InputSliceSize() = 4096;
    const std::string expected = Outcome(way, source);
    InputSliceSize() = 1 + way.slice;
    EXPECT_EQ(Outcome(way, source), expected);
}

} // namespace KAXML::Fuzz

KAXML_FUZZ_TARGET(KAXML::Fuzz::Read)
