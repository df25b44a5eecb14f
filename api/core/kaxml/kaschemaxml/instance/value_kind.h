#pragma once

#include <kaxml/kaschemaxml/instance/value.h>

namespace KAXML {

/// The value as a primitive one, or null. Asked for every value of every instance: a flag tells it
/// without a dynamic_cast.
inline CKaValue* AsPrimitive(KaValueBase* value) noexcept {
    return value != nullptr && value->IsPrimitive() ? static_cast<CKaValue*>(value) : nullptr;
}

inline const CKaValue* AsPrimitive(const KaValueBase* value) noexcept {
    return AsPrimitive(const_cast<KaValueBase*>(value));
}

} // namespace KAXML
