#include <kaxml/kaxml/reader/known_structs.h>

#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/same_name.h>

namespace KAXML {

namespace {

CKaSchema* SchemaOf(const CKaProperty& property) {
    const CKaClass* const owner = property.GetKaClass();
    return owner != nullptr ? owner->GetKaSchema() : nullptr;
}

// Calls `use` with the schema and those it references, in the order in which their classes are searched,
// until it returns true.
template <typename Use> bool AnyOf(CKaSchema& schema, const Use& use) {
    if (use(schema))
        return true;
    CKaReferencedSchemaIterator references(&schema);
    for (const auto* reference = references.Begin(); reference != nullptr; reference = references.Next())
        if (reference->GetSchema() != nullptr && AnyOf(*reference->GetSchema(), use))
            return true;
    return false;
}

// How many classes are searched before the one that is found.
std::size_t PlaceOf(const CKaClass& wanted, CKaSchema& schema) {
    std::size_t place = 0;
    AnyOf(schema, [&](const CKaSchema& searched) {
        for (unsigned int i = 0; i < searched.GetKaClassCount(); ++i, ++place)
            if (searched.GetKaClassByIndex(i) == &wanted)
                return true;
        return false;
    });
    return place;
}

CKaClass* ClassAt(std::size_t place, CKaSchema& schema) {
    CKaClass* found = nullptr;
    AnyOf(schema, [&](const CKaSchema& searched) {
        const std::size_t count = searched.GetKaClassCount();
        if (place < count)
            found = searched.GetKaClassByIndex(static_cast<unsigned int>(place));
        place -= count;
        return found != nullptr;
    });
    return found;
}

} // namespace

std::unique_ptr<KaStructValue> KnownStructs::Make(CKaProperty* property) {
    if (CKaClass* const known = Find(*property))
        return std::unique_ptr<KaStructValue>(new KaStructValue(property, *known));
    auto value = std::make_unique<KaStructValue>(property);
    m_places[property] = PlaceOf(*value->GetValue()->GetKaClass(), *SchemaOf(*property));
    return value;
}

CKaClass* KnownStructs::Find(const CKaProperty& property) const {
    const auto place = m_places.find(&property);
    CKaSchema* const schema = SchemaOf(property);
    if (place == m_places.end() || schema == nullptr)
        return nullptr;
    CKaClass* const kaClass = ClassAt(place->second, *schema);
    return kaClass != nullptr && IsSameName(kaClass->TypeName(), property.GetTypeName()) ? kaClass : nullptr;
}

} // namespace KAXML
