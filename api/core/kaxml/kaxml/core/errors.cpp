#include <kaxml/kaxml/core/errors.h>

#include <kaxml/kaxml/core/log_message.h>

namespace KAXML {

KAXMLException::KAXMLException(std::wstring message, std::wstring location)
    : m_pText(std::make_unique<std::pair<std::wstring, std::wstring>>(std::move(message), std::move(location))),
      m_code(0) {
    if (m_pText->second.empty())
        LogMessage(LOG_ERROR, L"Exception", m_pText->first.c_str());
    else
        LogMessage(LOG_ERROR, L"Exception", (m_pText->first + L" @ " + m_pText->second).c_str());
}

KAXMLException::KAXMLException(const KAXMLException& other)
    : m_pText(std::make_unique<std::pair<std::wstring, std::wstring>>(*other.m_pText)), m_code(other.m_code) {}

KAXMLException& KAXMLException::operator=(const KAXMLException& other) {
    if (this != &other) {
        auto text = *other.m_pText;
        m_pText->swap(text);
        m_code = other.m_code;
    }
    return *this;
}

KAXMLException::~KAXMLException() = default;

const wchar_t* KAXMLException::Message() const noexcept { return m_pText->first.c_str(); }
const wchar_t* KAXMLException::Location() const noexcept { return m_pText->second.c_str(); }

void KAXMLException::SetSubclassCode() noexcept {
    if (m_code == 0)
        m_code = 1;
}

// The bodies stand here rather than in the header so that each class has its virtual table and
// type information once, in the library: a client's catch by class depends on it.

KAXMLLogicError::KAXMLLogicError(std::wstring message, std::wstring location)
    : KAXMLException(std::move(message), std::move(location)) {
    SetSubclassCode();
}
KAXMLLogicError::KAXMLLogicError(const KAXMLLogicError&) = default;
KAXMLLogicError& KAXMLLogicError::operator=(const KAXMLLogicError&) = default;
KAXMLLogicError::~KAXMLLogicError() = default;

KAXMLDomainError::KAXMLDomainError(std::wstring message, std::wstring location)
    : KAXMLException(std::move(message), std::move(location)) {
    SetSubclassCode();
}
KAXMLDomainError::KAXMLDomainError(const KAXMLDomainError&) = default;
KAXMLDomainError& KAXMLDomainError::operator=(const KAXMLDomainError&) = default;
KAXMLDomainError::~KAXMLDomainError() = default;

KAXMLFormatError::KAXMLFormatError(std::wstring message, std::wstring location)
    : KAXMLDomainError(std::move(message), std::move(location)) {}
KAXMLFormatError::KAXMLFormatError(const KAXMLFormatError&) = default;
KAXMLFormatError& KAXMLFormatError::operator=(const KAXMLFormatError&) = default;
KAXMLFormatError::~KAXMLFormatError() = default;

KAXMLInvalidArgument::KAXMLInvalidArgument(std::wstring message, std::wstring location)
    : KAXMLException(std::move(message), std::move(location)) {
    SetSubclassCode();
}
KAXMLInvalidArgument::KAXMLInvalidArgument(const KAXMLInvalidArgument&) = default;
KAXMLInvalidArgument& KAXMLInvalidArgument::operator=(const KAXMLInvalidArgument&) = default;
KAXMLInvalidArgument::~KAXMLInvalidArgument() = default;

KAXMLRuntimeError::KAXMLRuntimeError(std::wstring message, std::wstring location)
    : KAXMLException(std::move(message), std::move(location)) {
    SetSubclassCode();
}
KAXMLRuntimeError::KAXMLRuntimeError(const KAXMLRuntimeError&) = default;
KAXMLRuntimeError& KAXMLRuntimeError::operator=(const KAXMLRuntimeError&) = default;
KAXMLRuntimeError::~KAXMLRuntimeError() = default;

} // namespace KAXML
