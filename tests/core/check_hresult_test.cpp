#include "support/expectations.h"

#include <kaxml/kaxml/core/check_hresult.h>

#include <cstdio>

namespace KAXML::Test {
namespace {

TEST(CheckHResult, PrintsAndThrowsTheCallForEveryStatusButZero) {
    CHECK_HRESULT(S_OK, L"fine");
    for (const HRESULT failing : {S_FALSE, HRESULT{7}, E_FAIL}) {
        testing::internal::CaptureStdout();
        std::printf("before ");
        const std::wstring message = L"Error at " + ToWString(__FILE__) + L" (" + ToWString(__LINE__ + 1) + L"): f(%s)";
        ExpectThrows<KAXMLRuntimeError>([=] { CHECK_HRESULT(failing, L"f(%s)"); }, message);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "before " + Narrow(message));
    }
    for (const std::size_t length : {1023u, 1024u, 5000u}) {
        const std::wstring text = L"Error at f (1): " + std::wstring(length - 16, L'\u00E9');
        testing::internal::CaptureStdout();
        ExpectThrows<KAXMLRuntimeError>([&] { CheckHResult(E_FAIL, text.c_str() + 16, "f", 1); }, text.substr(0, 1023));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), Narrow(text.substr(0, 1023)));
    }
}

} // namespace
} // namespace KAXML::Test
