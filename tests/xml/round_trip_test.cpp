#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"
#include "support/model_compare.h"

namespace KAXML::Test {
namespace {

using Model = std::unique_ptr<CKaSchema>;

const std::wstring kFolder = WideFromUtf8(KAXML_TEST_DATA_DIR "/schemas/");
const std::wstring kSearchPath = kFolder + L"referenced";

Model FromFile(const std::wstring& stem) { return ReadModel(kFolder + stem + L".kaschema.xml", kSearchPath); }

Model BuiltByCalls() {
    auto plant = std::make_unique<CKaSchema>(L"Plant", L"pl", L"it's \"a\" <b> & c\td\ne\rf \U0001F642");
    plant->SetVersionString(L"1.2");
    CKaSchemaReference reference(ReadModel(kSearchPath + L"/Base.01.02.kaschema.xml").release());
    plant->AddReference(reference);
    CKaClass& pump = *plant->CreateKaClass(L"Pump", L"moves", KA_DOMAIN_CLASS);
    pump.SetBaseClass(L"b:Equipment");
    pump.AddKaProperty(L"Size", L"int", L"in mm")->SetReadOnly(1);
    pump.AddKaProperty(L"All", L"Entry", L"")->SetMinOccurs(L"2");
    CKaRelationshipClass& feeds = *plant->CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    feeds.m_source.m_className = L"Pump";
    feeds.m_source.m_keyVector = {L"Size"};
    feeds.m_targets.m_classNames = {L"b:Equipment", L"Pump"};
    feeds.m_targets.m_keyVectors = {{L"Tag", L"No"}, {}};
    CKaClass* const note = plant->FindKaClass(L"Note", KA_ANY_CLASS_TYPE);
    plant->CreateArrayMemberForCustomAttribute(note, L"Entries")->SetPropertyValue(L"Author", L" two\r\nlines ");
    return plant;
}

Model (*const kModels[])() = {
    &BuiltByCalls,
    [] { return std::make_unique<CKaSchema>(L"Plant", L"pl", nullptr); },
    [] { return FromFile(L"040-everything"); },
    [] { return FromFile(L"021-schema-custom-attributes"); },
    [] { return FromFile(L"032-legacy-pairs"); },
};

Model WriteAndRead(const CKaSchema& model) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", "");
    EXPECT_EQ(model.WriteXML(path.c_str()), 0);
    return ReadModel(path, kSearchPath);
}

// Leaves little as it was.
void Spoil(CKaSchema& model) {
    model.SetDisplayLabel(L"spoilt");
    model.CreateKaClass(L"Added", L"", KA_DOMAIN_CLASS)->SetTypeName(L"Renamed");
    for (unsigned int i = 0; i < model.GetKaClassCount(); ++i)
        model.GetKaClassByIndex(i)->AddKaProperty(L"Spoilt" + std::to_wstring(i), L"string", L"");
    if (CKaSchema* const referenced = model.GetReferencedSchema(0))
        referenced->GetKaClassByIndex(0)->SetDescription(L"spoilt");
}

// What is changed on one side of a copy does not show on the other, which outlives it.
TEST(RoundTrip, EveryModelIsTheSameByEveryRoute) {
    for (const auto make : kModels) {
        const Model expected = make();
        const auto expectSame = [&](const char* route, CKaSchema& found) {
            EXPECT_EQ(FirstDifference(*expected, found), "") << route;
        };
        Model original = make();
        CKaSchema copy(*original);
        const Model assigned = BuiltByCalls();
        *assigned = *original;
        Spoil(*std::make_unique<CKaSchema>(*original));
        expectSame("original of a copy", *original);
        const CKaSchema& same = *original;
        *original = same;
        expectSame("assigned to itself", *original);
        expectSame("written and read", *WriteAndRead(*original));
        Spoil(*original);
        original.reset();
        expectSame("copied", copy);
        expectSame("assigned", *assigned);
        expectSame("copied, written and read", *WriteAndRead(copy));
    }
}

} // namespace
} // namespace KAXML::Test
