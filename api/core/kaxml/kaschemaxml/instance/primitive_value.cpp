#include <kaxml/kaschemaxml/instance/value.h>

#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/log_message.h>
#include <kaxml/platform/numbers.h>

#include <cerrno>

namespace KAXML {

namespace {

// What both numeric readers do with the conversion's outcome; they differ in the type's name only.
void CheckConversion(int error, const std::wstring& text, const wchar_t* typeInError, const wchar_t* typeInLog) {
    if (error == ERANGE)
        throw KAXMLRuntimeError(Concat(L"Underflow or overflow while converting ", text, L" to ", typeInError));
    if (error != 0)
        LogFormatted(LOG_WARNING, Concat(L"errno %i reported while converting %s to ", typeInLog), {error, text});
}

} // namespace

CKaValue::CKaValue(CKaProperty* property, const wchar_t* text) : KaValueBase(property) {
    m_isPrimitive = true;
    if (text != nullptr)
        SetValue(text);
}

CKaValue::CKaValue(const CKaValue& other) : KaValueBase(other), m_value(other.m_value) { m_isPrimitive = true; }

CKaValue& CKaValue::operator=(const CKaValue& other) {
    std::wstring text = other.m_value;
    KaValueBase::operator=(other);
    m_value.swap(text);
    return *this;
}

CKaValue::~CKaValue() = default;

void CKaValue::SetValue(const wchar_t* text) {
    if (text == nullptr)
        throw KAXMLInvalidArgument(L"InternalSetValue called with a NULL value");
    m_value = text;
    SetNotNull();
}

void CKaValue::SetValue(const std::wstring& text) {
    m_value = text;
    SetNotNull();
}

void CKaValue::SetValue(std::wstring&& text) noexcept {
    m_value.swap(text);
    text.clear();
    SetNotNull();
}

void CKaValue::SetValue(long number) { SetValue(FormatInt(RequireInt32(number, L"CKaValue::SetValue"))); }
void CKaValue::SetValue(int number) { SetValue(FormatInt(number)); }
void CKaValue::SetValue(double number) { SetValue(FormatDouble(number)); }

const wchar_t* CKaValue::GetValue() const noexcept { return m_value.c_str(); }
std::wstring& CKaValue::Value() noexcept { return m_value; }
const std::wstring& CKaValue::Value() const noexcept { return m_value; }

void CKaValue::GetValue(long* number) const {
    if (number == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL pLong into CKaValue::GetValue");
    const ParsedNumber<std::int32_t> parsed = ParseInt32(m_value.c_str());
    *number = parsed.value;
    CheckConversion(parsed.error, m_value, L"long", L"a long");
}

void CKaValue::GetValue(double* number) const {
    if (number == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL pDouble into CKaValue::GetValue");
    const ParsedNumber<double> parsed = ParseDouble(m_value.c_str());
    *number = parsed.value;
    CheckConversion(parsed.error, m_value, L"a double", L"double");
}

void CKaValue::InitializeValue() noexcept { m_value.clear(); }

} // namespace KAXML
