#include <kaxml/kaxml/reader/known_properties.h>

#include <kaxml/kaschemaxml/schema/base_chain.h>
#include <kaxml/kaschemaxml/schema/property.h>

namespace KAXML {

namespace {

constexpr std::size_t kSlots = 4096;

} // namespace

KnownProperties::Place& KnownProperties::SlotOf(const CKaClass& kaClass, std::wstring_view name) {
    if (m_places.empty())
        m_places.resize(kSlots);
    const auto number = [](const void* p) -> std::uint64_t { return reinterpret_cast<std::uintptr_t>(p); };
    const std::uint64_t mixed = (number(name.data()) + 31 * number(&kaClass)) * 0x9E3779B97F4A7C15;
    return m_places[(mixed >> 32) % kSlots];
}

KnownProperty KnownProperties::Find(const CKaClass& kaClass, std::wstring_view name) {
    const Place& place = SlotOf(kaClass, name);
    if (place.kaClass != &kaClass || place.name != name.data())
        return {};
    CKaProperty* const property = PropertyAt(place);
    return property != nullptr && property->PropertyName() == name ? KnownProperty{property, place.number}
                                                                   : KnownProperty{};
}

KnownProperty KnownProperties::Search(const CKaClass& kaClass, std::wstring_view name) {
    CKaProperty* const property = kaClass.FindProperty(name.data());
    if (property == nullptr)
        return {};
    Place& place = SlotOf(kaClass, name);
    place = PlaceOf(kaClass, property);
    place.name = name.data();
    return {property, place.number};
}

CKaProperty* KnownProperties::PropertyAt(const Place& place) {
    const CKaClass* holder = place.kaClass;
    for (std::uint32_t level = 0; level < place.level && holder != nullptr; ++level)
        holder = holder->GetBaseKaClass();
    return holder != nullptr && place.index < holder->GetKaPropertyCount() ? holder->GetKaProperty(place.index)
                                                                           : nullptr;
}

KnownProperties::Place KnownProperties::PlaceOf(const CKaClass& kaClass, const CKaProperty* property) {
    Place place{&kaClass, nullptr, 0, 0, 0};
    for (BaseChain chain(&kaClass); chain.Current() != nullptr; chain.Next()) {
        const std::uint32_t count = chain.Current()->GetKaPropertyCount();
        for (place.index = 0; place.index < count; ++place.index, ++place.number)
            if (chain.Current()->GetKaProperty(place.index) == property)
                return place;
        ++place.level;
    }
    return place;
}

} // namespace KAXML
