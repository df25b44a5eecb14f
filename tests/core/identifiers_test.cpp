#include "support/expectations.h"

#include <cerrno>
#include <regex>
#include <set>

namespace KAXML::Test {
namespace {

TEST(Identifiers, EndInRandomGuids) {
    const std::wregex guidForm(L"[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[0-9a-f]{4}-[0-9a-f]{12}");
    std::set<std::wstring> seen;
    errno = EDOM;
    for (int i = 0; i < 100; ++i) {
        std::wstring identifier = L"1A", path;
        GenerateKaInstanceXMLIdentifier(identifier.c_str(), -(i & 1), identifier); // its own text may be the source
        CreateTempFileName(L".suffix", path);
        EXPECT_TRUE(identifier.starts_with(L"__x0031__A-") && path.ends_with(L".suffix"));
        for (const std::wstring& guid :
             {CreateGuid(), CGUIDGenerator().GetNextID(), identifier.substr(11), path.substr(path.size() - 43, 36)})
            EXPECT_TRUE(std::regex_match(guid, guidForm) && seen.insert(guid).second) << Narrow(guid);
    }
    EXPECT_EQ(errno, EDOM);
    std::wstring numbered;
    GenerateKaInstanceXMLIdentifier(L"Pump.Unit", 2147483647, numbered);
    EXPECT_EQ(numbered, L"Pump__x002e__Unit-VelInstanceID-2147483647");
}

} // namespace
} // namespace KAXML::Test
