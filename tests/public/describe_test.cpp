#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace {

using namespace KAXML;

struct ClientsError final : KAXMLFormatError {
    using KAXMLFormatError::KAXMLFormatError;
};

// A text on a narrow stream, after it was the same on a wide one.
template <typename T> std::string Streamed(const T& object) {
    std::ostringstream narrow;
    std::wostringstream wide;
    narrow << object;
    wide << object;
    EXPECT_EQ(narrow.str(), ToUtf8(wide.str()));
    EXPECT_EQ(wide.str(), Describe(object));
    return narrow.str();
}

TEST(Describe, NamesTheClassTheMessageAndTheLocation) {
    EXPECT_EQ(Streamed(KAXMLException(L"m")), "KAXMLException: m");
    EXPECT_EQ(Streamed(KAXMLLogicError(L"m", L"Here")), "KAXMLLogicError: m @ Here");
    EXPECT_EQ(Streamed(KAXMLDomainError(L"Größe \U0001F600")), "KAXMLDomainError: Gr\xC3\xB6\xC3\x9F"
                                                               "e \xF0\x9F\x98\x80");
    EXPECT_EQ(Streamed(KAXMLInvalidArgument(L"")), "KAXMLInvalidArgument: ");
    EXPECT_EQ(Streamed(KAXMLRuntimeError(L"m")), "KAXMLRuntimeError: m");
    EXPECT_EQ(Streamed<KAXMLException>(ClientsError(L"m")), "KAXMLFormatError: m");
    EXPECT_EQ(Streamed(_com_error(E_FAIL, L"disk full", L"a.xml")), "_com_error 0x80004005: disk full @ a.xml");
    EXPECT_EQ(Streamed(_com_error(E_POINTER)), "_com_error 0x80004003: Invalid pointer");
}

TEST(Describe, NamesSeverities) {
    std::ostringstream out;
    for (const int severity : {LOG_ERROR, LOG_WARNING, LOG_INFO, LOG_TRACE})
        out << std::setw(8) << Streamed(static_cast<LOG_SEV>(severity));
    EXPECT_EQ(out.str(), "   error warning    info   trace");
    EXPECT_STREQ(Describe(static_cast<LOG_SEV>(-9)), L"unknown");
}

TEST(Describe, KnowsTheExceptionBeingHandled) {
    const std::pair<void (*)(), const wchar_t*> cases[] = {
        {[] { throw ClientsError(L"m", L"l"); }, L"KAXMLFormatError: m @ l"},
        {[] { throw _com_error(E_FAIL, L"d"); }, L"_com_error 0x80004005: d"},
        {[] { throw std::runtime_error("w\xC3\xB6"); }, L"wö"},
        {[] { throw 1; }, L"unknown exception"},
    };
    for (const auto& [thrower, text] : cases)
        try {
            thrower();
        } catch (...) {
            EXPECT_EQ(DescribeCurrentException(), text);
        }
    EXPECT_EQ(DescribeCurrentException(), L"");
}

} // namespace
