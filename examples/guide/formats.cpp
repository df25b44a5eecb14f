#include <kaxml/kaxml.h>

#include <iostream>

// Reads the examples of the pages about the formats and prints what is in them.

namespace {

void Print(int depth, const std::wstring& text) {
    std::cout << std::string(2 * static_cast<std::size_t>(depth), ' ') << KAXML::ToUtf8(text) << '\n';
}

void PrintValues(int depth, const KAXML::CKaInstance& instance) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i) {
        std::wstring xml;
        instance.GetKaValue(i)->AppendAsXml(xml);
        Print(depth, xml);
    }
}

void PrintCustomAttributes(int depth, const KAXML::CKaCommon& item) {
    for (unsigned int i = 0; i < item.GetKaCustomAttributeCount(); ++i) {
        Print(depth, L"custom attribute " + item.GetKaCustomAttribute(i)->TypeName());
        PrintValues(depth + 1, *item.GetKaCustomAttribute(i));
    }
}

void PrintClass(const KAXML::CKaClass& kaClass) {
    Print(1, kaClass.TypeName() + L" : " + kaClass.GetBaseClass() + L", type " +
                 KAXML::ToWString(static_cast<long>(kaClass.GetClassType())));
    PrintCustomAttributes(2, kaClass);
    for (unsigned int i = 0; i < kaClass.GetKaPropertyCount(); ++i) {
        KAXML::CKaProperty& property = *kaClass.GetKaProperty(i);
        Print(2, property.PropertyName() + L" : " + property.TypeName() + (property.IsStruct() ? L" struct" : L"") +
                     (property.IsArray() ? L" array" : L"") + (property.ReadOnly() ? L" read-only" : L""));
        PrintCustomAttributes(3, property);
    }
}

void PrintEnds(const KAXML::CKaRelationshipClass& relationship) {
    Print(2, L"from " + relationship.m_source.m_className);
    for (std::size_t i = 0; i < relationship.m_targets.m_classNames.size(); ++i)
        Print(2, L"to " + relationship.m_targets.m_classNames[i] + L", " +
                     std::to_wstring(relationship.m_targets.m_keyVectors[i].size()) + L" keys");
}

void PrintSchema(const KAXML::CKaSchema& schema) {
    Print(0, schema.XmlNamespace());
    PrintCustomAttributes(1, schema);
    for (unsigned int i = 0; i < schema.GetKaClassCount(); ++i)
        PrintClass(*schema.GetKaClassByIndex(i));
    for (unsigned int i = 0; i < schema.GetKaRelationshipClassCount(); ++i) {
        PrintClass(*schema.GetKaRelationshipClass(i));
        PrintEnds(*schema.GetKaRelationshipClass(i));
    }
}

} // namespace

int main(int, char** arguments) {
    const std::wstring folder = KAXML::ToWString(arguments[1]);
    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(folder.c_str());
    schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());
    PrintSchema(schema);

    KAXML::KaParseCallables callables;
    callables.instance = [](KAXML::CKaInstance& instance) {
        Print(0, instance.GetKaClass()->FullName() + L" " + instance.InstanceID());
        PrintValues(1, instance);
    };
    callables.relationship = [](KAXML::KaRelationshipInstance& relationship) {
        Print(0, relationship.InstanceID() + L": " + relationship.GetSourceID() + L" to " + relationship.GetTargetID());
        PrintValues(1, relationship);
    };
    KAXML::ParseKaInstanceFile((folder + L"/water.kainstance.xml").c_str(), &schema, callables);
}
