#pragma once

#include <kaxml/platform/export.h>

#include <string>

namespace KAXML {

class CKAXMLSAXContentHandler;
class ISAXAttributes;

/// The attributes of an element, as callbacks of the instance reader receive them. Valid during
/// the callback and on its thread only; copies refer to the same attributes.
class KAXML_API XMLAttributes {
  public:
    /// Sets `value` to the value of the attribute of this local name without a namespace and
    /// returns 1; returns 0 and leaves `value` alone when there is none.
    /// @param name  not null (KAXMLInvalidArgument).
    int GetValue(const wchar_t* name, std::wstring& value) const;
    int GetValue(const std::wstring& name, std::wstring& value) const;

  private:
    friend class CKAXMLSAXContentHandler;
    KAXML_LOCAL explicit XMLAttributes(ISAXAttributes* attributes);

    ISAXAttributes* m_pAttributes;
};

} // namespace KAXML
