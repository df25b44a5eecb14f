#include <kaxml/kaxml.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

using KAXML::KA_CUSTOM_ATTRIBUTE_CLASS;
using KAXML::KA_DOMAIN_CLASS;

// Top references Left and Right, and both of these reference Base.
class SchemaInstanceFactory : public testing::Test {
  protected:
    SchemaInstanceFactory() {
        Reference(m_top, m_left);
        Reference(m_top, m_right);
        Reference(*m_left, m_base);
        Reference(*m_right, m_base);
        for (const wchar_t* const name : {L"Pump", L"Flow__x0020__rate"})
            m_top.CreateKaClass(name, L"", KA_DOMAIN_CLASS);
        m_top.CreateKaClass(L"Odd", L"", KA_DOMAIN_CLASS)->TypeName() = L"Flow rate";
        m_top.CreateKaClass(L"Unit", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
        m_top.CreateKaClass(L"Feeds", L"", KA_DOMAIN_CLASS);
        m_left->CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
        m_left->CreateKaRelationshipClass(L"Hidden", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
        m_right->CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
        m_right->CreateKaClass(L"Vessel", L"", KA_DOMAIN_CLASS);
        m_base->CreateKaClass(L"Vessel", L"", KA_DOMAIN_CLASS);
        m_base->CreateKaClass(L"Unit", L"", KA_DOMAIN_CLASS);
    }

    static void Reference(KAXML::CKaSchema& schema, KAXML::CKaSchema* referenced) {
        KAXML::CKaSchemaReference reference(referenced);
        schema.AddReference(reference);
    }

    KAXML::CKaSchema m_top{L"Top", L"t", L""};
    KAXML::CKaSchema* m_left = new KAXML::CKaSchema(L"Left", L"l", L"");
    KAXML::CKaSchema* m_right = new KAXML::CKaSchema(L"Right", L"r", L"");
    KAXML::CKaSchema* m_base = new KAXML::CKaSchema(L"Base", L"b", L"");
};

std::wstring Found(KAXML::IKaInstanceFactory& factory, const wchar_t* namespaceUri, const wchar_t* name) {
    int isRelationship = 0;
    const std::unique_ptr<KAXML::CKaInstance> instance(factory.CreateKaInstance(namespaceUri, name, &isRelationship));
    const bool relates = dynamic_cast<KAXML::KaRelationshipInstance*>(instance.get()) != nullptr;
    EXPECT_EQ(isRelationship != 0, relates) << name;
    return instance ? instance->GetKaClass()->FullName() + (relates ? L" relationship" : L"") : L"none";
}

TEST_F(SchemaInstanceFactory, FindsTheClassOfAnElement) {
    const struct {
        const wchar_t* namespaceUri;
        const wchar_t* elementName;
        const wchar_t* found;
    } cases[] = {
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
    KAXML::CKaSchemaInstanceFactory factory(&m_top);
    for (const auto& c : cases)
        EXPECT_EQ(Found(factory, c.namespaceUri, c.elementName), c.found) << c.namespaceUri << ' ' << c.elementName;
    KAXML::CKaSchemaInstanceFactory all(&m_top, KAXML::KA_ANY_CLASS_TYPE);
    EXPECT_EQ(Found(all, L"", L"Unit"), L"t:Unit");
    EXPECT_EQ(Found(all, L"", L"Hidden"), L"l:Hidden relationship");
}

TEST_F(SchemaInstanceFactory, RefusesNull) {
    EXPECT_THROW(KAXML::CKaSchemaInstanceFactory(nullptr), KAXML::KAXMLInvalidArgument);
    KAXML::CKaSchemaInstanceFactory factory(&m_top);
    int flag = 0;
    EXPECT_THROW(factory.CreateKaInstance(nullptr, L"Pump", &flag), KAXML::KAXMLInvalidArgument);
    EXPECT_THROW(factory.CreateKaInstance(L"", nullptr, &flag), KAXML::KAXMLInvalidArgument);
    EXPECT_THROW(factory.CreateKaInstance(L"", L"Pump", nullptr), KAXML::KAXMLInvalidArgument);
}

struct OwnPump final : KAXML::CKaInstance {
    using CKaInstance::CKaInstance;
};

struct OwnFactory final : KAXML::CKaSchemaInstanceFactory {
    using CKaSchemaInstanceFactory::CKaSchemaInstanceFactory;
    KAXML::CKaInstance* CreateInstance(KAXML::CKaClass* kaClass) override { return new OwnPump(kaClass); }
    KAXML::KaRelationshipInstance* CreateRelationshipInstance(KAXML::CKaRelationshipClass*) override { return nullptr; }
};

TEST_F(SchemaInstanceFactory, LetsADerivedOneMakeTheInstances) {
    OwnFactory factory(&m_top);
    int flag = 0;
    const std::unique_ptr<KAXML::CKaInstance> pump(factory.CreateKaInstance(L"", L"Pump", &flag));
    EXPECT_NE(dynamic_cast<OwnPump*>(pump.get()), nullptr);
    EXPECT_EQ(Found(factory, L"", L"Feeds"), L"none");
}

} // namespace
