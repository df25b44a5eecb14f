#include <kaxml/kaxml/reader/known_properties.h>

#include <kaxml/kaschemaxml/schema/base_chain.h>

namespace KAXML {

KnownClass& KnownProperties::Use(const CKaClass& kaClass) {
    const auto [entry, isNew] = m_classes.try_emplace(&kaClass);
    KnownClass& known = entry->second;
    if (isNew)
        known.number = static_cast<std::uint32_t>(m_classes.size());
    std::size_t level = 0;
    for (BaseChain chain(&kaClass); chain.Current() != nullptr; chain.Next(), ++level) {
        if (level == known.chain.size())
            known.chain.push_back(chain.Current());
        known.chain[level] = chain.Current();
    }
    known.chain.resize(level);
    return known;
}

KnownProperty KnownProperties::Search(const KnownClass& known, const XmlName& name) {
    CKaProperty* const property = known.chain.front()->FindProperty(name.localName.c_str());
    if (property == nullptr)
        return {};
    MakeRoom();
    Place& place = m_places[SlotOf(known, name)];
    place = PlaceOf(known, property);
    place.name = &name;
    return {property, place.number};
}

// When half of the slots may be taken there are more, and what was found is found again.
void KnownProperties::MakeRoom() {
    if (++m_found <= m_places.size() / 2 || m_places.size() == kMostSlots)
        return;
    m_places.assign(4 * m_places.size(), {});
    m_found = 1;
}

KnownProperties::Place KnownProperties::PlaceOf(const KnownClass& known, const CKaProperty* property) {
    Place place{&known, nullptr, 0, 0, 0};
    for (const CKaClass* const holder : known.chain) {
        const std::uint32_t count = holder->GetKaPropertyCount();
        for (place.index = 0; place.index < count; ++place.index, ++place.number)
            if (holder->GetKaProperty(place.index) == property)
                return place;
        ++place.level;
    }
    return place;
}

} // namespace KAXML
