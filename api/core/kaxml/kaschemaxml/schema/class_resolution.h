#pragma once

namespace KAXML {

class CKaClass;
class CKaRelationshipClass;
class CKaSchema;

/// The class that a relationship class names at one of its ends: searched in the schema and its
/// referenced schemas (the name is compared whole), then asked of the schema's class resolution
/// helper. Never null; owned by its schema.
/// @throws KAXMLFormatError when nobody knows it.
CKaClass* ResolveKaClass(CKaSchema* schema, CKaRelationshipClass* relationshipClass, const wchar_t* className);

} // namespace KAXML
