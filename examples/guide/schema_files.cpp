#include <kaxml/kaxml.h>

#include <iostream>
#include <memory>

namespace {

void Print(const char* what, const std::wstring& text) { std::cout << what << ": " << KAXML::ToUtf8(text) << '\n'; }

void TryToRead(const std::wstring& folder, const std::wstring& searchPath) {
    // The name and prefix are placeholders until the file gives others.
    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(searchPath.c_str());
    try {
        schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());
        Print("read", schema.XmlNamespace());
    } catch (const KAXML::KAXMLException& error) {
        std::cout << "not read: " << error << '\n';
    }
}

void LookUp(const KAXML::CKaSchema& schema) {
    const unsigned long any = KAXML::KA_ANY_CLASS_TYPE;
    // By name the schema's own classes are searched first, then those of the references, depth first.
    Print("by name", schema.FindKaClass(L"Item", any)->FullName());
    Print("by prefix", schema.FindKaClassUsingFullName(L"wb:Item", any)->FullName());
    Print("by schema", schema.FindKaClassUsingSchemaName(L"Item", L"WaterBase", any)->FullName());
    Print("as the schema calls it", schema.GetRelativeClassName(schema.FindKaClass(L"Item", any)));
    Print("an own one", schema.GetRelativeClassName(L"wa:Basin"));
    std::cout << "none: " << (schema.FindKaClass(L"Weir", any) == nullptr) << '\n';
}

// Which versions a reference to Units 1.3 serves.
void FindVersions() {
    auto units = std::make_unique<KAXML::CKaSchema>(L"Units", L"un", nullptr);
    units->SetVersionString(L"1.3");
    KAXML::CKaSchema schema(L"Plant", L"pl", nullptr);
    KAXML::CKaSchemaReference reference(units.get());
    schema.AddReference(reference);
    units.release(); // the schema owns it now
    for (const wchar_t* version : {L"01.02", L"01.03", L"01.04", L"02.00"}) {
        const KAXML::CKaSchema* found = schema.FindReferencedSchema(L"Units", version);
        Print("Units", version + (found != nullptr ? L" is served by " + found->VersionString() : L" is not there"));
    }
}

} // namespace

int main(int, char** arguments) {
    const std::wstring folder = KAXML::ToWString(arguments[1]);
    TryToRead(folder, L"");
    TryToRead(folder, L"no/such/folder;" + folder);

    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(folder.c_str());
    schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());
    LookUp(schema);
    FindVersions();
}
