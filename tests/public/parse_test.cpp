#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

namespace {

struct ClientsError : KAXML::KAXMLDomainError {
    ClientsError() : KAXMLDomainError(L"own") {}
};

struct Factory final : KAXML::IKaInstanceFactory {
    KAXML::CKaInstance* CreateKaInstance(const wchar_t*, const wchar_t*, int*) override {
        return new KAXML::CKaInstance(pump);
    }
    KAXML::CKaClass* pump = nullptr;
};

// The flows of all pumps of a document.
std::wstring Flows(const std::wstring& pumps) {
    const std::wstring root = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI + L"'>";
    const std::wstring source = root + pumps + L"</KaInstanceXML>";
    KAXML::CKaSchema schema(L"Plant", L"pl", L"");
    Factory factory;
    factory.pump = schema.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS);
    factory.pump->AddKaProperty(L"Flow", L"double", L"");
    std::wstring flows;
    const auto pump = [](KAXML::CKaSchema*, void* context, KAXML::CKaInstance* instance) {
        const wchar_t* const flow = instance->GetPropertyValue(L"Flow");
        *static_cast<std::wstring*>(context) += flow != nullptr ? flow : throw ClientsError();
        return 0;
    };
    const auto relationship = [](KAXML::CKaSchema*, void*, KAXML::KaRelationshipInstance*) { return 0; };
    KAXML::ParseKaInstanceXML(0, source.c_str(), &schema, &flows, nullptr, pump, relationship, nullptr, nullptr,
                              nullptr, &factory, 0);
    return flows;
}

TEST(Parse, ReadsTextAndThrowsAcrossTheBorderOfTheLibrary) {
    EXPECT_EQ(Flows(L"<Pump><Flow>1.5</Flow></Pump><Pump><Flow> 2</Flow></Pump>"), L"1.5 2");
    EXPECT_THROW(Flows(L"<Pump><Nope/></Pump>"), KAXML::KAXMLDomainError) << "the base of the format error";
    EXPECT_THROW(Flows(L"<"), KAXML::KAXMLRuntimeError);
    try {
        Flows(L"<Pump/>");
        ADD_FAILURE();
    } catch (const KAXML::KAXMLException& error) {
        EXPECT_STREQ(error.Message(), L"own");
        EXPECT_NE(dynamic_cast<const ClientsError*>(&error), nullptr);
    }
}

} // namespace
