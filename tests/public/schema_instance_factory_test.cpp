#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

#include <memory>
#include <tuple>

namespace {

using namespace KAXML;

// Top references Left and Right, and both of these reference Base.
class SchemaInstanceFactory : public testing::Test {
  protected:
    SchemaInstanceFactory() {
        Reference(m_top, m_left);
        Reference(m_top, m_right);
        Reference(*m_left, m_base);
        Reference(*m_right, m_base);
        for (const wchar_t* const name : {L"Pump", L"Flow__x0020__rate", L"Feeds"})
            m_top.CreateKaClass(name, L"", KA_DOMAIN_CLASS);
        m_top.CreateKaClass(L"Odd", L"", KA_DOMAIN_CLASS)->TypeName() = L"Flow rate";
        m_top.CreateKaClass(L"Unit", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
        m_left->CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
        m_left->CreateKaRelationshipClass(L"Hidden", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
        for (const wchar_t* const name : {L"Pump", L"Vessel"})
            m_right->CreateKaClass(name, L"", KA_DOMAIN_CLASS);
        for (const wchar_t* const name : {L"Vessel", L"Unit"})
            m_base->CreateKaClass(name, L"", KA_DOMAIN_CLASS);
    }

    static void Reference(CKaSchema& schema, CKaSchema* referenced) {
        CKaSchemaReference reference(referenced);
        schema.AddReference(reference);
    }

    CKaSchema m_top{L"Top", L"t", L""};
    CKaSchema* m_left = new CKaSchema(L"Left", L"l", L"");
    CKaSchema* m_right = new CKaSchema(L"Right", L"r", L"");
    CKaSchema* m_base = new CKaSchema(L"Base", L"b", L"");
};

std::wstring Found(IKaInstanceFactory& factory, const wchar_t* namespaceUri, const wchar_t* name) {
    int isRelationship = 0;
    const std::unique_ptr<CKaInstance> instance(factory.CreateKaInstance(namespaceUri, name, &isRelationship));
    const bool relates = dynamic_cast<KaRelationshipInstance*>(instance.get()) != nullptr;
    EXPECT_EQ(isRelationship != 0, relates) << name;
    return instance ? instance->GetKaClass()->FullName() + (relates ? L" relationship" : L"") : L"none";
}

TEST_F(SchemaInstanceFactory, FindsTheClassOfAnElement) {
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"", L"Pump", L"t:Pump"},
        {L"Top.00.00", L"Pump", L"t:Pump"},
        {L"Right.00.00", L"Pump", L"r:Pump"},
        {L"Right.00.01", L"Pump", L"t:Pump"},
        {L"Left.00.00", L"Pump", L"t:Pump"},
        {L"", L"Vessel", L"b:Vessel"}, // depth first: Left's Base before Right
        {L"Right.00.00", L"Vessel", L"r:Vessel"},
        {L"", L"Feeds", L"l:Feeds relationship"},
        {L"Top.00.00", L"Feeds", L"t:Feeds"},
        {L"", L"Unit", L"b:Unit"}, // the other one is a custom attribute class
        {L"", L"Hidden", L"none"},
        {L"", L"pump", L"none"},
        {L"", L"", L"none"},
        {L"", L"__x0050__ump", L"t:Pump"},
        {L"", L"Flow__x0020__rate", L"t:Flow__x0020__rate"}, // a name as it stands goes first
        {L"", L"Flow__x0020__r__x0061__te", L"t:Flow rate"},
    };
    CKaSchemaInstanceFactory factory(&m_top);
    for (const auto& [namespaceUri, name, found] : cases)
        EXPECT_EQ(Found(factory, namespaceUri, name), found) << namespaceUri << ' ' << name;
    CKaSchemaInstanceFactory all(&m_top, KA_ANY_CLASS_TYPE);
    EXPECT_EQ(Found(all, L"", L"Unit"), L"t:Unit");
    EXPECT_EQ(Found(all, L"", L"Hidden"), L"l:Hidden relationship");
    EXPECT_THROW(CKaSchemaInstanceFactory(nullptr), KAXMLInvalidArgument);
}

struct OwnPump final : CKaInstance {
    using CKaInstance::CKaInstance;
};

struct OwnFactory final : CKaSchemaInstanceFactory {
    using CKaSchemaInstanceFactory::CKaSchemaInstanceFactory;
    CKaInstance* CreateInstance(CKaClass* kaClass) override { return new OwnPump(kaClass); }
    KaRelationshipInstance* CreateRelationshipInstance(CKaRelationshipClass*) override { return nullptr; }
};

TEST_F(SchemaInstanceFactory, LetsADerivedOneMakeTheInstances) {
    OwnFactory factory(&m_top);
    int flag = 0;
    const std::unique_ptr<CKaInstance> pump(factory.CreateKaInstance(L"", L"Pump", &flag));
    EXPECT_NE(dynamic_cast<OwnPump*>(pump.get()), nullptr);
    EXPECT_EQ(Found(factory, L"", L"Feeds"), L"none");
}

} // namespace
