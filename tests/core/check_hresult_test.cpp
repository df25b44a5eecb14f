#include "support/expectations.h"

#include <kaxml/kaxml/core/check_hresult.h>

#include <cerrno>
#include <cstdio>
#include <cwchar>

namespace KAXML::Test {
namespace {

TEST(CheckHResult, PrintsAndThrowsTheCallForEveryStatusButZero) {
    CHECK_HRESULT(S_OK, L"fine");
    for (const HRESULT failing : {S_FALSE, HRESULT{7}, E_FAIL}) {
        errno = EDOM;
        testing::internal::CaptureStdout();
        std::printf("before ");
        const std::wstring message =
            L"Error at " + ToWString(__FILE__) + L" (" + ToWString(__LINE__ + 1) + L"): f(\u00E9%s)";
        ExpectThrows<KAXMLRuntimeError>([=] { CHECK_HRESULT(failing, L"f(\u00E9%s)"); }, message);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "before " + Narrow(message));
        EXPECT_EQ(errno, EDOM);
    }
}

TEST(CheckHResult, CutsTheTextToItsBuffer) {
    for (const std::size_t length : {1022u, 1023u, 1024u, 5000u}) {
        const std::wstring text = L"Error at f (1): " + std::wstring(length - 16, L'x');
        testing::internal::CaptureStdout();
        ExpectThrows<KAXMLRuntimeError>([&] { CheckHResult(E_FAIL, text.c_str() + 16, "f", 1); }, text.substr(0, 1023));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), Narrow(text.substr(0, 1023)));
    }
}

[[noreturn]] void FailOnAFreshStream() {
    const bool isFresh = std::freopen("/dev/null", "w", stdout) != nullptr && std::fwide(stdout, 0) == 0;
    try {
        CheckHResult(E_FAIL, L"a call", "f", 1);
    } catch (const KAXMLRuntimeError&) {
        std::_Exit(isFresh && std::fwide(stdout, 0) == 0 ? 0 : 1);
    }
    std::_Exit(2);
}

TEST(CheckHResultDeathTest, LeavesTheOrientationOfStandardOutputUndecided) {
    EXPECT_EXIT(FailOnAFreshStream(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace KAXML::Test
