#include "instance_report.h"

#include "report.h"
#include "text.h"

#include <algorithm>
#include <map>
#include <set>

namespace plant {
namespace {

using Instances = std::vector<const KAXML::CKaInstance*>;

std::wstring UnitOf(const KAXML::CKaProperty& property) {
    const auto* unit = property.FindKaCustomAttributeByName(L"UnitOfMeasure");
    const wchar_t* symbol = unit ? unit->GetPropertyValue(L"Symbol") : nullptr;
    return symbol ? std::wstring(L" ") + symbol : L"";
}

void PrintValues(std::ostream& out, const KAXML::CKaInstance& instance, const std::string& indent);

void PrintValue(std::ostream& out, const KAXML::KaValueBase& value, const std::wstring& name,
                const std::string& indent) {
    out << indent << Utf8(name);
    if (const auto* primitive = dynamic_cast<const KAXML::CKaValue*>(&value)) {
        const std::wstring& text = primitive->Value();
        out << ": " << (text.empty() ? "(empty)" : Utf8(OneLine(text) + UnitOf(*value.GetProperty()))) << '\n';
    } else if (const auto* array = dynamic_cast<const KAXML::KaArrayValue*>(&value)) {
        out << (array->GetLength() == 0 ? ": none\n" : ":\n");
        for (unsigned int i = 0; i < array->GetLength(); ++i)
            if (const KAXML::KaValueBase* member = array->GetValue(i))
                PrintValue(out, *member, L"[" + std::to_wstring(i) + L"]", indent + "    ");
    } else if (const auto* structure = dynamic_cast<const KAXML::KaStructValue*>(&value)) {
        out << ":\n";
        if (structure->GetValue())
            PrintValues(out, *structure->GetValue(), indent + "    ");
    }
}

void PrintValues(std::ostream& out, const KAXML::CKaInstance& instance, const std::string& indent) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        PrintValue(out, *instance.GetKaValue(i), instance.GetKaValue(i)->PropertyName(), indent);
}

// What people call an instance: its tag or name where its class has one.
std::wstring LabelOf(const KAXML::CKaInstance& instance) {
    for (const wchar_t* property : {L"Tag", L"Name", L"Number"})
        if (const wchar_t* label = instance.GetPropertyValue(property))
            return label;
    return instance.InstanceID();
}

std::wstring InWords(const KAXML::CKaInstance& instance) {
    return instance.TypeName() + L" " + OneLine(LabelOf(instance));
}

Instances FirstOfEachClass(const Document& document, std::size_t maximum) {
    Instances instances;
    std::set<const KAXML::CKaClass*> classes;
    for (const auto& instance : document.instances)
        if (classes.size() < maximum && classes.insert(instance.GetKaClass()).second)
            instances.push_back(&instance);
    return instances;
}

std::map<std::wstring, const KAXML::CKaInstance*> ById(const Document& document) {
    std::map<std::wstring, const KAXML::CKaInstance*> instances;
    for (const auto& instance : document.instances)
        instances.emplace(instance.InstanceID(), &instance);
    return instances;
}

} // namespace

void PrintInstances(std::ostream& out, const Document& document, std::size_t maximum) {
    PrintHeading(out, "Some instances");
    for (const auto* instance : FirstOfEachClass(document, maximum)) {
        out << Utf8(InWords(*instance)) << " (id " << Utf8(OneLine(instance->InstanceID())) << ")\n";
        PrintValues(out, *instance, "    ");
    }
}

void PrintRelationships(std::ostream& out, const Document& document, std::size_t maximumPerClass) {
    PrintHeading(out, "Relationships");
    const auto instances = ById(document);
    const auto end = [&](const wchar_t* id) {
        const auto found = instances.find(id);
        return found == instances.end() ? std::wstring(L"unknown instance ") + OneLine(id) : InWords(*found->second);
    };
    std::map<std::wstring, std::vector<const KAXML::KaRelationshipInstance*>> byClass;
    for (const auto& relationship : document.relationships)
        byClass[relationship.GetKaClass()->FullName()].push_back(&relationship);
    for (const auto& [className, relationships] : byClass) {
        out << Utf8(className) << ": " << relationships.size() << '\n';
        const std::size_t shown = std::min(relationships.size(), maximumPerClass);
        for (std::size_t i = 0; i < shown; ++i) {
            out << "    " << Utf8(end(relationships[i]->GetSourceID()) + L" -> " + end(relationships[i]->GetTargetID()))
                << '\n';
            PrintValues(out, *relationships[i], "        ");
        }
        if (shown < relationships.size())
            out << "    ... and " << relationships.size() - shown << " more\n";
    }
}

} // namespace plant
