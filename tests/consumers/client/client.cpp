// Uses the library from outside of it. What is thrown, and what is made, on one side is recognised on
// the other by its class and by its base.

#include <kaxml/kaxml.h>

#include <cstdio>
#include <string>

static_assert(__cplusplus / 100 % 100 == EXPECTED_STANDARD, "compiled as another language version");

namespace {

struct ClientsError : KAXML::KAXMLDomainError {
    ClientsError() : KAXMLDomainError(L"the client's own") {}
};

struct Factory final : KAXML::CKaSchemaInstanceFactory {
    using CKaSchemaInstanceFactory::CKaSchemaInstanceFactory;
    KAXML::CKaInstance* CreateInstance(KAXML::CKaClass* kaClass) override { return new KAXML::CKaInstance(kaClass); }
};

int Require(bool condition, const char* what) {
    if (!condition)
        std::printf("failed: %s\n", what);
    return condition ? 0 : 1;
}

int OnInstance(KAXML::CKaSchema*, void* context, KAXML::CKaInstance* instance) {
    KAXML::KaValueBase* const value = instance->GetPropertyValue(L"Flow", true);
    *static_cast<bool*>(context) = dynamic_cast<KAXML::CKaValue*>(value) != nullptr;
    throw ClientsError();
}

int OnRelationship(KAXML::CKaSchema*, void*, KAXML::KaRelationshipInstance*) { return 0; }

int CatchTheLibrarysExceptionByItsBase(KAXML::CKaSchema& schema) {
    try {
        schema.SetVersionString(L"no version");
    } catch (const KAXML::KAXMLDomainError& error) {
        return Require(dynamic_cast<const KAXML::KAXMLFormatError*>(&error) != nullptr, "class of the exception");
    }
    return Require(false, "exception of the library");
}

int CatchTheClientsExceptionByItsBase(KAXML::CKaSchema& schema) {
    Factory factory(&schema);
    const std::wstring document = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI +
                                  L"'><Pump><Flow>1.5</Flow></Pump></KaInstanceXML>";
    bool isValue = false;
    try {
        KAXML::ParseKaInstanceXML(0, document.c_str(), &schema, &isValue, nullptr, OnInstance, OnRelationship, nullptr,
                                  nullptr, nullptr, &factory, 0);
    } catch (const KAXML::KAXMLException& error) {
        return Require(isValue, "class of the value") +
               Require(dynamic_cast<const ClientsError*>(&error) != nullptr, "class of the client's exception");
    }
    return Require(false, "exception of the client");
}

} // namespace

int main() {
    KAXML::CKaSchema schema(L"Plant", L"pl", L"A process plant");
    schema.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS)->AddKaProperty(L"Flow", L"double", L"");
    const std::wstring version = std::to_wstring(KAXML_VERSION_MAJOR) + L"." + std::to_wstring(KAXML_VERSION_MINOR);
    return Require(std::wstring(KAXML::GetLibraryVersion()).rfind(version + L".", 0) == 0, "version") +
           CatchTheLibrarysExceptionByItsBase(schema) + CatchTheClientsExceptionByItsBase(schema);
}
