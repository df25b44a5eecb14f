#pragma once

#include <functional>
#include <string>

namespace KAXML {

class CKaClass;
class CKaCommon;
class CKaSchema;

/// What the reader of a file knows when it comes to an item's custom attributes.
struct KnownWhenRead {
    std::function<const CKaClass*(const CKaClass&)> find; ///< the class found by this one's name, or null
    std::function<bool(const CKaClass&)> hasProperties;   ///< whether the class has its own properties
};

/// Logs that something of an item does not come back from its file, and why.
void WarnOfWrite(const std::wstring& item, const wchar_t* reason);

/// Warns of what the custom attributes of an item lose in a file, or what keeps it from being read.
void CheckCustomAttributes(const CKaSchema& schema, const std::wstring& item, const CKaCommon& common,
                           const KnownWhenRead& known);

} // namespace KAXML
