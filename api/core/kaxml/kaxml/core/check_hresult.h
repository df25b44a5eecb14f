#pragma once

#include <kaxml/platform/com_error.h>

/// Checks the status of a call into the XML service: any status but S_OK is printed to standard
/// output and thrown as KAXMLRuntimeError. The text names the call as the library's interface
/// documents it; it stays the same when our own call looks different.
#define CHECK_HRESULT(status, callText) ::KAXML::CheckHResult((status), callText, __FILE__, __LINE__)

namespace KAXML {

/// The function behind CHECK_HRESULT.
void CheckHResult(HRESULT status, const wchar_t* callText, const char* file, int line);

} // namespace KAXML
