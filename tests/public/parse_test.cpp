#include <kaxml/kaxml.h>

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

namespace {

struct ClientsError : KAXML::KAXMLDomainError {
    ClientsError() : KAXMLDomainError(L"own") {}
};

struct Factory final : KAXML::IKaInstanceFactory {
    KAXML::CKaInstance* CreateKaInstance(const wchar_t*, const wchar_t* name, int*) override {
        return name == std::wstring(L"Pump") ? new KAXML::CKaInstance(pump) : nullptr;
    }
    KAXML::CKaClass* pump = nullptr;
};

std::wstring Pumps(const std::wstring& content) {
    return std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI + L"'>" + content + L"</KaInstanceXML>";
}

// The flows of all pumps of a document.
std::wstring Flows(int isUrl, const std::wstring& source) {
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
    EXPECT_EQ(KAXML::ParseKaInstanceXML(isUrl, source.c_str(), &schema, &flows, nullptr, pump, relationship, nullptr,
                                        nullptr, nullptr, &factory, 0),
              0);
    return flows;
}

TEST(Parse, ReadsTextAndFiles) {
    const std::wstring document = Pumps(L"<Pump><Flow>1.5</Flow></Pump><Pump><Flow> 2</Flow></Pump>");
    EXPECT_EQ(Flows(0, document), L"1.5 2");
    std::string folder = testing::TempDir() + "kaxml-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/plant.xml";
    std::ofstream(path) << std::string(document.begin(), document.end());
    EXPECT_EQ(Flows(1, L"file://" + std::wstring(path.begin(), path.end())), L"1.5 2");
    std::remove(path.c_str());
    std::remove(folder.c_str());
}

TEST(Parse, ThrowsAcrossTheBorderOfTheLibrary) {
    EXPECT_THROW(Flows(0, Pumps(L"<Pump/>")), ClientsError);
    EXPECT_THROW(Flows(0, Pumps(L"<Pump><Nope/></Pump>")), KAXML::KAXMLDomainError) << "the base of the format error";
    EXPECT_THROW(Flows(0, L"<"), KAXML::KAXMLRuntimeError);
    try {
        Flows(0, Pumps(L"<Pump/>"));
        ADD_FAILURE();
    } catch (const KAXML::KAXMLException& error) {
        EXPECT_STREQ(error.Message(), L"own");
        EXPECT_NE(dynamic_cast<const ClientsError*>(&error), nullptr);
    }
}

} // namespace
