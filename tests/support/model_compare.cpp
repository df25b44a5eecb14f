#include "support/model_compare.h"

#include "support/expectations.h"

#include <algorithm>
#include <map>

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
    // Where a pointer between parts leads.
    std::wstring Place(const void* part) const {
        const auto found = m_paths.find(part);
        return part == nullptr ? L"null" : found == m_paths.end() ? L"outside" : found->second;
    }
    // Takes pairs of a name and a value.
    template <typename Value, typename... More> void Add(const wchar_t* name, const Value& value, const More&... more) {
        m_lines.push_back(m_path + L"/" + name + L" = '" + Text(value) + L"'");
        if constexpr (sizeof...(more) != 0)
            Add(more...);
    }
    void AddList(const wchar_t* name, const Texts& values) {
        Add(name, static_cast<long>(values.size()));
        for (const std::wstring& value : values)
            Add(name, value);
    }

    void Schema(CKaSchema& schema) {
        In(std::wstring(L"schema ") + schema.GetSchemaName(), &schema, [&] {
            Add(L"prefix", schema.GetSchemaPrefix(), L"version", schema.VersionString());
            Common(schema, schema.GetDisplayLabel());
            CKaReferencedSchemaIterator references(&schema);
            for (const CKaSchemaReference* entry = references.Begin(); entry != nullptr; entry = references.Next())
                Reference(*entry);
            for (unsigned int i = 0; i < schema.GetKaClassCount(); ++i)
                Class(L"class ", *schema.GetKaClassByIndex(i), [] {});
            for (unsigned int i = 0; i < schema.GetKaRelationshipClassCount(); ++i)
                RelationshipClass(*schema.GetKaRelationshipClass(i));
        });
    }

    void Reference(const CKaSchemaReference& reference) {
        In(L"reference " + reference.m_schemaName, &reference, [&] {
            Add(L"version", reference.m_versionString, L"prefix", reference.m_schemaPrefix);
            if (reference.GetSchema() != nullptr)
                Schema(*reference.GetSchema());
        });
    }

    void Common(const CKaCommon& item, const wchar_t* label) {
        Add(L"description", item.GetDescription(), L"label", label);
        for (unsigned int i = 0; i < item.GetKaCustomAttributeCount(); ++i)
            In(L"custom attribute", nullptr, [&] { Instance(*item.GetKaCustomAttribute(i)); });
    }

    template <typename More> void Class(const wchar_t* kind, const CKaClass& kaClass, More more) {
        In(kind + kaClass.TypeName(), &kaClass, [&] {
            Add(L"schema", Place(kaClass.GetKaSchema()), L"base class", kaClass.GetBaseClass(), L"base class found",
                Place(kaClass.GetBaseKaClass()), L"type", static_cast<long>(kaClass.GetClassType()));
            Common(kaClass, kaClass.GetDisplayLabel());
            for (unsigned int i = 0; i < kaClass.GetKaPropertyCount(); ++i)
                Property(*kaClass.GetKaProperty(i));
            more();
        });
    }

    void Property(const CKaProperty& property) {
        In(std::wstring(L"property ") + property.GetPropertyName(), &property, [&] {
            Add(L"class", Place(property.GetKaClass()), L"type", property.GetTypeName(), L"struct", property.IsStruct(),
                L"minOccurs", property.GetMinOccurs(), L"maxOccurs", property.GetMaxOccurs(), L"array",
                property.IsArray(), L"read-only", property.ReadOnly());
            Common(property, property.GetDisplayLabel());
        });
    }

    void RelationshipClass(const CKaRelationshipClass& kaClass) {
        Class(L"relationship class ", kaClass, [&] {
            Add(L"strength", kaClass.GetStrength(), L"direction", kaClass.GetStrengthDirection());
            End(L"source", kaClass.m_source, {kaClass.m_source.m_className}, {kaClass.m_source.m_keyVector});
            End(L"target", kaClass.m_targets, kaClass.m_targets.m_classNames, kaClass.m_targets.m_keyVectors);
        });
    }

    template <typename EndType>
    void End(const wchar_t* name, const EndType& end, const Texts& classes, const std::vector<Texts>& keys) {
        In(name, &end, [&] {
            Add(L"role", end.m_roleLabel, L"cardinality", end.m_cardinality, L"polymorphic", end.m_isPolymorphic);
            Common(end, L"");
            AddList(L"class", classes);
            for (const Texts& each : keys)
                AddList(L"key", each);
        });
    }

    void Instance(const CKaInstance& instance) {
        Add(L"type name", instance.TypeName(), L"id", instance.InstanceID(), L"class", Place(instance.GetKaClass()));
        for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
            Value(L"value " + instance.GetKaValue(i)->PropertyName(), instance.GetKaValue(i));
    }

    void Value(const std::wstring& step, const KaValueBase* value) {
        if (value == nullptr)
            return;
        In(step, value, [&] {
            Add(L"property", Place(value->GetProperty()), L"null", value->IsNull());
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
