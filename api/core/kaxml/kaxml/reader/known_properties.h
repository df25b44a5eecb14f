#pragma once

#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/platform/xml_name.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace KAXML {

/// A property and its number in the search through its class and the base classes.
struct KnownProperty {
    CKaProperty* property = nullptr;
    std::uint32_t number = 0;
};

/// A class of which a document has instances.
struct KnownClass {
    std::vector<const CKaClass*> chain; // the class and its bases, nearest first
    std::uint32_t number = 0;
    std::size_t valueCount = 0; // of the last instance
};

/// Finds the properties that the elements of a document name.
///
/// A document names the same few properties again and again. So the place where each name was found
/// in its class is remembered, and one comparison there takes the place of a search through a class
/// and all its bases. Places are remembered, not properties, and what stands there must still have
/// the name: a client may change its classes in a callback.
class KnownProperties {
  public:
    /// To be called for each instance: looks at the class's bases again. The result stays valid, and
    /// serves the calls below until the client runs again.
    KnownClass& Use(const CKaClass& kaClass);

    /// What CKaClass::FindProperty finds, if the place is known; else a null property.
    /// @param name  stays where it is while this object lives.
    KnownProperty Find(const KnownClass& known, const XmlName& name) const {
        const Place& place = m_places[SlotOf(known, name)];
        if (place.known != &known || place.name != &name || place.level >= known.chain.size())
            return {};
        const CKaClass& holder = *known.chain[place.level];
        if (place.index >= holder.m_properties.size())
            return {};
        CKaProperty* const property = holder.m_properties[place.index].get();
        return property->m_propertyName == name.localName ? KnownProperty{property, place.number} : KnownProperty{};
    }

    /// What CKaClass::FindProperty finds, and remembers the place; a null property when the class has
    /// none of this name.
    KnownProperty Search(const KnownClass& known, const XmlName& name);

  private:
    struct Place {
        const KnownClass* known = nullptr;
        const XmlName* name = nullptr;
        std::uint32_t level = 0; // how many base classes up
        std::uint32_t index = 0; // in that class
        std::uint32_t number = 0;
    };

    // Powers of two. A small document needs few.
    static constexpr std::size_t kFirstSlots = 64;
    static constexpr std::size_t kMostSlots = 4096;

    // The names of one class stand side by side, those of different classes apart.
    std::size_t SlotOf(const KnownClass& known, const XmlName& name) const noexcept {
        return (std::size_t{known.number} * 179 + name.number) & (m_places.size() - 1);
    }
    void MakeRoom();
    static Place PlaceOf(const KnownClass& known, const CKaProperty* property);

    std::unordered_map<const CKaClass*, KnownClass> m_classes;
    // Each name and class has one slot; the last one found holds it.
    std::vector<Place> m_places = std::vector<Place>(kFirstSlots);
    std::size_t m_found = 0; // since the list has this length
};

} // namespace KAXML
