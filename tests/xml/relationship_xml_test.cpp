#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"

namespace KAXML::Test {
namespace {

const std::string kDocument =
    "<KaSchema schemaName='Plant' nameSpacePrefix='pl' xmlns='" + Narrow(KAXML_NAMESPACE_URI) +
    "'><KaClass typeName='Pump'/><KaRelationshipClass typeName='Feeds'><KaRelationshipConstraints>"
    "<P><KaSourceConstraint className='Pump'/><KaTargetConstraint className='Pump'/></P>"
    "<P><KaSourceConstraint className='Pump'/><KaTargetConstraint className='Tank'/></P>"
    "</KaRelationshipConstraints></KaRelationshipClass></KaSchema>";

// What the hooks of a test were asked, and what they answer.
std::vector<std::wstring> asked;
int answer = 0;
CKaClass* supplied = nullptr;

CKaClass* Supply(CKaSchema* schema, const wchar_t* className) {
    asked.push_back(std::wstring(schema->GetSchemaName()) + L" " + className);
    return supplied;
}

int Upgrade(CKaSchema*, CKaRelationshipClass* relationshipClass, CKaRelationshipConstraint* pair,
            KaArrayValue** result) {
    EXPECT_EQ(*result, nullptr);
    // The ends have the pair by now.
    asked.push_back(relationshipClass->TypeName() + L" " + pair->GetSourceConstraint()->GetClassNameW() + L" " +
                    relationshipClass->m_targets.m_classNames.back());
    return answer;
}

TEST(RelationshipXml, HooksTakePartInTheUpgradeOfPairs) {
    CKaSchema other(L"Other", L"o", nullptr);
    CKaClass* const tank = other.CreateKaClass(L"Tank", L"", KA_DOMAIN_CLASS);
    const std::wstring problem = L"Problem while attempting to upgrade legacy KaRelationshipConstraint element";
    const std::wstring unknown = L"KaRelationshipClass 'Feeds' refers to KaClass 'Tank', which does not exist in the "
                                 L"KaSchema 'Plant' or its referenced KaSchemas.";
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", kDocument);
    const struct {
        CKaClass* supplied;
        int answer;
        std::vector<std::wstring> asked;
    } cases[] = {
        {tank, 0, {L"Feeds Pump Pump", L"Plant Tank", L"Feeds Pump o:Tank"}},
        {tank, 1, {L"Feeds Pump Pump"}},
        {tank, -1, {L"Feeds Pump Pump"}},
        {nullptr, 0, {L"Feeds Pump Pump", L"Plant Tank"}},
    };
    for (const auto& each : cases) {
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        schema.SetKaClassResolutionHelper(&Supply);
        schema.SetKaRelationshipUpgradeHandler(&Upgrade);
        asked.clear();
        answer = each.answer;
        supplied = each.supplied;
        const auto read = [&] { EXPECT_EQ(schema.ReadXML(path.c_str()), 0); };
        if (answer != 0)
            ExpectThrows<KAXMLLogicError>(read, problem);
        else if (supplied == nullptr)
            ExpectThrows<KAXMLFormatError>(read, unknown);
        else
            read();
        EXPECT_EQ(asked, each.asked);
    }
}

TEST(RelationshipXml, EndsThatCannotBeWrittenLeaveTheOldFile) {
    const std::wstring mismatch = L"Target of KaRelationshipClass 'Feeds' contains mismatched number of Class "
                                  L"references and Key Vectors";
    const auto notFound = [](const std::wstring& name) {
        return L"Cannot find KaClass '" + name + L"' in KaSchema 'Plant' or its referenced Schemas.";
    };
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", "old");
    CKaSchema schema(L"Plant", L"pl", nullptr);
    schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaRelationshipClass& feeds = *schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    const auto write = [&] { schema.WriteXML(path.c_str()); };
    feeds.m_targets.m_classNames = {L"Pump"};
    ExpectThrows<KAXMLLogicError>(write, mismatch);
    feeds.m_targets.m_keyVectors = {{}, {}};
    ExpectThrows<KAXMLLogicError>(write, mismatch);
    feeds.m_targets.m_keyVectors = {{}};
    feeds.m_source.m_className = L"Tank";
    ExpectThrows<KAXMLFormatError>(write, notFound(L"Tank"));
    feeds.m_source.m_className = L"x:Pump";
    ExpectThrows<KAXMLDomainError>(write, L"KaSchema with prefix 'x' not found among 'Plant's referenced schemas");
    // Any class may stand at the source, and is left out there only.
    feeds.m_source.m_className = KAXML_ANY_CLASS;
    feeds.m_targets.m_classNames = {KAXML_ANY_CLASS};
    ExpectThrows<KAXMLFormatError>(write, notFound(KAXML_ANY_CLASS));
    EXPECT_EQ(BytesOf(folder / "x"), "old");
    EXPECT_EQ(folder.FileCount(), 1U);
}

} // namespace
} // namespace KAXML::Test
