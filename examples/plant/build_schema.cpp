#include "build_schema.h"

namespace plant {
namespace {

// Adds what a unique_ptr holds by a call that takes over a raw pointer. Should the call throw, the
// unique_ptr still owns the object.
template <typename Object, typename Add> void HandOver(std::unique_ptr<Object> object, Add add) {
    add(object.get());
    object.release();
}

std::unique_ptr<KAXML::CKaSchema> BuildUnitsSchema() {
    auto units = std::make_unique<KAXML::CKaSchema>(L"Units", L"un", L"Units of measure");
    units->SetVersionString(L"1.0");
    KAXML::CKaClass* unit = units->CreateKaClass(L"Unit", L"The unit of a number", KAXML::KA_CUSTOM_ATTRIBUTE_CLASS);
    unit->AddKaProperty(L"Symbol", L"string", L"As printed on data sheets");
    return units;
}

void AddReference(KAXML::CKaSchema& schema, std::unique_ptr<KAXML::CKaSchema> referenced) {
    HandOver(std::move(referenced), [&](KAXML::CKaSchema* added) {
        KAXML::CKaSchemaReference reference(added);
        schema.AddReference(reference);
    });
}

void AddUnit(KAXML::CKaProperty& property, const KAXML::CKaSchema& schema, const wchar_t* symbol) {
    KAXML::CKaClass* unitClass = schema.FindKaClassUsingFullName(L"un:Unit", KAXML::KA_CUSTOM_ATTRIBUTE_CLASS);
    auto unit = std::make_unique<KAXML::CKaCustomAttribute>(unitClass);
    unit->SetPropertyValue(L"Symbol", symbol);
    HandOver(std::move(unit), [&](KAXML::CKaCustomAttribute* added) { property.AddKaCustomAttribute(added); });
}

void AddArray(KAXML::CKaClass& kaClass, const wchar_t* name, const wchar_t* type, const wchar_t* description) {
    auto property = std::make_unique<KAXML::CKaProperty>(&kaClass);
    property->SetPropertyName(name);
    property->SetTypeName(type);
    property->SetDescription(description);
    property->SetMinOccurs(L"0");
    property->SetMaxOccurs(L"unbounded");
    HandOver(std::move(property), [&](KAXML::CKaProperty* added) { kaClass.AddKaProperty(added); });
}

// A struct is no class of its own instances, so it is not a domain class; CreateKaClass wants one
// of the other two kinds, hence the flags one by one.
void AddSampleStruct(KAXML::CKaSchema& schema) {
    KAXML::CKaClass* sample = schema.CreateKaClass(L"WaterSample", L"One analysis", KAXML::KA_DOMAIN_CLASS);
    sample->SetIsStruct(1);
    sample->SetIsDomainClass(0);
    sample->AddKaProperty(L"TakenAt", L"dateTime", L"");
    sample->AddKaProperty(L"AcidityPH", L"double", L"");
    AddUnit(*sample->AddKaProperty(L"Turbidity", L"double", L""), schema, L"NTU");
}

void AddClasses(KAXML::CKaSchema& schema) {
    KAXML::CKaClass* basin = schema.CreateKaClass(L"Basin", L"Holds water", KAXML::KA_DOMAIN_CLASS);
    basin->SetDisplayLabel(L"Becken (Größe < 500 m³)");
    basin->AddKaProperty(L"Tag", L"string", L"Unique within the plant");
    AddUnit(*basin->AddKaProperty(L"Volume", L"double", L""), schema, L"m³");
    AddArray(*basin, L"Samples", L"WaterSample", L"Newest last");

    KAXML::CKaClass* clarifier = schema.CreateKaClass(L"Clarifier", L"Lets solids settle", KAXML::KA_DOMAIN_CLASS);
    clarifier->SetBaseClass(L"Basin");
    clarifier->AddKaProperty(L"LastSample", L"WaterSample", L"");
    AddArray(*clarifier, L"ScraperSpeeds", L"double", L"In rpm");
}

void AddOverflow(KAXML::CKaSchema& schema) {
    KAXML::CKaRelationshipClass* overflow =
        schema.CreateKaRelationshipClass(L"OverflowsInto", L"Where the water goes", KAXML::KA_DOMAIN_CLASS);
    overflow->SetStrength(L"referencing");
    overflow->SetStrengthDirection(L"forward");
    overflow->m_source.m_roleLabel = L"overflows into";
    overflow->m_source.m_className = L"Basin";
    overflow->m_source.m_keyVector = {L"Tag"};
    overflow->m_source.m_isPolymorphic = 1;
    overflow->m_targets.m_roleLabel = L"receives from";
    overflow->m_targets.m_classNames = {L"Basin", L"Clarifier"};
    overflow->m_targets.m_keyVectors = {{L"Tag"}, {}};
    overflow->m_targets.m_cardinality = L"(0,1)";
}

} // namespace

std::unique_ptr<KAXML::CKaSchema> BuildWaterSchema() {
    auto water = std::make_unique<KAXML::CKaSchema>(L"WaterTreatment", L"wt", L"Basins & what flows between them");
    water->SetVersionString(L"1.2");
    AddReference(*water, BuildUnitsSchema());
    AddSampleStruct(*water);
    AddClasses(*water);
    AddOverflow(*water);
    return water;
}

} // namespace plant
