#pragma once

#include <kaxml/platform/export.h>

#include <cstdint>
#include <memory>
#include <string>

namespace KAXML {

/// Status of a call into the XML service: 0 is success, negative values are failures, positive ones
/// are successes with a remark.
using HRESULT = std::int32_t;

inline constexpr HRESULT S_OK = 0;                                         ///< success
inline constexpr HRESULT S_FALSE = 1;                                      ///< success, with a remark
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);        ///< unspecified error
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002); ///< no object of this kind
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);     ///< a pointer that is not valid
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E); ///< no memory
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);  ///< an argument that is not valid

/// A failure of the XML service or of the file system below it: a schema file that cannot be saved,
/// a text that XML cannot hold. It is not part of the KAXMLException family; the schema reader and
/// writer let it pass to the caller unchanged.
///
/// Copies share their texts, so copying never throws. One object may be read by several threads.
class KAXML_API _com_error {
  public:
    /// An error with these texts; see the operations that return them.
    /// @param status       the failing status.
    /// @param description  what happened, in words a person can act on; may be empty.
    /// @param source       the file or component that failed; may be empty.
    explicit _com_error(HRESULT status, std::wstring description = {}, std::wstring source = {});
    _com_error(const _com_error&) noexcept;
    _com_error& operator=(const _com_error&) noexcept;
    virtual ~_com_error();

    /// The failing status.
    HRESULT Error() const noexcept;
    /// The general text of the status, for example "Unspecified error". Never null.
    const wchar_t* ErrorMessage() const noexcept;
    /// What happened (path, system error, parser's message with line and column). Never null.
    const wchar_t* Description() const noexcept;
    /// The file or component that failed. Never null, may be empty.
    const wchar_t* Source() const noexcept;

  private:
    struct Texts;
    HRESULT m_status;
    std::shared_ptr<const Texts> m_texts;
};

} // namespace KAXML
