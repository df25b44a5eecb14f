#include "compare.h"

#include "schemas.h"
#include "text.h"

#include <algorithm>

namespace plant {
namespace {

/// Walks a model and writes down what it sees.
class Observer {
  public:
    Facts facts;

    void Schema(KAXML::CKaSchema& schema);
    void Instance(const KAXML::CKaInstance& instance);

  private:
    // Calls with the path prolonged by a step.
    template <typename Body> void At(const std::wstring& step, Body body) {
        const std::size_t length = m_path.size();
        m_path += (m_path.empty() ? L"" : L"/") + step;
        body();
        m_path.resize(length);
    }
    void Add(const std::wstring& name, const std::wstring& value) { facts.push_back({m_path + L"/" + name, value}); }
    void AddFlag(const std::wstring& name, bool value) { Add(name, value ? L"yes" : L"no"); }
    void AddKeys(const std::vector<std::wstring>& keys);

    void Common(const KAXML::CKaCommon& item);
    void Reference(const KAXML::CKaSchemaReference& reference);
    void Class(const KAXML::CKaClass& kaClass);
    void Property(const KAXML::CKaProperty& property);
    void RelationshipClass(const KAXML::CKaRelationshipClass& relationshipClass);
    void Source(const KAXML::CKaSource& source);
    void Targets(const KAXML::CKaTargets& targets);
    template <typename End> void EndTexts(const End& end);
    void Values(const KAXML::CKaInstance& instance);
    void Value(const KAXML::KaValueBase& value);
    void Members(const KAXML::KaArrayValue& array);

    std::wstring m_path;
};

void Observer::Schema(KAXML::CKaSchema& schema) {
    At(schema.GetSchemaName(), [&] {
        Add(L"prefix", schema.GetSchemaPrefix());
        Add(L"version", schema.VersionString());
        Add(L"label", schema.GetDisplayLabel());
        Common(schema);
        for (const auto* reference : ReferencesOf(schema))
            Reference(*reference);
        for (unsigned int i = 0; i < schema.GetKaClassCount(); ++i)
            Class(*schema.GetKaClassByIndex(i));
        for (unsigned int i = 0; i < schema.GetKaRelationshipClassCount(); ++i)
            RelationshipClass(*schema.GetKaRelationshipClass(i));
    });
}

void Observer::Common(const KAXML::CKaCommon& item) {
    Add(L"description", item.GetDescription());
    for (unsigned int i = 0; i < item.GetKaCustomAttributeCount(); ++i) {
        const KAXML::CKaCustomAttribute& attribute = *item.GetKaCustomAttribute(i);
        At(L"custom attribute " + attribute.TypeName(), [&] { Instance(attribute); });
    }
}

void Observer::Reference(const KAXML::CKaSchemaReference& reference) {
    At(L"reference " + reference.m_schemaName, [&] {
        Add(L"version", reference.m_versionString);
        Add(L"prefix", reference.m_schemaPrefix);
        AddFlag(L"loaded", reference.GetSchema() != nullptr);
        if (reference.GetSchema())
            Schema(*reference.GetSchema());
    });
}

void Observer::Class(const KAXML::CKaClass& kaClass) {
    At(L"class " + kaClass.TypeName(), [&] {
        const KAXML::CKaClass* base = kaClass.GetBaseKaClass();
        Add(L"base class", kaClass.GetBaseClass());
        Add(L"base class found", base ? base->FullName() : L"");
        Add(L"label", kaClass.GetDisplayLabel());
        AddFlag(L"domain class", kaClass.IsDomainClass());
        AddFlag(L"struct", kaClass.IsStruct());
        AddFlag(L"custom attribute class", kaClass.IsCustomAttributeClass());
        Common(kaClass);
        for (unsigned int i = 0; i < kaClass.GetKaPropertyCount(); ++i)
            Property(*kaClass.GetKaProperty(i));
    });
}

void Observer::Property(const KAXML::CKaProperty& property) {
    At(std::wstring(L"property ") + property.GetPropertyName(), [&] {
        Add(L"type", property.GetTypeName());
        Add(L"minOccurs", property.GetMinOccurs());
        Add(L"maxOccurs", property.GetMaxOccurs());
        Add(L"label", property.GetDisplayLabel());
        AddFlag(L"struct", property.IsStruct());
        AddFlag(L"array", property.IsArray());
        AddFlag(L"read-only", property.ReadOnly());
        Common(property);
    });
}

void Observer::RelationshipClass(const KAXML::CKaRelationshipClass& relationshipClass) {
    Class(relationshipClass);
    At(L"class " + relationshipClass.TypeName(), [&] {
        Add(L"strength", relationshipClass.GetStrength());
        Add(L"strength direction", relationshipClass.GetStrengthDirection());
        Source(relationshipClass.m_source);
        Targets(relationshipClass.m_targets);
    });
}

void Observer::Source(const KAXML::CKaSource& source) {
    At(L"source", [&] {
        EndTexts(source);
        At(L"class " + source.m_className, [&] { AddKeys(source.m_keyVector); });
    });
}

void Observer::Targets(const KAXML::CKaTargets& targets) {
    At(L"target", [&] {
        EndTexts(targets);
        for (std::size_t i = 0; i < targets.m_classNames.size(); ++i)
            At(L"class " + targets.m_classNames[i], [&] { AddKeys(targets.m_keyVectors.at(i)); });
    });
}

template <typename End> void Observer::EndTexts(const End& end) {
    Add(L"role", end.m_roleLabel);
    Add(L"cardinality", end.m_cardinality);
    AddFlag(L"polymorphic", end.m_isPolymorphic);
    Common(end);
}

void Observer::AddKeys(const std::vector<std::wstring>& keys) {
    Add(L"number of keys", std::to_wstring(keys.size()));
    for (const std::wstring& key : keys)
        Add(L"key", key);
}

void Observer::Instance(const KAXML::CKaInstance& instance) {
    Add(L"class", instance.GetKaClass()->FullName());
    Add(L"type name", instance.TypeName());
    Add(L"id", instance.InstanceID());
    if (const auto* relationship = dynamic_cast<const KAXML::KaRelationshipInstance*>(&instance)) {
        Add(L"source", relationship->GetSourceID());
        Add(L"target", relationship->GetTargetID());
    }
    Values(instance);
}

void Observer::Values(const KAXML::CKaInstance& instance) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        At(instance.GetKaValue(i)->PropertyName(), [&] { Value(*instance.GetKaValue(i)); });
}

void Observer::Value(const KAXML::KaValueBase& value) {
    AddFlag(L"null", value.IsNull());
    if (const auto* primitive = dynamic_cast<const KAXML::CKaValue*>(&value))
        Add(L"text", primitive->Value());
    else if (const auto* array = dynamic_cast<const KAXML::KaArrayValue*>(&value))
        Members(*array);
    else if (const auto* structure = dynamic_cast<const KAXML::KaStructValue*>(&value))
        if (structure->GetValue())
            Values(*structure->GetValue());
}

void Observer::Members(const KAXML::KaArrayValue& array) {
    Add(L"length", std::to_wstring(array.GetLength()));
    for (unsigned int i = 0; i < array.GetLength(); ++i)
        if (const KAXML::KaValueBase* member = array.GetValue(i))
            At(std::to_wstring(i), [&] { Value(*member); });
}

std::wstring InWords(const Fact& fact) { return fact.path + L" = '" + OneLine(fact.value) + L"'"; }

} // namespace

Facts FactsOf(KAXML::CKaSchema& schema) {
    Observer observer;
    observer.Schema(schema);
    return std::move(observer.facts);
}

Facts FactsOf(const KAXML::CKaInstance& instance) {
    Observer observer;
    observer.Instance(instance);
    return std::move(observer.facts);
}

std::wstring FirstDifference(const Facts& expected, const Facts& found) {
    const auto equal = [](const Fact& a, const Fact& b) { return a.path == b.path && a.value == b.value; };
    const auto [e, f] = std::mismatch(expected.begin(), expected.end(), found.begin(), found.end(), equal);
    if (e == expected.end() && f == found.end())
        return {};
    if (f == found.end())
        return L"missing: " + InWords(*e);
    if (e == expected.end())
        return L"not expected: " + InWords(*f);
    return L"expected " + InWords(*e) + L", found " + InWords(*f);
}

} // namespace plant
