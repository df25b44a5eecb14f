#include <kaxml/platform/com_error.h>

namespace KAXML {

struct _com_error::Texts {
    std::wstring description;
    std::wstring source;
};

_com_error::_com_error(HRESULT status, std::wstring description, std::wstring source)
    : m_status(status), m_texts(std::make_shared<const Texts>(Texts{std::move(description), std::move(source)})) {}

_com_error::_com_error(const _com_error&) noexcept = default;
_com_error& _com_error::operator=(const _com_error&) noexcept = default;
_com_error::~_com_error() = default;

HRESULT _com_error::Error() const noexcept { return m_status; }

const wchar_t* _com_error::ErrorMessage() const noexcept {
    switch (m_status) {
    case S_OK:
        return L"The operation completed successfully";
    case E_NOINTERFACE:
        return L"No such interface supported";
    case E_POINTER:
        return L"Invalid pointer";
    case E_OUTOFMEMORY:
        return L"Not enough memory";
    case E_INVALIDARG:
        return L"The parameter is incorrect";
    default:
        return L"Unspecified error";
    }
}

const wchar_t* _com_error::Description() const noexcept { return m_texts->description.c_str(); }
const wchar_t* _com_error::Source() const noexcept { return m_texts->source.c_str(); }

} // namespace KAXML
