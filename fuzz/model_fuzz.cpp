#include "oracles.h"

#include <set>

/// Calls on a schema and its instances, each chosen by a byte. After each the lists are whole, and
/// a call that failed has added and removed no class. At the end the model is written.
namespace KAXML::Fuzz {

constexpr const wchar_t* kNames[] = {L"Pump",    L"Item",    L"Entry",  L"Tag", L"Note",      L"Text", L"Lines",
                                     L"Entries", L"First",   L"string", L"int", L"Größe",     L"a b",  L"unbounded",
                                     L"b:Note",  L"pl:Pump", L":x",     L"1",   L"temporary", L""};

struct World {
    Bytes& input;
    std::unique_ptr<CKaSchema> plant;
    std::vector<std::unique_ptr<CKaInstance>> instances; // go before the schema

    template <typename Item> static Item& Require(Item* item) {
        return item == nullptr ? throw KAXMLException(L"nothing to choose from") : *item;
    }
    unsigned Index(std::size_t count) { return input.Below(Require(count == 0 ? nullptr : &count)); }
    const wchar_t* Name() { return kNames[Index(std::size(kNames))]; }
    std::wstring Text() { return WideFromUtf8(input.Take(Index(12))); }
    CKaClass& Plain() { return *plant->GetKaClassByIndex(Index(plant->GetKaClassCount())); }
    CKaRelationshipClass& Link() { return *plant->GetKaRelationshipClass(Index(plant->GetKaRelationshipClassCount())); }
    CKaClass& Class() { return Index(4) == 0 ? Link() : Plain(); }
    CKaProperty& Property() { return Require(Class().FindProperty(Name())); }
    // One that the schema's file holds. What changes in a referenced schema is not written with it.
    CKaProperty& OwnProperty() {
        CKaProperty& found = Property();
        return Require(found.GetKaClass()->GetKaSchema() == plant.get() ? &found : nullptr);
    }
    CKaCommon& Item() {
        return Index(3) == 0 ? *plant : Index(2) == 0 ? Class() : static_cast<CKaCommon&>(OwnProperty());
    }
    // Of the schema whose classes stay, for what the schema's items hold.
    CKaClass* BaseClass() { return plant->GetReferencedSchema(0)->FindKaClass(Name(), KA_ANY_CLASS_TYPE); }
    CKaInstance& Instance() { return *instances[Index(instances.size())]; }
    std::unique_ptr<KaValueBase> NewValue() {
        return std::unique_ptr<KaValueBase>(KaValueBase::CreateKaValueForKaProperty(&Class(), &Property()));
    }
    template <typename T> T& Held() { return Require(dynamic_cast<T*>(Instance().GetPropertyValue(Name(), true))); }
};

// Gives away what the caller owns until the call has succeeded. Nothing is held twice.
template <typename Base, typename Owner> void Add(Owner& owner, void (Owner::*add)(Base*), std::unique_ptr<Base> part) {
    (owner.*add)(part.get());
    EXPECT_EQ(Succeeds([&] { (owner.*add)(part.release()); }), (std::is_same_v<Base, CKaInstance>)); // but as it is
}

using W = World;
void (*const kCalls[])(W&) = {
    [](W& w) { w.plant->CreateKaClass(w.Name(), w.Text().c_str(), w.Index(9)); },
    [](W& w) { w.plant->CreateKaRelationshipClass(w.Name(), w.Text().c_str(), w.Index(9)); },
    [](W& w) { Add(*w.plant, &CKaSchema::AddKaClass, std::make_unique<CKaClass>(w.Class())); },
    [](W& w) { Add(*w.plant, &CKaSchema::AddKaRelationshipClass, std::make_unique<CKaRelationshipClass>(w.Link())); },
    [](W& w) { w.Class().SetTypeName(w.Name()); },
    [](W& w) { w.Class().TypeName() = w.Name(); },
    [](W& w) { w.Class().SetBaseClass(w.Name()); },
    [](W& w) { w.Class().AddKaProperty(w.Name(), w.Name(), w.Text()); },
    [](W& w) { w.instances.clear(), w.Class().RemoveKaProperty(w.Name()); },
    [](W& w) { w.instances.clear(), w.plant->RemoveAllClasses(); },
    [](W& w) { w.instances.clear(), w.Class() = w.Class(); },
    [](W& w) { w.instances.clear(), w.Link() = w.Link(); },
    [](W& w) { w.instances.clear(), w.plant = std::make_unique<CKaSchema>(*w.plant); },
    [](W& w) { w.instances.clear(), *w.plant = CKaSchema(*w.plant); },
    [](W& w) { w.OwnProperty().SetPropertyName(w.Name()); },
    [](W& w) { w.OwnProperty().SetTypeName(w.Name()); },
    [](W& w) { w.OwnProperty().SetMinOccurs(w.Name()); },
    [](W& w) { w.Class().SetIsCustomAttributeClass(w.Index(2) == 0); },
    [](W& w) { w.Link().m_source.m_className = w.Name(); },
    [](W& w) { w.Link().m_targets.m_classNames.push_back(w.Name()); },
    [](W& w) { w.Link().m_targets.m_keyVectors.push_back({w.Text()}); },
    [](W& w) { w.plant->SetSchemaName(w.plant->GetRelativeClassName(w.Name()).c_str()); },
    [](W& w) { w.Link().FindCommonClass(w.plant.get(), w.Name(), w.Name(), w.plant->SchemaPrefix()); },
    [](W& w) { Add(w.Item(), &CKaCommon::AddKaCustomAttribute, std::make_unique<CKaCustomAttribute>(w.BaseClass())); },
    [](W& w) { w.Item().GetKaCustomAttribute(w.Index(3))->SetPropertyValue(w.Name(), w.Text()); },
    [](W& w) { w.Item().CreateArrayMemberForCustomAttribute(w.BaseClass(), w.Name()); },
    [](W& w) { w.instances.push_back(std::make_unique<CKaInstance>(&w.Class())); },
    [](W& w) { w.instances.push_back(std::make_unique<CKaInstance>(w.Instance())); },
    [](W& w) { w.Instance() = w.Instance(); },
    [](W& w) { w.Instance().RemoveAllKaValues(); },
    [](W& w) { w.Instance().SetPropertyValue(w.Name(), w.Text()); },
    [](W& w) { w.Instance().SetPropertyValue(w.Name(), w.Index(256) / 7.0); },
    [](W& w) { w.Instance().SetPropertyValue(w.Name(), 1L << w.Index(40)); },
    [](W& w) { Add(w.Instance(), &CKaInstance::AddKaValue, w.NewValue()); },
    [](W& w) { Add(w.Held<KaArrayValue>(), &KaArrayValue::PushBack, w.NewValue()); },
    [](W& w) { Add(w.Held<KaStructValue>(), &KaStructValue::SetValue, std::make_unique<CKaInstance>(w.Instance())); },
};

// Each is found by its name, or another one of the name in the same class. Returns how many.
std::size_t CheckProperties(const CKaClass& kaClass) {
    for (unsigned i = 0; i < kaClass.GetKaPropertyCount(); ++i) {
        const std::wstring& name = kaClass.GetKaProperty(i)->PropertyName();
        EXPECT_EQ(kaClass.FindProperty(name.c_str())->PropertyName(), name);
    }
    return kaClass.GetKaPropertyCount();
}

// Returns how much the lists hold.
std::size_t CheckSchema(CKaSchema& schema) {
    std::size_t count = schema.GetKaRelationshipClassCount();
    for (unsigned i = 0; i < schema.GetKaRelationshipClassCount(); ++i)
        count += CheckProperties(*schema.GetKaRelationshipClass(i));
    std::set<const CKaClass*> seen;
    CKaClassIterator walk(&schema);
    for (const CKaClass* found = walk.Begin(); found != nullptr; found = walk.Next()) {
        EXPECT_EQ(found, schema.GetKaClassByIndex(static_cast<unsigned>(seen.size())));
        EXPECT_EQ(found->GetKaSchema(), &schema);
        seen.insert(found);
        EXPECT_EQ(seen.count(schema.FindKaClass(found->GetTypeName(), KA_ANY_CLASS_TYPE)), 1); // the first of the name
        count += CheckProperties(*found);
    }
    EXPECT_EQ(seen.size(), schema.GetKaClassCount());
    return count + seen.size();
}

// Structs must not nest deeper than 1,000.
bool IsTooLarge(const std::unique_ptr<CKaInstance>& instance) {
    for (unsigned i = 0; i < instance->GetKaValueCount(); ++i) // each has a name of its own
        EXPECT_EQ(instance->GetPropertyValue(instance->GetKaValue(i)->GetPropertyName(), true),
                  instance->GetKaValue(i));
    std::wstring text;
    Succeeds([&] { instance->AppendAsXml(text, L""); });
    return text.size() > 7000;
}

void CallAll(Bytes& input) {
    static CKaSchema start = NewSchema();
    static const int status = start.ReadXML(L"" KAXML_TEST_DATA_DIR "/schemas/020-references.kaschema.xml");
    World world{input, std::make_unique<CKaSchema>(start), {}};
    for (int calls = 0; calls < 300 && status == 0 && !input.rest.empty(); ++calls) {
        const std::size_t before = CheckSchema(*world.plant);
        const bool isDone = Succeeds([&] { kCalls[world.Index(std::size(kCalls))](world); });
        EXPECT_TRUE(CheckSchema(*world.plant) == before || isDone);
        std::erase_if(world.instances, IsTooLarge);
    }
    CheckWriting(*world.plant, false);
}

} // namespace KAXML::Fuzz

KAXML_FUZZ_TARGET(KAXML::Fuzz::CallAll)
