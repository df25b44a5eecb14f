#include <kaxml/kaxml/reader/known_structs.h>

#include "support/expectations.h"

#include <memory>

namespace KAXML::Test {
namespace {

TEST(KnownStructs, AreOfTheClassThatASearchFinds) {
    auto* const deep = new CKaSchema(L"Deep", L"deep", nullptr);
    auto* const base = new CKaSchema(L"Base", L"base", nullptr);
    CKaSchema plant(L"Plant", L"pl", nullptr);
    for (const auto& [from, to] : {std::pair(base, deep), std::pair(&plant, base)}) {
        CKaSchemaReference reference(to);
        from->AddReference(reference);
        from->CreateKaClass(L"First", L"", KA_DOMAIN_CLASS);
    }
    CKaClass* const place = deep->CreateKaClass(L"Place", L"", KA_DOMAIN_CLASS);
    CKaClass* const pump = plant.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaProperty* const property = pump->AddKaProperty(L"Location", L"Place", L"");
    KnownStructs structs;
    const auto expectSame = [&](const CKaClass* expected) {
        EXPECT_EQ(KaStructValue(property).GetValue()->GetKaClass(), expected);
        for (int round = 0; round < 2; ++round) { // searched, and then known
            const std::unique_ptr<KaStructValue> value = structs.Make(property);
            EXPECT_EQ(value->GetValue()->GetKaClass(), expected);
            EXPECT_TRUE(value->GetProperty() == property && !value->IsNull());
        }
    };
    expectSame(place);
    // What a client may do between two instances.
    base->CreateKaClass(L"Second", L"", KA_DOMAIN_CLASS);
    expectSame(place);
    expectSame(base->CreateKaClass(L"Place", L"", KA_DOMAIN_CLASS));
    expectSame(plant.CreateKaClass(L"Place", L"", KA_DOMAIN_CLASS));
    property->SetTypeName(L"Other");
    expectSame(deep->CreateKaClass(L"Other", L"", KA_DOMAIN_CLASS));
    deep->RemoveAllClasses();
    ExpectThrows<KAXMLRuntimeError>([&] { structs.Make(property); }, L"Could not find class for struct property");
    expectSame(deep->CreateKaClass(L"Other", L"", KA_DOMAIN_CLASS));
}

} // namespace
} // namespace KAXML::Test
