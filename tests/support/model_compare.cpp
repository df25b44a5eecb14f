#include "support/model_compare.h"

#include "support/expectations.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace KAXML::Test {
namespace {

using Texts = std::vector<std::wstring>;

/// Walks a model and writes down what it finds, a line for each text, flag and pointer.
class Description {
  public:
    explicit Description(CKaSchema& schema) {
        Schema(schema);
        // Once more: only now is every part's path known.
        m_lines.clear();
        Schema(schema);
    }
    const Texts& Lines() const { return m_lines; }

  private:
    template <typename Body> void In(const std::wstring& step, const void* part, Body body) {
        const std::size_t length = m_path.size();
        m_path += L"/" + step;
        m_paths[part] = m_path;
        body();
        m_path.resize(length);
    }

    static std::wstring Text(const std::wstring& value) { return value; }
    static std::wstring Text(long value) { return std::to_wstring(value); }
    template <typename Item> static std::wstring Text(const std::vector<Item>& items) {
        std::wstring text = L"[";
        for (const Item& item : items)
            text += L" '" + Text(item) + L"'";
        return text + L" ]";
    }
    // Where a pointer between parts leads.
    std::wstring Place(const void* part) const {
        const auto found = m_paths.find(part);
        return part == nullptr ? L"null" : found == m_paths.end() ? L"outside" : found->second;
    }
    template <typename... Values> void Add(const wchar_t* names, const Values&... values) {
        m_lines.push_back(m_path + L"/" + names + L" =");
        ((m_lines.back() += L" '" + Text(values) + L"'"), ...);
    }

    void Schema(CKaSchema& schema) {
        In(std::wstring(L"schema ") + schema.GetSchemaName(), &schema, [&] {
            Add(L"prefix, version", schema.GetSchemaPrefix(), schema.VersionString());
            Common(schema, schema.GetDisplayLabel());
            CKaReferencedSchemaIterator references(&schema);
            for (const CKaSchemaReference* entry = references.Begin(); entry != nullptr; entry = references.Next()) {
                Add(L"reference", entry->m_schemaName, entry->m_versionString, entry->m_schemaPrefix);
                if (entry->GetSchema() != nullptr)
                    Schema(*entry->GetSchema());
            }
            for (unsigned int i = 0; i < schema.GetKaClassCount(); ++i)
                Class(*schema.GetKaClassByIndex(i));
            for (unsigned int i = 0; i < schema.GetKaRelationshipClassCount(); ++i)
                Class(*schema.GetKaRelationshipClass(i));
        });
    }

    void Common(const CKaCommon& item, const wchar_t* label) {
        Add(L"description, label", item.GetDescription(), label);
        for (unsigned int i = 0; i < item.GetKaCustomAttributeCount(); ++i)
            In(L"custom attribute", nullptr, [&] { Instance(*item.GetKaCustomAttribute(i)); });
    }

    void Class(const CKaClass& kaClass) {
        In(L"class " + kaClass.TypeName(), &kaClass, [&] {
            Add(L"schema, type", Place(kaClass.GetKaSchema()), static_cast<long>(kaClass.GetClassType()));
            Add(L"base class", kaClass.GetBaseClass(), Place(kaClass.GetBaseKaClass()));
            Common(kaClass, kaClass.GetDisplayLabel());
            for (unsigned int i = 0; i < kaClass.GetKaPropertyCount(); ++i)
                Property(*kaClass.GetKaProperty(i));
            if (const auto* const relationship = dynamic_cast<const CKaRelationshipClass*>(&kaClass)) {
                Add(L"strength, direction", relationship->GetStrength(), relationship->GetStrengthDirection());
                const auto& [source, targets] = std::tie(relationship->m_source, relationship->m_targets);
                End(L"source", source, source.m_className, source.m_keyVector);
                End(L"target", targets, targets.m_classNames, targets.m_keyVectors);
            }
        });
    }

    void Property(const CKaProperty& property) {
        In(std::wstring(L"property ") + property.GetPropertyName(), &property, [&] {
            Add(L"class, type, struct", Place(property.GetKaClass()), property.GetTypeName(), property.IsStruct());
            Add(L"occurrence, array", property.GetMinOccurs(), property.GetMaxOccurs(), property.IsArray());
            Add(L"read-only", property.ReadOnly());
            Common(property, property.GetDisplayLabel());
        });
    }

    template <typename EndType, typename... Lists>
    void End(const wchar_t* name, const EndType& end, const Lists&... classesAndKeys) {
        In(name, &end, [&] {
            Add(L"role, cardinality, polymorphic", end.m_roleLabel, end.m_cardinality, end.m_isPolymorphic);
            Add(L"classes, keys", classesAndKeys...);
            Common(end, L"");
        });
    }

    void Instance(const CKaInstance& instance) {
        Add(L"type name, id, class", instance.TypeName(), instance.InstanceID(), Place(instance.GetKaClass()));
        for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
            Value(L"value " + instance.GetKaValue(i)->PropertyName(), instance.GetKaValue(i));
    }

    void Value(const std::wstring& step, const KaValueBase* value) {
        if (value == nullptr)
            return;
        In(step, value, [&] {
            Add(L"property, null", Place(value->GetProperty()), value->IsNull());
            if (const auto* const primitive = dynamic_cast<const CKaValue*>(value))
                Add(L"text", primitive->Value());
            else if (const auto* const array = dynamic_cast<const KaArrayValue*>(value))
                for (unsigned int i = 0; i < array->GetLength(); ++i)
                    Value(L"member " + std::to_wstring(i), array->GetValue(i));
            else if (const CKaInstance* const held = dynamic_cast<const KaStructValue&>(*value).GetValue())
                Instance(*held);
        });
    }

    std::wstring m_path;
    std::map<const void*, std::wstring> m_paths;
    Texts m_lines;
};

} // namespace

std::string FirstDifference(CKaSchema& expected, CKaSchema& found) {
    Texts a = Description(expected).Lines();
    Texts b = Description(found).Lines();
    a.push_back(L"the end");
    b.push_back(L"the end");
    const auto [first, second] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return first == a.end() ? "" : Narrow(L"expected " + *first + L", found " + *second);
}

std::unique_ptr<CKaSchema> ReadModel(const std::wstring& path, const std::wstring& searchPath) {
    auto schema = std::make_unique<CKaSchema>(L"temporary", L"temporary", nullptr);
    schema->SetSearchPath(searchPath.c_str());
    EXPECT_EQ(schema->ReadXML(path.c_str()), 0) << Narrow(path);
    return schema;
}

} // namespace KAXML::Test
