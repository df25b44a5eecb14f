#pragma once

#include <kaxml/kaschemaxml/instance/instance.h>

namespace KAXML {

/// Structured metadata of a schema item: an instance of a class (normally a custom attribute
/// class) that the item owns.
///
/// @code
/// auto units = std::make_unique<KAXML::CKaCustomAttribute>(schema.FindKaClass(L"Units", KAXML::KA_ANY_CLASS_TYPE));
/// units->SetPropertyValue(L"Symbol", L"kW");
/// property->AddKaCustomAttribute(units.get());
/// units.release();                      // the property owns it now
/// @endcode
///
/// Used by one thread at a time, together with its schema, as any instance.
class KAXML_API CKaCustomAttribute : public CKaInstance {
  public:
    /// A custom attribute without values.
    /// @param kaClass  not null (KAXMLLogicError).
    explicit CKaCustomAttribute(CKaClass* kaClass);
    CKaCustomAttribute(const CKaCustomAttribute& other);
    CKaCustomAttribute& operator=(const CKaCustomAttribute& other);
    ~CKaCustomAttribute() override;
};

} // namespace KAXML
