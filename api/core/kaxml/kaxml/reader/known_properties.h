#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace KAXML {

class CKaClass;
class CKaProperty;

/// A property and its number in the search through its class and the base classes.
struct KnownProperty {
    CKaProperty* property = nullptr;
    std::uint32_t number = 0;
};

/// Finds the properties that the elements of a document name.
///
/// A document names the same few properties again and again. So the place where each name was found
/// in its class is remembered, and one comparison there takes the place of a search through a class
/// and all its bases. Places are remembered, not properties, and what stands there must still have
/// the name: a client may change its classes in a callback.
class KnownProperties {
  public:
    /// What CKaClass::FindProperty finds, if the place is known; else a null property.
    /// @param name  followed by a null character; stays where it is while this object lives.
    KnownProperty Find(const CKaClass& kaClass, std::wstring_view name);
    /// What CKaClass::FindProperty finds, and remembers the place; a null property when the class has
    /// none of this name.
    KnownProperty Search(const CKaClass& kaClass, std::wstring_view name);

  private:
    struct Place {
        const CKaClass* kaClass = nullptr;
        const wchar_t* name = nullptr;
        std::uint32_t level = 0; // how many base classes up
        std::uint32_t index = 0; // in that class
        std::uint32_t number = 0;
    };

    Place& SlotOf(const CKaClass& kaClass, std::wstring_view name);
    static CKaProperty* PropertyAt(const Place& place);
    static Place PlaceOf(const CKaClass& kaClass, const CKaProperty* property);

    std::vector<Place> m_places; // each name and class has one slot; the last one found holds it
};

} // namespace KAXML
