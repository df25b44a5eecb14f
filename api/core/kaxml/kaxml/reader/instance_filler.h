#pragma once

#include <kaxml/kaxml/reader/known_properties.h>

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace KAXML {

class CKaInstance;
class CKaProperty;
class KaValueBase;
class ValueStock;
struct XmlName;

/// Gives an instance its values as they come from a document. The properties of a class and the
/// values of an instance are plain lists, searched from the front. Most elements need no search:
/// their properties are known, and the instance holds nothing but first values of properties that
/// are ticked off. An instance that needs many is filled by way of tables, so that the time it takes
/// grows with the document only.
///
/// Nobody else may change the instance or its class meanwhile.
class InstanceFiller {
  public:
    /// @param instance    not null, with a class; not owned.
    /// @param properties  what the document has named so far.
    /// @param stock       where primitive values come from.
    InstanceFiller(CKaInstance* instance, KnownProperties& properties, ValueStock& stock);
    InstanceFiller(const InstanceFiller&) = delete;
    InstanceFiller& operator=(const InstanceFiller&) = delete;
    ~InstanceFiller();

    CKaInstance& Instance() const noexcept { return m_instance; }
    /// CKaClass::FindProperty of the instance's class. The calls below are about what it found.
    CKaProperty* FindProperty(const XmlName& name);
    /// CKaInstance::AddKaValue.
    void AddValue(std::unique_ptr<KaValueBase> value);
    /// CKaInstance::SetPropertyValue, for a primitive property. May take the text over.
    void SetText(const std::wstring& name, std::wstring& text);

  private:
    // Of equal names the first. The views are of the names in the properties and values themselves.
    struct Tables {
        explicit Tables(const CKaInstance& instance);
        std::unordered_map<std::wstring_view, CKaProperty*> properties;
        std::unordered_map<std::wstring_view, KaValueBase*> values;
        std::unordered_map<std::wstring, int> numbers; // the last one appended to a name
    };

    CKaProperty* SearchProperty(const XmlName& name);
    bool IsFirstValue() noexcept;
    bool UsesTables();
    void AddByTables(std::unique_ptr<KaValueBase> value);
    void SetTextByTables(std::wstring_view name, const std::wstring& text);
    std::wstring NumberedName(const std::wstring& base);

    CKaInstance& m_instance;
    KnownProperties& m_properties;
    KnownClass& m_known;
    ValueStock& m_stock;
    KnownProperty m_found;
    static constexpr std::uint32_t kValues = 256;
    std::bitset<kValues> m_hasFirstValue; // by the properties' numbers
    std::size_t m_firstValues = 0;
    int m_searches = 0;
    std::unique_ptr<Tables> m_tables;
};

} // namespace KAXML
