#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"
#include "support/model_compare.h"

namespace KAXML::Test {
namespace {

const std::wstring kFolder = WideFromUtf8(KAXML_TEST_DATA_DIR "/schemas/");
const std::wstring kSearchPath = kFolder + L"referenced";

// Parts of the model that the cases spoil.
CKaClass& Class(CKaSchema& s, const wchar_t* name) { return *s.FindKaClass(name, KA_ANY_CLASS_TYPE); }
CKaClass& Pump(CKaSchema& s) { return Class(s, L"Pump"); }
CKaClass& Fan(CKaSchema& s) { return Class(s, L"Fan"); }
CKaRelationshipClass& Feeds(CKaSchema& s) { return *s.GetKaRelationshipClass(0); }
CKaRelationshipClass& Joins(CKaSchema& s) { return *s.GetKaRelationshipClass(1); }
CKaProperty& Size(CKaSchema& s) { return *Pump(s).FindProperty(L"Size"); }
CKaCustomAttribute& Unit(CKaSchema& s) { return *Pump(s).GetKaCustomAttribute(0); }
CKaProperty* UnitProperty(CKaSchema& s, const wchar_t* name) { return Class(s, L"Unit").FindProperty(name); }
CKaValue* Line(CKaSchema& s, const wchar_t* text) { return new CKaValue(UnitProperty(s, L"Lines"), text); }

template <typename Value> Value& Add(CKaSchema& s, const wchar_t* property) {
    auto* const value = new Value(UnitProperty(s, property));
    Unit(s).AddKaValue(value);
    return *value;
}

KaArrayValue& Lines(CKaSchema& s, CKaValue* line) {
    auto& lines = Add<KaArrayValue>(s, L"Lines");
    lines.PushBack(line);
    return lines;
}

CKaCustomAttribute& Attach(CKaSchema& s, CKaCommon& item, const wchar_t* className) {
    auto* const attribute = new CKaCustomAttribute(&Class(s, className));
    item.AddKaCustomAttribute(attribute);
    return *attribute;
}

void AddReferenceAgain(CKaSchema& s) {
    CKaSchemaReference again(s.GetReferencedSchema(0));
    again.m_schemaPrefix = L"again";
    s.AddReference(again);
}

const std::wstring kPlant = L"KaSchema 'Plant'";
const std::wstring kPump = L"KaClass 'Pump'";
const std::wstring kFeeds = L"KaRelationshipClass 'Feeds'";
const std::wstring kJoins = L"KaRelationshipClass 'Joins'";
const std::wstring kSize = L"KaProperty 'Size' of " + kPump;
const std::wstring kUnit = L"KaCustomAttribute 'Unit' of " + kPump;
const std::wstring kLines = L"value 'Lines' of " + kUnit;
const std::wstring kWhere = L"value 'Where' of " + kUnit;
const std::wstring kSymbol = L"value 'Symbol' of " + kUnit;

// What spoils the model, and the item that the warning names.
const struct {
    void (*spoil)(CKaSchema& s);
    std::wstring item;
} kCases[] = {
    {[](auto& s) { s.SchemaName() = L"a b"; }, L"KaSchema 'a b'"},
    {[](auto& s) { s.SchemaPrefix() = L""; }, L"Prefix of " + kPlant},
    {[](auto& s) { s.SetSchemaPrefix(L"temporary"); }, kPlant},
    {[](auto& s) { AddReferenceAgain(s); }, L"KaSchemaReference 'Base'"},
    {[](auto& s) { CKaReferencedSchemaIterator(&s).Begin()->m_versionString = L"1.2"; }, L"KaSchemaReference 'Base'"},
    {[](auto& s) { Fan(s).SetIsCustomAttributeClass(1); }, kPlant},
    {[](auto& s) { Joins(s).TypeName() = L"1"; }, L"KaRelationshipClass '1'"},
    {[](auto& s) { Joins(s).TypeName() = L"Feeds"; }, kFeeds},
    {[](auto& s) { Pump(s).TypeName() = Feeds(s).m_source.m_className = L"Pomp"; }, L"KaClass 'Fan'"},
    {[](auto& s) { Feeds(s).SetBaseClass(L"Joins"); }, kFeeds},
    {[](auto& s) { Feeds(s).SetIsStruct(1); }, kFeeds},
    {[](auto& s) { Fan(s).AddKaProperty(L"X", L"int", L"")->PropertyName() = L"Size"; },
     L"KaProperty 'Size' of KaClass 'Fan'"},
    {[](auto& s) { Pump(s).AddKaProperty(L"X", L"int", L"")->PropertyName() = L"Size"; }, kSize},
    {[](auto& s) { Size(s).TypeName() = L""; }, kSize},
    {[](auto& s) { Size(s).TypeName() = L"Unknown"; }, kSize},
    {[](auto& s) { Size(s).TypeName() = L"Point"; }, kSize},
    {[](auto& s) { Size(s).SetMinOccurs(L""); }, kSize},
    {[](auto& s) { Size(s).SetMaxOccurs(L"9"); }, kSize},
    {[](auto& s) { Size(s).SetMaxOccurs(L"1"); }, kSize},
    {[](auto& s) { Feeds(s).m_source.m_className = L""; }, kFeeds},
    {[](auto& s) { Joins(s).m_source.m_className = KAXML_ANY_CLASS; }, kJoins},
    {[](auto& s) { Feeds(s).m_source.m_className = L"Equipment"; }, kFeeds},
    {[](auto& s) { Feeds(s).m_targets.m_classNames[1] = L""; }, kFeeds},
    {[](auto& s) { Feeds(s).m_targets.m_classNames[1] = L"pl:Fan"; }, kFeeds},
    {[](auto& s) { Feeds(s).m_source.SetDescription(L"d"); }, L"Source of " + kFeeds},
    {[](auto& s) { Attach(s, s, L"Unit"); }, L"KaCustomAttribute 'Unit' of " + kPlant},
    {[](auto& s) { Attach(s, Class(s, L"Unit"), L"Point").SetPropertyValue(L"X", 1); },
     L"KaCustomAttribute 'Point' of KaClass 'Unit'"},
    {[](auto& s) { Unit(s).SetInstanceID(L"1"); }, kUnit},
    {[](auto& s) { Unit(s).SetTypeName(L"None"); }, L"KaCustomAttribute 'None' of " + kPump},
    {[](auto& s) { Unit(s).RemoveAllKaValues(), Unit(s).SetTypeName(L"Fan"); }, L"KaCustomAttribute 'Fan' of " + kPump},
    {[](auto& s) { Unit(s).SetPropertyValue(L"Symbol", L" \r\n"); }, kSymbol},
    {[](auto& s) { Unit(s).SetPropertyValue(L"Symbol", L""); }, kSymbol},
    {[](auto& s) { Unit(s).GetPropertyValue(L"Symbol", true)->SetToNull(); }, kSymbol},
    {[](auto& s) { Unit(s).AddKaValue(new CKaValue(UnitProperty(s, L"Symbol"), L"2")); },
     L"value 'Symbol2' of " + kUnit},
    {[](auto& s) { Add<KaStructValue>(s, L"Where"); }, kWhere},
    {[](auto& s) { Add<KaStructValue>(s, L"Where").GetValue()->SetPropertyValue(L"X", 1); }, kWhere},
    {[](auto& s) { Add<KaArrayValue>(s, L"Lines"); }, kLines},
    {[](auto& s) { Lines(s, nullptr); }, kLines},
    {[](auto& s) { Lines(s, Line(s, L" ")); }, kLines},
    {[](auto& s) { Lines(s, Line(s, nullptr)); }, kLines},
    {[](auto& s) { Lines(s, Line(s, L"a")).SetToNull(); }, kLines},
};

// Each warns once, and the warning is true: reading the file fails when it says so, else it gives
// another model.
TEST(WriteWarnings, NameWhatDoesNotComeBackOnce) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", "");
    for (std::size_t i = 0; i < std::size(kCases); ++i) {
        SCOPED_TRACE("case " + std::to_string(i) + ", " + Narrow(kCases[i].item));
        const auto model = ReadModel(kFolder + L"040-everything.kaschema.xml", kSearchPath);
        kCases[i].spoil(*model);
        const LogRecorder log;
        EXPECT_EQ(model->WriteXML(path.c_str()), 0);
        const std::vector<std::wstring> warnings = log.Messages(LOG_WARNING);
        CKaSchema back(L"temporary", L"temporary", nullptr);
        back.SetSearchPath(kSearchPath.c_str());
        std::string lost;
        try {
            EXPECT_EQ(back.ReadXML(path.c_str()), 0);
            lost = FirstDifference(*model, back);
            EXPECT_NE(lost, "");
        } catch (const KAXMLException& error) {
            lost = "cannot be read: " + Narrow(error.Message());
        }
        ASSERT_EQ(warnings.size(), 1U) << lost;
        EXPECT_TRUE(warnings[0].starts_with(L"Writing " + kCases[i].item + L": ")) << Narrow(warnings[0]);
        EXPECT_EQ(warnings[0].find(L"cannot be read") != warnings[0].npos, lost.starts_with("cannot be")) << lost;
    }
}

TEST(WriteWarnings, TellWhetherABaseThatTheModelHasLostIsFoundInTheFile) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", "");
    const std::pair<int, std::wstring> cases[] = {
        {0, L"its base classes cannot be followed."},
        {1, L"its base class stands later in the file, so the file cannot be read."}};
    for (const auto& [isWrittenFirst, problem] : cases) {
        CKaSchema schema(L"Plant", L"pl", nullptr);
        CKaRelationshipClass* const feeds = schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
        schema.CreateKaClass(L"Base", L"", KA_DOMAIN_CLASS);
        feeds->SetBaseClass(L"Base");
        feeds->SetIsCustomAttributeClass(isWrittenFirst);
        schema.RemoveAllClasses();
        schema.CreateKaClass(L"Base", L"", KA_DOMAIN_CLASS); // found by a reader, and not by the relationship class
        const LogRecorder log;
        EXPECT_EQ(schema.WriteXML(path.c_str()), 0);
        EXPECT_EQ(log.Messages(LOG_WARNING),
                  std::vector<std::wstring>{L"Writing KaRelationshipClass 'Feeds': " + problem});
        CKaSchema back(L"temporary", L"temporary", nullptr);
        if (isWrittenFirst != 0)
            EXPECT_THROW(back.ReadXML(path.c_str()), KAXMLLogicError);
        else
            EXPECT_EQ(back.ReadXML(path.c_str()), 0);
    }
}

} // namespace
} // namespace KAXML::Test
