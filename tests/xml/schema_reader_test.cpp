#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"

#include <tuple>

/// What documents do to the schema that reads them. What is refused, how, and what it leaves, is in the corpus.
namespace KAXML::Test {
namespace {

std::string Root(const std::string& body) {
    return "<KaSchema schemaName='Plant' nameSpacePrefix='pl' xmlns='" + Narrow(KAXML_NAMESPACE_URI) + "'>" + body +
           "</KaSchema>";
}

TEST(SchemaReader, AddsToWhatTheSchemaHolds) {
    const TemporaryFolder folder;
    const std::string classes = "<KaClass typeName='A'/><KaRelationshipClass typeName='C'/><KaClass typeName='B'/>";
    const std::wstring path = folder.Write("x", Root(classes));
    CKaSchema schema(L"Own", L"own", L"kept");
    EXPECT_EQ(schema.ReadXML(path.c_str()), 0);
    EXPECT_EQ(schema.ReadXML(path.c_str()), 0);
    EXPECT_STREQ(schema.GetDescription(), L"kept");
    ASSERT_EQ(schema.GetKaClassCount(), 4U);
    EXPECT_EQ(schema.GetKaClassByIndex(3)->TypeName(), L"B2");
    EXPECT_EQ(schema.GetKaRelationshipClass(1)->TypeName(), L"C2");
}

TEST(SchemaReader, PutsAClassBeforeThoseThatNameItAsTheirBase) {
    CKaSchema schema(L"Own", L"own", L"");
    CKaClass* const base = schema.CreateKaClass(L"Base", L"", KA_DOMAIN_CLASS);
    schema.CreateKaClass(L"Derived", L"", KA_DOMAIN_CLASS)->SetBaseClass(L"Base");
    base->SetTypeName(L"Renamed"); // what names it as its base is not changed
    const TemporaryFolder folder;
    const std::string classes = "<KaClass typeName='A'/><KaClass typeName='Base'/><KaClass typeName='Renamed'/>"
                                "<KaRelationshipClass typeName='Base'/><KaClass typeName='A2'/><KaClass typeName='A'/>";
    EXPECT_EQ(schema.ReadXML(folder.Write("x", Root(classes)).c_str()), 0);
    std::wstring names;
    CKaClassIterator iterator(&schema);
    for (const CKaClass* kaClass = iterator.Begin(); kaClass != nullptr; kaClass = iterator.Next())
        names += kaClass->TypeName() + L" ";
    EXPECT_EQ(names, L"Renamed Base Derived A Renamed2 A2 A3 ");
    EXPECT_EQ(schema.GetKaRelationshipClass(0)->TypeName(), L"Base");
}

TEST(SchemaReader, FindsTheFirstClassOfANameAsABase) {
    CKaSchema schema(L"Own", L"own", L"");
    CKaClass* const first = schema.CreateKaClass(L"First", L"", KA_DOMAIN_CLASS);
    schema.CreateKaClass(L"Base", L"", KA_DOMAIN_CLASS);
    first->SetTypeName(L"Base"); // two of this name now
    const TemporaryFolder folder;
    // The bases: one of two, one that stands behind, one whose name a relationship class has too.
    const std::string classes = "<KaRelationshipClass typeName='R'/><KaClass typeName='D' baseClass='Base'/>"
                                "<KaClass typeName='E'><BaseClass>Last</BaseClass></KaClass>"
                                "<KaClass typeName='F'><BaseClass>R</BaseClass></KaClass>"
                                "<KaClass typeName='R'/><KaClass typeName='Last'/>";
    EXPECT_EQ(schema.ReadXML(folder.Write("x", Root(classes)).c_str()), 0);
    const auto baseOf = [&](const wchar_t* name) {
        return schema.FindKaClass(name, KA_ANY_CLASS_TYPE)->GetBaseKaClass();
    };
    EXPECT_EQ(baseOf(L"D"), first);
    EXPECT_EQ(baseOf(L"E"), schema.FindKaClass(L"Last", KA_ANY_CLASS_TYPE));
    EXPECT_EQ(baseOf(L"F"), schema.FindKaClass(L"R", KA_ANY_CLASS_TYPE));
}

TEST(SchemaReader, HooksTakePartInTheUpgradeOfPairs) {
    // What the hooks were asked, and what they answer.
    static std::vector<std::wstring> asked;
    static int answer;
    static CKaClass* supplied;
    CKaSchema other(L"Other", L"o", nullptr);
    CKaClass* const tank = other.CreateKaClass(L"Tank", L"", KA_DOMAIN_CLASS);
    const std::wstring problem = L"Problem while attempting to upgrade legacy KaRelationshipConstraint element";
    const TemporaryFolder folder;
    const std::wstring path = folder.Write(
        "x", Root("<KaClass typeName='Pump'/><KaRelationshipClass typeName='Feeds'><KaRelationshipConstraints>"
                  "<P><KaSourceConstraint className='Pump'/><KaTargetConstraint className='Pump'/></P>"
                  "<P><KaSourceConstraint className='Pump'/><KaTargetConstraint className='Tank'/></P>"
                  "</KaRelationshipConstraints></KaRelationshipClass>"));
    const std::vector<std::wstring> questions = {L"Feeds Pump Pump", L"Plant Tank", L"Feeds Pump o:Tank"};
    const std::tuple<CKaClass*, int, int> cases[] = {{tank, 0, 3}, {tank, 1, 1}, {tank, -1, 1}, {nullptr, 0, 2}};
    for (const auto& [itsSupplied, itsAnswer, askedCount] : cases) {
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        schema.SetKaClassResolutionHelper([](CKaSchema* asking, const wchar_t* className) {
            asked.push_back(std::wstring(asking->GetSchemaName()) + L" " + className);
            return supplied;
        });
        schema.SetKaRelationshipUpgradeHandler([](auto, auto* kaClass, auto* pair, auto) {
            // The ends have the pair by now.
            asked.push_back(kaClass->TypeName() + L" " + pair->GetSourceConstraint()->GetClassNameW() + L" " +
                            kaClass->m_targets.m_classNames.back());
            return answer;
        });
        supplied = itsSupplied;
        answer = itsAnswer;
        asked.clear();
        const auto read = [&] { EXPECT_EQ(schema.ReadXML(path.c_str()), 0); };
        if (answer != 0)
            ExpectThrows<KAXMLLogicError>(read, problem);
        else if (supplied == nullptr)
            EXPECT_THROW(read(), KAXMLFormatError);
        else
            read();
        EXPECT_EQ(asked, std::vector(questions.begin(), questions.begin() + askedCount));
    }
}

} // namespace
} // namespace KAXML::Test
