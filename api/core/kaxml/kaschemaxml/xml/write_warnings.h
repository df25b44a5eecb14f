#pragma once

namespace KAXML {

class CKaSchema;

/// Logs a warning for everything in a schema that its file cannot carry: what reading the file
/// would refuse, lose or give another form. Each names the item and the reason. Does nothing while
/// no logging callback is installed.
void LogWriteWarnings(const CKaSchema& schema);

} // namespace KAXML
