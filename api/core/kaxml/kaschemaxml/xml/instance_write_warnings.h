#pragma once

#include <string>

namespace KAXML {

class CKaCommon;
class CKaSchema;

/// Logs that something of an item does not come back from its file, and why.
void WarnOfWrite(const std::wstring& item, const wchar_t* reason);

/// Warns of what the custom attributes of an item lose in a file, or what keeps it from being read.
void CheckCustomAttributes(const CKaSchema& schema, const std::wstring& item, const CKaCommon& common);

/// The same for the schema's own, which are read before any of its classes.
void CheckSchemaCustomAttributes(const CKaSchema& schema, const std::wstring& item);

} // namespace KAXML
