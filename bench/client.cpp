#include "client.h"

#include <stdexcept>

namespace bench {
namespace {

struct Receiver {
    const Client::Visitor& visitor;
    std::size_t count = 0;

    int Take(const KAXML::CKaInstance& instance) {
        ++count;
        if (visitor)
            visitor(instance);
        return 0;
    }
};

int OnInstance(KAXML::CKaSchema*, void* receiver, KAXML::CKaInstance* instance) {
    return static_cast<Receiver*>(receiver)->Take(*instance);
}

int OnRelationship(KAXML::CKaSchema*, void* receiver, KAXML::KaRelationshipInstance* relationship) {
    return static_cast<Receiver*>(receiver)->Take(*relationship);
}

void CountInstance(Tally& tally, const KAXML::CKaInstance& instance);

void CountValue(Tally& tally, const KAXML::KaValueBase& value) {
    ++tally.values;
    if (const auto* primitive = dynamic_cast<const KAXML::CKaValue*>(&value)) {
        tally.characters += primitive->Value().size();
    } else if (const auto* structure = dynamic_cast<const KAXML::KaStructValue*>(&value)) {
        CountInstance(tally, *structure->GetValue());
    } else if (const auto* array = dynamic_cast<const KAXML::KaArrayValue*>(&value)) {
        for (unsigned int i = 0; i < array->GetLength(); ++i)
            CountValue(tally, *array->GetValue(i));
    }
}

void CountInstance(Tally& tally, const KAXML::CKaInstance& instance) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        CountValue(tally, *instance.GetKaValue(i));
}

} // namespace

void ReadSchema(KAXML::CKaSchema& schema, const std::filesystem::path& file) {
    schema.SetSearchPath(file.parent_path().wstring().c_str());
    if (schema.ReadXML(file.wstring().c_str()) != 0)
        throw std::runtime_error("no schema: " + file.string());
}

Client::Client(const std::filesystem::path& schemaFile) : m_schema(L"Empty", L"Empty", nullptr) {
    ReadSchema(m_schema, schemaFile);
}

std::size_t Client::ParseFile(const std::filesystem::path& document, const Visitor& visitor) {
    return Parse(1, document.wstring(), visitor);
}

std::size_t Client::ParseText(const std::wstring& text) { return Parse(0, text, {}); }

Tally Client::Count(const std::filesystem::path& document) {
    Tally tally;
    tally.instances = ParseFile(document, [&tally](const KAXML::CKaInstance& instance) {
        tally.characters += instance.TypeName().size() + instance.InstanceID().size();
        CountInstance(tally, instance);
    });
    return tally;
}

std::size_t Client::Parse(int isUrl, const std::wstring& source, const Visitor& visitor) {
    Receiver receiver{visitor};
    KAXML::CKaSchemaInstanceFactory factory(&m_schema);
    KAXML::ParseKaInstanceXML(isUrl, source.c_str(), &m_schema, &receiver, nullptr, &OnInstance, &OnRelationship,
                              nullptr, nullptr, nullptr, &factory, 0);
    return receiver.count;
}

} // namespace bench
