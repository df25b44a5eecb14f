#include "support/expectations.h"

#include <cerrno>
#include <set>

namespace KAXML::Test {
namespace {

TEST(Identifiers, EndInRandomGuids) {
    std::set<std::wstring> seen;
    errno = EDOM;
    for (const long number : {0L, -1L}) {
        std::wstring identifier = L"1A", path;
        GenerateKaInstanceXMLIdentifier(identifier.c_str(), number, identifier); // its own text may be the source
        CreateTempFileName(L".suffix", path);
        EXPECT_TRUE(identifier.starts_with(L"__x0031__A-") && path.ends_with(L".suffix"));
        for (std::wstring guid :
             {CreateGuid(), CGUIDGenerator().GetNextID(), identifier.substr(11), path.substr(path.size() - 43, 36)}) {
            EXPECT_TRUE(seen.insert(guid).second) << Narrow(guid);
            for (std::size_t i; (i = guid.find_first_of(L"0123456789abcdef")) != std::wstring::npos;)
                guid[i] = i == 14 && guid[i] == L'4' ? L'V' : L'x';
            EXPECT_EQ(guid, L"xxxxxxxx-xxxx-Vxxx-xxxx-xxxxxxxxxxxx");
        }
        GenerateKaInstanceXMLIdentifier(L"Pump.Unit", 2147483647, identifier);
        EXPECT_EQ(identifier, L"Pump__x002e__Unit-VelInstanceID-2147483647");
    }
    EXPECT_EQ(errno, EDOM);
}

} // namespace
} // namespace KAXML::Test
