#pragma once

#include <kaxml/kaschemaxml/instance/value.h>

#include <typeinfo>

namespace KAXML {

/// The value as a primitive one, or null. Asked for every value of every instance: an object of the
/// library's own class is told by its type alone, without a dynamic_cast.
inline CKaValue* AsPrimitive(KaValueBase* value) noexcept {
    if (value == nullptr)
        return nullptr;
    return typeid(*value) == typeid(CKaValue) ? static_cast<CKaValue*>(value) : dynamic_cast<CKaValue*>(value);
}

inline const CKaValue* AsPrimitive(const KaValueBase* value) noexcept {
    return AsPrimitive(const_cast<KaValueBase*>(value));
}

} // namespace KAXML
