#include <kaxml/kaxml/core/describe.h>

#include <kaxml/kaxml/core/format.h>
#include <kaxml/platform/wide_text.h>

#include <exception>
#include <ostream>

namespace KAXML {

namespace {

template <typename Class> bool Is(const KAXMLException& error) noexcept {
    return dynamic_cast<const Class*>(&error) != nullptr;
}

// Derived classes before their bases.
const wchar_t* ClassName(const KAXMLException& error) noexcept {
    if (Is<KAXMLFormatError>(error))
        return L"KAXMLFormatError";
    if (Is<KAXMLDomainError>(error))
        return L"KAXMLDomainError";
    if (Is<KAXMLLogicError>(error))
        return L"KAXMLLogicError";
    if (Is<KAXMLInvalidArgument>(error))
        return L"KAXMLInvalidArgument";
    if (Is<KAXMLRuntimeError>(error))
        return L"KAXMLRuntimeError";
    return L"KAXMLException";
}

std::wstring WithPlace(const std::wstring& text, std::wstring_view place) {
    return place.empty() ? text : Concat(text, L" @ ", place);
}

std::wstring Hexadecimal(HRESULT status) {
    std::wstring text = L"0x";
    for (int shift = 28; shift >= 0; shift -= 4)
        text += L"0123456789ABCDEF"[(static_cast<std::uint32_t>(status) >> shift) & 0xF];
    return text;
}

} // namespace

std::wstring Describe(const KAXMLException& error) {
    return WithPlace(Concat(ClassName(error), L": ", error.Message()), error.Location());
}

std::wstring Describe(const _com_error& error) {
    const wchar_t* const text = *error.Description() != L'\0' ? error.Description() : error.ErrorMessage();
    return WithPlace(Concat(L"_com_error ", Hexadecimal(error.Error()), L": ", text), error.Source());
}

const wchar_t* Describe(LOG_SEV severity) noexcept {
    switch (severity) {
    case LOG_ERROR:
        return L"error";
    case LOG_WARNING:
        return L"warning";
    case LOG_INFO:
        return L"info";
    case LOG_TRACE:
        return L"trace";
    }
    return L"unknown";
}

std::wstring DescribeCurrentException() {
    if (std::current_exception() == nullptr)
        return {};
    try {
        throw;
    } catch (const KAXMLException& error) {
        return Describe(error);
    } catch (const _com_error& error) {
        return Describe(error);
    } catch (const std::exception& error) {
        return WideFromUtf8(error.what());
    } catch (...) {
        return L"unknown exception";
    }
}

std::ostream& operator<<(std::ostream& out, const KAXMLException& error) { return out << ToUtf8(Describe(error)); }
std::wostream& operator<<(std::wostream& out, const KAXMLException& error) { return out << Describe(error); }
std::ostream& operator<<(std::ostream& out, const _com_error& error) { return out << ToUtf8(Describe(error)); }
std::wostream& operator<<(std::wostream& out, const _com_error& error) { return out << Describe(error); }
std::ostream& operator<<(std::ostream& out, LOG_SEV severity) { return out << ToUtf8(Describe(severity)); }
std::wostream& operator<<(std::wostream& out, LOG_SEV severity) { return out << Describe(severity); }

std::string ToUtf8(const std::wstring& text) { return Utf8FromWide(text); }

} // namespace KAXML
