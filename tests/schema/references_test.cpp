#include "support/expectations.h"

#include <memory>

namespace KAXML::Test {
namespace {

int s_destroyed = 0;
struct Noted : CKaSchema {
    using CKaSchema::CKaSchema;
    ~Noted() override { ++s_destroyed; }
};

// A schema with one class and one relationship class, referenced and now owned by the other.
CKaSchema* Refer(CKaSchema& from, const std::wstring& name, const wchar_t* version, const wchar_t* className) {
    auto schema = std::make_unique<Noted>(name, L"p" + name, std::wstring());
    schema->SetVersionString(version);
    schema->CreateKaClass(className, L"", KA_DOMAIN_CLASS);
    schema->CreateKaRelationshipClass(className, L"", KA_DOMAIN_CLASS);
    CKaSchemaReference reference(schema.get());
    from.AddReference(reference);
    return schema.release();
}

TEST(References, AreFoundByVersionNameAndPrefix) {
    CKaSchema plant(L"Plant", L"pl", nullptr);
    CKaSchemaReference unloaded;
    unloaded.m_schemaName = unloaded.m_schemaPrefix = L"Ghost";
    plant.AddReference(unloaded);
    CKaSchema* const one5 = Refer(plant, L"Base", L"1.5", L"Pump");
    CKaSchema* const two3 = Refer(plant, L"Base", L"2.3", L"Valve");
    const std::vector<std::tuple<const wchar_t*, const wchar_t*, CKaSchema*>> cases = {
        {L"Base", nullptr, one5},     {L"Base", L"01.05", one5},  {L"Base", L"01.03", one5},
        {L"Base", L"01.07", nullptr}, {L"Base", L"02.00", two3},  {L"Base", L"1.3", nullptr},
        {L"base", L"01.03", nullptr}, {L"Plant", L"bad", &plant}, {L"Ghost", nullptr, nullptr},
        {L"Other", L"bad", nullptr}};
    for (const auto& [name, version, found] : cases)
        EXPECT_EQ(plant.FindReferencedSchema(name, version), found) << Narrow(name);
    ExpectThrows<KAXMLLogicError>([&] { plant.FindReferencedSchema(L"Base", L"12"); },
                                  L"Invalid version string passed to FindReferencedSchema:12");
    EXPECT_TRUE(plant.FindReferencedSchemaByPrefix(L"pBase") == one5 && plant.GetReferencedSchema(2) == two3);
    EXPECT_TRUE(plant.FindReferencedSchemaByPrefix(L"pl") == &plant && plant.GetReferencedSchema(3) == nullptr);
}

TEST(References, ClassesAreSearchedDepthFirst) {
    CKaSchema plant(L"Plant", L"pl", nullptr);
    CKaSchema* const base = Refer(plant, L"Base", L"1.0", L"Pump");
    CKaSchema* const deep = Refer(*base, L"Deep", L"1.0", L"Valve");
    CKaSchema* const last = Refer(plant, L"Last", L"1.0", L"Valve");
    CKaSchema* const deeper = Refer(*last, L"Deeper", L"1.0", L"Tank");
    const std::vector<std::pair<const wchar_t*, CKaSchema*>> cases = {{L"Pump", base},        {L"Valve", deep},
                                                                      {L"pLast:Valve", last}, {L"pl:Valve", deep},
                                                                      {L"Tank", deeper},      {L"pBase:Tank", nullptr}};
    for (const auto& [name, schema] : cases) {
        EXPECT_EQ(plant.FindKaClassUsingFullName(name, 1), schema ? schema->GetKaClassByIndex(0) : nullptr);
        EXPECT_EQ(plant.FindKaRelationshipClassUsingFullName(name, 1),
                  schema ? schema->GetKaRelationshipClass(0) : nullptr);
    }
    EXPECT_EQ(plant.FindKaClassUsingSchemaName(L"Valve", L"Last", 1), last->GetKaClassByIndex(0));
    CKaClass* const own = plant.CreateKaClass(L"Tank", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
    EXPECT_EQ(plant.FindKaClass(L"Tank", KA_DOMAIN_CLASS), nullptr); // the first of the name decides
    EXPECT_EQ(plant.GetRelativeClassName(own), L"Tank");
    EXPECT_EQ(plant.GetRelativeClassName(L"pl:Valve"), L"pDeep:Valve");
}

TEST(References, LookUpsSayWhatIsMissing) {
    CKaSchema plant(L"Plant", L"pl", nullptr);
    Refer(*Refer(plant, L"Base", L"1.0", L"Pump"), L"Deep", L"1.0", L"Pump");
    const auto expect = [&plant](auto find, const std::wstring& operation, const std::wstring& argument) {
        const std::wstring missing = argument == L"prefix" ? L"KaSchema with prefix '" : L"KaSchema '";
        ExpectThrows<KAXMLLogicError>([&] { (plant.*find)(L"Pump", nullptr, 1); },
                                      operation + L": " + argument + L" cannot be NULL!");
        for (const wchar_t* const name : {L"pDeep", L"Deep"}) // of a reference's reference
            ExpectThrows<KAXMLDomainError>([&] { (plant.*find)(L"Pump", name, 1); },
                                           missing + name + L"' not found among 'Plant's referenced schemas");
    };
    expect(&CKaSchema::FindKaClassUsingPrefix, L"FindKaClassUsingPrefix", L"prefix");
    expect(&CKaSchema::FindKaRelationshipClassUsingPrefix, L"FindKaRelationshipClassUsingPrefix", L"prefix");
    expect(&CKaSchema::FindKaClassUsingSchemaName, L"FindKaClassUsingSchemaName", L"schemaName");
    expect(&CKaSchema::FindKaRelationshipClassUsingSchemaName, L"FindKaRelationshipClassUsingSchemaName",
           L"schemaName");
}

TEST(References, LoadedSchemasDieOnceWithTheirOwner) {
    s_destroyed = 0;
    {
        CKaSchema plant(L"Plant", L"pl", nullptr);
        CKaSchema* const base = Refer(plant, L"Base", L"1.0", L"Pump");
        Refer(*base, L"Deep", L"1.0", L"Valve");
        CKaSchemaReference again(base);
        plant.AddReference(again);
    }
    EXPECT_EQ(s_destroyed, 2);
}

TEST(References, CyclesAreRefusedWhateverTheNames) {
    for (const std::wstring name : {L"Plant", L""}) {
        auto plant = std::make_unique<CKaSchema>(L"Plant", L"pl", nullptr);
        CKaSchema* const deep = Refer(*Refer(*plant, L"Base", L"1.0", L"Pump"), L"Deep", L"1.0", L"Pump");
        plant->SchemaName() = name;
        CKaSchemaReference up(plant.get());
        const std::wstring cycle = L"KaSchema references form a cycle: ";
        ExpectThrows<KAXMLRuntimeError>([&] { deep->AddReference(up); },
                                        cycle + L"Deep -> " + name + L" -> Base -> Deep");
        EXPECT_EQ(deep->GetReferencedSchema(0), nullptr);
        ExpectThrows<KAXMLRuntimeError>([&] { plant->AddReference(up); }, cycle + name + L" -> " + name);
        if (HasFailure())
            static_cast<void>(plant.release()); // a ring of owners cannot be destroyed
    }
}

} // namespace
} // namespace KAXML::Test
