#include <kaxml/kaxml.h>

#include <fstream>
#include <iostream>

namespace {

std::wstring Escaped(const std::wstring& text) {
    std::wstring escaped;
    KAXML::ConvertToXmlString(text.c_str(), escaped);
    return escaped;
}

std::wstring Attribute(const wchar_t* name, const std::wstring& text) {
    return std::wstring(L" ") + name + L"='" + Escaped(text) + L"'";
}

// The writer copies values as they are, so what means something in XML is replaced before.
void EscapeValues(KAXML::CKaInstance& instance);

void EscapeValue(KAXML::KaValueBase* value) {
    if (auto* text = dynamic_cast<KAXML::CKaValue*>(value)) {
        text->Value() = Escaped(text->Value());
    } else if (auto* array = dynamic_cast<KAXML::KaArrayValue*>(value)) {
        for (unsigned int i = 0; i < array->GetLength(); ++i)
            EscapeValue(array->GetValue(i));
    } else if (auto* structure = dynamic_cast<KAXML::KaStructValue*>(value)) {
        if (structure->GetValue() != nullptr)
            EscapeValues(*structure->GetValue());
    }
}

void EscapeValues(KAXML::CKaInstance& instance) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        EscapeValue(instance.GetKaValue(i));
}

// The reader does not look for the id where the writer puts it, so it goes into the attributes.
void Append(std::wstring& xml, const KAXML::CKaInstance& instance, const std::wstring& attributes) {
    KAXML::CKaInstance escaped(instance);
    EscapeValues(escaped);
    escaped.SetInstanceID(L"");
    escaped.AppendAsXml(xml, Attribute(L"id", instance.InstanceID()) + attributes);
    xml += L'\n';
}

void Append(std::wstring& xml, const KAXML::KaRelationshipInstance& relationship) {
    Append(xml, relationship,
           Attribute(L"sourceInstanceID", relationship.GetSourceID()) +
               Attribute(L"targetInstanceID", relationship.GetTargetID()));
}

std::wstring Document(KAXML::CKaSchema& schema) {
    KAXML::CKaInstance basin(schema.FindKaClass(L"Basin", KAXML::KA_DOMAIN_CLASS));
    basin.SetInstanceID(L"B-1");
    basin.SetPropertyValue(L"Tag", L"<Größe & Güte>");
    KAXML::KaRelationshipInstance feeds(schema.FindKaRelationshipClass(L"Feeds", KAXML::KA_DOMAIN_CLASS));
    feeds.SetInstanceID(L"F-1");
    feeds.SetSourceID(L"P-1");
    feeds.SetTargetID(L"B-1");
    std::wstring xml = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI + L"'>\n";
    Append(xml, basin, L"");
    Append(xml, feeds);
    return xml + L"</KaInstanceXML>\n";
}

} // namespace

int main(int, char** arguments) {
    const std::wstring folder = KAXML::ToWString(arguments[1]);
    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(folder.c_str());
    schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());

    const std::string bytes = KAXML::ToUtf8(Document(schema));
    std::ofstream("written.kainstance.xml", std::ios::binary) << bytes;
    std::cout << bytes;

    KAXML::KaParseCallables callables;
    callables.instance = [](KAXML::CKaInstance& instance) {
        std::cout << "read: " << KAXML::ToUtf8(instance.InstanceID()) << ' '
                  << KAXML::ToUtf8(instance.GetPropertyValue(L"Tag")) << '\n';
    };
    callables.relationship = [](KAXML::KaRelationshipInstance& feeds) {
        std::cout << "read: " << KAXML::ToUtf8(feeds.GetSourceID()) << " feeds " << KAXML::ToUtf8(feeds.GetTargetID())
                  << '\n';
    };
    KAXML::ParseKaInstanceFile(L"written.kainstance.xml", &schema, callables);
}
