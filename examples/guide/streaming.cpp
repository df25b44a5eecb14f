#include <kaxml/kaxml.h>

#include <iostream>
#include <map>
#include <vector>

namespace {

// What is kept of a document: copies, because an instance is destroyed when its callback returns.
struct Works {
    std::map<std::wstring, KAXML::CKaInstance> instances; // by id
    std::vector<KAXML::KaRelationshipInstance> relationships;
};

void PrintLine(int depth, const std::wstring& text) {
    std::cout << std::string(2 * static_cast<std::size_t>(depth), ' ') << KAXML::ToUtf8(text) << '\n';
}

Works ReadWorks(const std::wstring& path, KAXML::CKaSchema& schema) {
    Works works;
    int depth = 0;
    KAXML::KaParseCallables callables;
    callables.begin = [](const wchar_t* scope, const KAXML::XMLAttributes&) {
        std::cout << "scope: " << KAXML::ToUtf8(scope) << '\n';
    };
    callables.projectBegin = [&depth](const KAXML::XMLAttributes& attributes) {
        std::wstring name;
        attributes.GetValue(L"name", name);
        PrintLine(++depth, L"project " + name);
    };
    callables.projectEnd = [&depth] { --depth; };
    callables.instance = [&](KAXML::CKaInstance& instance) {
        PrintLine(depth + 1, instance.TypeName() + L" " + instance.InstanceID());
        works.instances.emplace(instance.InstanceID(), instance);
    };
    callables.relationship = [&](KAXML::KaRelationshipInstance& relationship) {
        works.relationships.push_back(relationship);
    };
    KAXML::ParseKaInstanceFile(path.c_str(), &schema, callables);
    return works;
}

// An older document may name what the schema does not have any more.
void ReadWithFlags(KAXML::CKaSchema& schema) {
    const std::wstring document = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI +
                                  L"'><Weir id='W-1'/><Pump id='P-9'><Colour>red</Colour></Pump></KaInstanceXML>";
    const unsigned int skip = KAXML::SKIP_UNRECOGNIZED_CLASSES;
    const unsigned int ignore = KAXML::IGNORE_UNRECOGNIZED_PROPERTIES;
    for (const unsigned int flags : {0U, skip, skip | ignore}) {
        std::cout << "flags " << flags << ": ";
        KAXML::KaParseCallables callables;
        callables.instance = [](KAXML::CKaInstance& instance) {
            std::cout << "read " << KAXML::ToUtf8(instance.InstanceID()) << '\n';
        };
        try {
            KAXML::ParseKaInstanceText(document.c_str(), &schema, callables, nullptr, flags);
        } catch (const KAXML::KAXMLException& error) {
            std::cout << error << '\n';
        }
    }
}

} // namespace

int main(int, char** arguments) {
    const std::wstring folder = KAXML::ToWString(arguments[1]);
    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(folder.c_str());
    schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());

    const Works works = ReadWorks(folder + L"/water.kainstance.xml", schema);
    for (const KAXML::KaRelationshipInstance& feeds : works.relationships) {
        const KAXML::CKaInstance& target = works.instances.at(feeds.GetTargetID());
        std::cout << KAXML::ToUtf8(feeds.GetSourceID()) << " feeds a " << KAXML::ToUtf8(target.TypeName()) << ": "
                  << KAXML::ToUtf8(feeds.GetPropertyValue(L"Share")) << '\n';
    }
    ReadWithFlags(schema);
}
