#include "support/expectations.h"
#include "support/model_compare.h"

namespace KAXML::Test {
namespace {

// A value that cannot be copied: the copy of what holds it fails there.
struct Uncopyable : KaValueBase {
    explicit Uncopyable(CKaProperty* property) : KaValueBase(property) {}
    void AppendValueToString(std::wstring&) const override {}
    int WriteXML(IXMLDOMDocument2*, IXMLDOMNode*, const std::wstring&, int) const override { return 0; }
};

struct CopyTest : testing::Test {
    CopyTest() {
        for (int i = 0; i < 2; ++i) { // twice: destroyed, and copied, once
            CKaSchemaReference reference(base);
            plant->AddReference(reference);
        }
        note->AddKaProperty(L"Text", L"string", L"");
        note->AddKaProperty(L"Notes", L"Note", L"")->SetMaxOccurs(L"2");
        note->AddKaProperty(L"Inner", L"Note", L"");
        pump->SetBaseClass(L"Note");
        size->SetAttrId(7);
        size->SetClassDefaultValue(L"5");
        feeds->SetBaseClass(L"Pump");
        for (CKaCommon* const item :
             std::initializer_list<CKaCommon*>{plant.get(), base, pump, size, &feeds->m_source, &feeds->m_targets}) {
            item->SetExtendedInfo(L"note", 5);
            Attach(*item)->SetPropertyValue(L"Size", 5); // an instance of a class that is being copied too
            item->CreateArrayMemberForCustomAttribute(note, L"Notes")->SetPropertyValue(L"Text", L"member");
        }
    }
    CKaCustomAttribute* Attach(CKaCommon& item) {
        auto* const attached = new CKaCustomAttribute(pump);
        item.AddKaCustomAttribute(attached);
        return attached;
    }
    template <typename T> void ExpectFailedAssignment(T& target, const T& source) {
        ExpectThrows<KAXMLLogicError>(
            [&] { target = source; },
            L"Cannot copy a value that is neither a CKaValue, a KaArrayValue nor a KaStructValue");
    }

    CKaSchema* base = new CKaSchema(L"Base", L"b", nullptr);
    std::unique_ptr<CKaSchema> plant = std::make_unique<CKaSchema>(L"Plant", L"pl", nullptr);
    CKaClass* note = base->CreateKaClass(L"Note", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
    CKaClass* pump = plant->CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaProperty* size = pump->AddKaProperty(L"Size", L"int", L"");
    CKaRelationshipClass* feeds = plant->CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
};

TEST_F(CopyTest, SchemasLeadIntoThemselves) {
    CKaSchema first(*plant), second(L"Second", L"s", nullptr);
    second.CreateKaClass(L"Old", L"", KA_DOMAIN_CLASS);
    second = first;
    for (CKaSchema* const copy : {&first, &second}) {
        EXPECT_EQ(FirstDifference(*plant, *copy), "");
        EXPECT_TRUE(copy->GetReferencedSchema(0) == copy->GetReferencedSchema(1) &&
                    copy->GetReferencedSchema(0) != base);
        CKaRelationshipClass* const own = copy->GetKaRelationshipClass(0);
        EXPECT_TRUE(own->m_source.GetOwner() == own && own->m_targets.GetOwner() == own);
    }
    *first.GetReferencedSchema(0) = first; // the schema that is owned becomes like its owner, and the other way round
    EXPECT_EQ(FirstDifference(second, *first.GetReferencedSchema(1)), "");
    first = *first.GetReferencedSchema(0);
    pump->TypeName() = L"Renamed";
    plant.reset();
    EXPECT_EQ(FirstDifference(second, first), "");
}

TEST_F(CopyTest, AFailedAssignmentLeavesTheTarget) {
    CKaSchema target(*plant), expected(target);
    CKaClass& targetPump = *target.FindKaClass(L"Pump", KA_ANY_CLASS_TYPE);
    CKaRelationshipClass& targetFeeds = *target.GetKaRelationshipClass(0);
    for (CKaCommon* const item : std::initializer_list<CKaCommon*>{size, &feeds->m_targets, note})
        Attach(*item)->AddKaValue(new Uncopyable(size));
    ExpectFailedAssignment<CKaProperty>(*targetPump.GetKaProperty(0), *size);
    ExpectFailedAssignment<CKaClass>(targetPump, *pump);
    ExpectFailedAssignment<CKaInstance>(*targetPump.GetKaCustomAttribute(0), *size->GetKaCustomAttribute(2));
    ExpectFailedAssignment<CKaTargets>(targetFeeds.m_targets, feeds->m_targets);
    ExpectFailedAssignment<CKaRelationshipClass>(targetFeeds, *feeds);
    ExpectFailedAssignment<CKaSchema>(target, *plant);
    EXPECT_EQ(FirstDifference(expected, target), "");
}

TEST_F(CopyTest, ClassesOwnTheirCopies) {
    CKaClass copy(*pump), assigned(L"Other", base, nullptr);
    assigned = copy;
    CKaRelationshipClass relationship(*feeds), other(L"Other", base, nullptr);
    other = relationship;
    pump->RemoveAllKaProperties();
    for (CKaClass* const each : {&copy, &assigned}) {
        const CKaProperty* const own = each->GetKaProperty(0);
        const CKaInstance* const attached = each->GetKaCustomAttribute(0);
        EXPECT_TRUE(own->GetKaClass() == each && own->GetAttrId() == 7 &&
                    own->GetClassDefaultValue() == std::wstring(L"5"));
        EXPECT_TRUE(attached->GetKaClass() == each && attached->GetKaValue(0)->GetProperty() == own);
        unsigned long number = 0;
        EXPECT_TRUE(each->GetExtendedInfo(L"note", &number) == 0 && number == 5 && each->GetBaseKaClass() == note);
    }
    CKaSource moved(std::move(relationship.m_source));
    relationship.m_source = moved; // what was moved from can be used again
    relationship.m_targets = CKaTargets(feeds->m_targets);
    EXPECT_NE(relationship.m_source.GetKaCustomAttribute(0), moved.GetKaCustomAttribute(0));
    for (const CKaRelationshipClass* const each : {&relationship, &other})
        EXPECT_TRUE(each->m_source.GetOwner() == each && each->m_targets.GetOwner() == each);
    CKaSchemaReference reference(base), taken(std::move(reference));
    EXPECT_TRUE(taken.GetSchema() == base && reference.GetSchema() == base);
    CKaRelationshipConstraint pair, pairs;
    pair.SetSourceConstraint(new CKaConstraint(L"Pump", L"key"));
    pairs = pair;
    EXPECT_NE(pairs.GetSourceConstraint(), pair.GetSourceConstraint());
    EXPECT_EQ(pairs.GetSourceConstraint()->GetKaRelationshipKey(0), L"key");
}

TEST_F(CopyTest, InstancesOwnEveryKindOfValue) {
    auto original = std::make_unique<KaRelationshipInstance>(feeds);
    original->SetTargetID(L"T1");
    original->SetPropertyValue(L"Size", 5);
    for (const wchar_t* const name : {L"Inner", L"Notes"})
        original->AddKaValue(KaValueBase::CreateKaValueForKaProperty(feeds, feeds->FindProperty(name)));
    auto& inner = dynamic_cast<KaStructValue&>(*original->GetKaValue(1));
    auto& notes = dynamic_cast<KaArrayValue&>(*original->GetKaValue(2));
    inner.GetValue()->SetPropertyValue(L"Text", L"t");
    notes.PushBack(new KaStructValue(inner));
    notes.PushBack(nullptr);
    KaRelationshipInstance copy(*original), assigned(feeds);
    assigned.SetPropertyValue(L"Size", 9);
    assigned = copy;
    const KaRelationshipInstance& same = copy;
    copy = same;
    original.reset();
    for (const KaRelationshipInstance* const each : {&copy, &assigned}) {
        std::wstring xml = each->GetTargetID();
        each->AppendValueToString(xml);
        EXPECT_EQ(
            xml,
            L"T1<Size>5</Size><Inner><Text>t</Text></Inner><Notes><Note><Text>t</Text></Note><Note></Note></Notes>");
    }
    static_cast<CKaInstance&>(copy) =
        *dynamic_cast<KaStructValue&>(*copy.GetKaValue(1)).GetValue(); // which ends meanwhile
    EXPECT_STREQ(copy.GetPropertyValue(L"Text"), L"t");
    ExpectThrows<KAXMLLogicError>(
        [&] { copy.AddKaValue(assigned.GetKaValue(0)); }, // copies are held too
        L"Attempted to add a value of property 'Size' that an array or instance already holds");
}

} // namespace
} // namespace KAXML::Test
