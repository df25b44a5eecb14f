#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace {

struct ClientsError final : KAXML::KAXMLFormatError {
    using KAXMLFormatError::KAXMLFormatError;
};

// A text on a narrow stream, after it was the same on a wide one.
template <typename T> std::string Streamed(const T& object) {
    std::ostringstream narrow;
    std::wostringstream wide;
    narrow << object;
    wide << object;
    EXPECT_EQ(narrow.str(), KAXML::ToUtf8(wide.str()));
    EXPECT_EQ(wide.str(), KAXML::Describe(object));
    return narrow.str();
}

TEST(Describe, NamesTheClassTheMessageAndTheLocation) {
    using namespace KAXML;
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
    for (const int severity : {KAXML::LOG_ERROR, KAXML::LOG_WARNING, KAXML::LOG_INFO, KAXML::LOG_TRACE})
        out << std::setw(8) << Streamed(static_cast<KAXML::LOG_SEV>(severity));
    EXPECT_EQ(out.str(), "   error warning    info   trace");
    EXPECT_STREQ(KAXML::Describe(static_cast<KAXML::LOG_SEV>(-9)), L"unknown");
}

std::wstring DescribeThrown(void (*thrower)()) {
    try {
        thrower();
    } catch (...) {
        return KAXML::DescribeCurrentException();
    }
    return L"nothing thrown";
}

TEST(Describe, KnowsTheExceptionBeingHandled) {
    EXPECT_EQ(DescribeThrown([] { throw ClientsError(L"m", L"l"); }), L"KAXMLFormatError: m @ l");
    EXPECT_EQ(DescribeThrown([] { throw KAXML::_com_error(KAXML::E_FAIL, L"d"); }), L"_com_error 0x80004005: d");
    EXPECT_EQ(DescribeThrown([] { throw std::runtime_error("w\xC3\xB6"); }), L"wö");
    EXPECT_EQ(DescribeThrown([] { throw 1; }), L"unknown exception");
    EXPECT_EQ(KAXML::DescribeCurrentException(), L"");
}

} // namespace
