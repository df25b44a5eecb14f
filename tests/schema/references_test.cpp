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
    auto* const schema = new Noted(name, L"p" + name, std::wstring());
    schema->SetVersionString(version);
    schema->CreateKaClass(className, L"", KA_DOMAIN_CLASS);
    schema->CreateKaRelationshipClass(className, L"", KA_DOMAIN_CLASS);
    CKaSchemaReference reference(schema);
    from.AddReference(reference);
    return schema;
}

TEST(References, AreFoundByVersionNameAndPrefix) {
    CKaSchema plant(L"Plant", L"pl", nullptr);
    CKaSchema* const one5 = Refer(plant, L"Base", L"1.5", L"Pump");
    CKaSchema* const two3 = Refer(plant, L"Base", L"2.3", L"Valve");
    const std::vector<std::tuple<const wchar_t*, const wchar_t*, CKaSchema*>> cases = {
        {L"Base", nullptr, one5},     {L"Base", L"01.05", one5},  {L"Base", L"01.03", one5},
        {L"Base", L"01.07", nullptr}, {L"Base", L"02.00", two3},  {L"Base", L"1.3", nullptr},
        {L"base", nullptr, nullptr},  {L"Plant", L"bad", &plant}, {L"Other", L"bad", nullptr}};
    for (const auto& [name, version, found] : cases)
        EXPECT_EQ(plant.FindReferencedSchema(name, version), found) << Narrow(name);
    ExpectThrows<KAXMLLogicError>([&] { plant.FindReferencedSchema(L"Base", L"12"); },
                                  L"Invalid version string passed to FindReferencedSchema:12");
    EXPECT_TRUE(plant.FindReferencedSchemaByPrefix(L"pBase") == one5 &&
                plant.FindReferencedSchemaByPrefix(L"pl") == &plant);
    EXPECT_TRUE(plant.GetReferencedSchema(1) == two3 && plant.GetReferencedSchema(2) == nullptr);
}

TEST(References, ClassesAreSearchedDepthFirst) {
    CKaSchema plant(L"Plant", L"pl", nullptr);
    CKaSchema* const base = Refer(plant, L"Base", L"1.0", L"Pump");
    CKaSchema* const deep = Refer(*base, L"Deep", L"1.0", L"Valve");
    CKaSchema* const last = Refer(plant, L"Last", L"1.0", L"Valve");
    const std::vector<std::pair<const wchar_t*, CKaSchema*>> cases = {
        {L"Pump", base}, {L"Valve", deep}, {L"pLast:Valve", last}, {L"pl:Valve", deep}, {L"pLast:Pump", nullptr}};
    for (const auto& [name, schema] : cases) {
        EXPECT_EQ(plant.FindKaClassUsingFullName(name, 1), schema ? schema->GetKaClassByIndex(0) : nullptr);
        EXPECT_EQ(plant.FindKaRelationshipClassUsingFullName(name, 1),
                  schema ? schema->GetKaRelationshipClass(0) : nullptr);
    }
    EXPECT_EQ(plant.GetRelativeClassName(L"pl:Valve"), L"pDeep:Valve");
    CKaClass* const own = plant.CreateKaClass(L"Valve", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
    EXPECT_EQ(plant.FindKaClass(L"Valve", KA_DOMAIN_CLASS), nullptr); // the first of the name decides
    EXPECT_EQ(plant.GetRelativeClassName(own), L"Valve");
    const auto expectRefused = [&plant](auto find, const std::wstring& operation, const std::wstring& argument) {
        const std::wstring kind = argument == L"prefix" ? L"KaSchema with prefix '" : L"KaSchema '";
        ExpectThrows<KAXMLLogicError>([&] { (plant.*find)(L"Pump", nullptr, 1); },
                                      operation + L": " + argument + L" cannot be NULL!");
        for (const wchar_t* const name : {L"pDeep", L"Deep"}) // of a reference's reference
            ExpectThrows<KAXMLDomainError>([&] { (plant.*find)(L"Pump", name, 1); },
                                           kind + name + L"' not found among 'Plant's referenced schemas");
    };
    expectRefused(&CKaSchema::FindKaClassUsingPrefix, L"FindKaClassUsingPrefix", L"prefix");
    expectRefused(&CKaSchema::FindKaRelationshipClassUsingPrefix, L"FindKaRelationshipClassUsingPrefix", L"prefix");
    expectRefused(&CKaSchema::FindKaClassUsingSchemaName, L"FindKaClassUsingSchemaName", L"schemaName");
    expectRefused(&CKaSchema::FindKaRelationshipClassUsingSchemaName, L"FindKaRelationshipClassUsingSchemaName",
                  L"schemaName");
}

TEST(References, AreDestroyedOnceHoweverOftenTheyAreHeld) {
    s_destroyed = 0;
    {
        CKaSchema plant(L"Plant", L"pl", nullptr);
        CKaSchema* const base = Refer(plant, L"Base", L"1.0", L"Pump");
        CKaSchemaReference deep(Refer(*base, L"Deep", L"1.0", L"Valve"));
        for (CKaSchema* const holder : {&plant, Refer(plant, L"Other", L"1.0", L"Fan"), &plant})
            holder->AddReference(deep);
        const CKaSchema copy(plant), assigned = copy;
    }
    EXPECT_EQ(s_destroyed, 3);
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
        ExpectThrows<KAXMLRuntimeError>([&] { plant->AddReference(up); }, cycle + name + L" -> " + name);
        EXPECT_EQ(deep->GetReferencedSchema(0), nullptr);
        if (HasFailure())
            static_cast<void>(plant.release()); // a ring of owners cannot be destroyed
    }
}

} // namespace
} // namespace KAXML::Test
