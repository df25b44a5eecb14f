#include <kaxml/kaxml.h>

#include <fstream>
#include <iostream>
#include <memory>

namespace {

// The library takes over raw pointers. Should the call throw, the unique_ptr still owns the object.
template <typename Object, typename Add> void HandOver(std::unique_ptr<Object> object, Add add) {
    add(object.get());
    object.release();
}

void BuildClasses(KAXML::CKaSchema& schema) {
    KAXML::CKaClass* item = schema.CreateKaClass(L"Item", L"Anything with a tag", KAXML::KA_DOMAIN_CLASS);
    item->AddKaProperty(L"Tag", L"string", L"Unique in the works");

    // A struct is a type of properties and no class of objects: two flags say so.
    KAXML::CKaClass* sample = schema.CreateKaClass(L"Sample", L"One analysis", KAXML::KA_DOMAIN_CLASS);
    sample->SetIsStruct(1);
    sample->SetIsDomainClass(0);
    sample->AddKaProperty(L"TakenAt", L"dateTime", L"");
    sample->AddKaProperty(L"Acidity", L"double", L"pH");

    KAXML::CKaClass* basin = schema.CreateKaClass(L"Basin", L"Holds water", KAXML::KA_DOMAIN_CLASS);
    basin->SetBaseClass(L"Item"); // and so it has a Tag
    basin->AddKaProperty(L"Volume", L"double", L"");
    basin->AddKaProperty(L"LastSample", L"Sample", L"");

    // Any bound but "1" makes a property an array.
    KAXML::CKaProperty* samples = basin->AddKaProperty(L"Samples", L"Sample", L"Newest last");
    samples->SetMinOccurs(L"0");
    samples->SetMaxOccurs(L"unbounded");

    KAXML::CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS);
    pump->SetBaseClass(L"Item");
}

void BuildRelationship(KAXML::CKaSchema& schema) {
    KAXML::CKaRelationshipClass* feeds = schema.CreateKaRelationshipClass(L"Feeds", L"", KAXML::KA_DOMAIN_CLASS);
    feeds->m_source.m_className = L"Pump";
    feeds->m_source.m_cardinality = L"(0,N)";
    feeds->m_source.m_roleLabel = L"feeds";
    feeds->m_source.m_keyVector = {L"Tag"};
    // The lists of classes and keys run side by side.
    feeds->m_targets.m_classNames = {L"Basin", L"Pump"};
    feeds->m_targets.m_keyVectors = {{L"Tag"}, {}};
    feeds->m_targets.m_roleLabel = L"is fed by";
    feeds->m_targets.m_isPolymorphic = 1;
}

void DescribeUnits(KAXML::CKaSchema& schema) {
    // A custom attribute is an instance that describes an item of the schema.
    KAXML::CKaClass* unit = schema.CreateKaClass(L"Unit", L"Of a number", KAXML::KA_CUSTOM_ATTRIBUTE_CLASS);
    unit->AddKaProperty(L"Symbol", L"string", L"");
    auto cubicMetres = std::make_unique<KAXML::CKaCustomAttribute>(unit);
    cubicMetres->SetPropertyValue(L"Symbol", L"m³");
    KAXML::CKaProperty* volume = schema.FindKaClass(L"Basin", KAXML::KA_DOMAIN_CLASS)->FindProperty(L"Volume");
    HandOver(std::move(cubicMetres), [&](KAXML::CKaCustomAttribute* added) { volume->AddKaCustomAttribute(added); });
}

// A basin with a value of each kind.
std::wstring Basin(const KAXML::CKaSchema& schema) {
    KAXML::CKaClass* basinClass = schema.FindKaClass(L"Basin", KAXML::KA_DOMAIN_CLASS);
    KAXML::CKaInstance basin(basinClass);
    basin.SetPropertyValue(L"Tag", L"B-1");
    basin.SetPropertyValue(L"Volume", 1200);
    auto last = std::make_unique<KAXML::KaStructValue>(basinClass->FindProperty(L"LastSample"));
    last->GetValue()->SetPropertyValue(L"Acidity", 7.4);
    HandOver(std::move(last), [&](KAXML::KaValueBase* added) { basin.AddKaValue(added); });
    auto samples = std::make_unique<KAXML::KaArrayValue>(basinClass->FindProperty(L"Samples"));
    for (const double acidity : {7.1, 7.4}) {
        auto member = std::make_unique<KAXML::KaStructValue>(samples->GetProperty());
        member->GetValue()->SetPropertyValue(L"Acidity", acidity);
        HandOver(std::move(member), [&](KAXML::KaValueBase* added) { samples->PushBack(added); });
    }
    HandOver(std::move(samples), [&](KAXML::KaValueBase* added) { basin.AddKaValue(added); });
    std::wstring xml;
    basin.AppendAsXml(xml, L"");
    return xml;
}

} // namespace

int main() {
    KAXML::CKaSchema schema(L"Water", L"wa", L"A water works");
    schema.SetVersionString(L"1.2");
    BuildClasses(schema);
    BuildRelationship(schema);
    DescribeUnits(schema);
    std::cout << KAXML::ToUtf8(Basin(schema)) << "\n\n";
    schema.WriteXML(schema.OfficialFilename().c_str());
    std::cout << KAXML::ToUtf8(schema.OfficialFilename()) << ":\n" << std::ifstream("Water.01.02.kaschema.xml").rdbuf();
}
