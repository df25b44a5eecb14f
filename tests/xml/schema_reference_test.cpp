#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"
#include "support/model_compare.h"

namespace KAXML::Test {
namespace {

namespace fs = std::filesystem;

// A place for schema files of its own, as the current directory and with no other way to find any.
class SchemaReferences : public testing::Test {
  protected:
    SchemaReferences() : m_before(fs::current_path()) {
        fs::current_path(folder.Path());
        unsetenv("KASCHEMA_PATH");
    }
    ~SchemaReferences() override {
        fs::current_path(m_before);
        unsetenv("KASCHEMA_PATH");
    }

    // Writes a schema file whose children are references, given as name and version.
    using References = std::vector<std::pair<std::string, std::string>>;
    std::wstring Write(const std::string& file, const std::string& name, const References& references,
                       const std::string& description = "") const {
        std::string text = "<KaSchema xmlns='" + Narrow(KAXML_NAMESPACE_URI) + "' schemaName='" + name +
                           "' nameSpacePrefix='" + name + "' version='1.5' description='" + description + "'>";
        for (const auto& [referenced, version] : references)
            text +=
                "<KaSchemaReference prefix='" + referenced + "' name='" + referenced + "' version='" + version + "'/>";
        return folder.Write(file, text + "</KaSchema>");
    }

    const TemporaryFolder folder;

  private:
    fs::path m_before;
};

// "name version" of each entry of the list.
std::vector<std::wstring> Entries(CKaSchema& schema) {
    std::vector<std::wstring> entries;
    CKaReferencedSchemaIterator references(&schema);
    for (const CKaSchemaReference* entry = references.Begin(); entry != nullptr; entry = references.Next())
        entries.push_back(entry->m_schemaName + L" " + entry->m_versionString);
    return entries;
}

TEST_F(SchemaReferences, AreSearchedInTheCurrentDirectoryTheEnvironmentAndTheSchemasPath) {
    const std::string file = "Base.01.02.kaschema.xml";
    const std::wstring current = WideFromUtf8(folder.Path().string());
    const std::wstring plant = Write("plant.xml", "Plant", {{"Base", "1.2"}});
    const std::vector<std::string> places = {".", "one", "two", "three", "four"};
    for (const std::string& place : places) {
        fs::create_directories(folder / place);
        Write(place + "/" + file, "Base", {}, place);
    }
    fs::create_directories(folder / ("none/" + file));
    const std::wstring environment = current + L"/none;;" + current + L"/one/;two";
    setenv("KASCHEMA_PATH", Narrow(environment).c_str(), 1);
    const std::wstring own = L"three;missing;" + current + L"/four";
    for (const std::string& place : places) {
        const auto schema = ReadModel(plant, own);
        ASSERT_NE(schema->GetReferencedSchema(0), nullptr);
        EXPECT_EQ(Narrow(schema->GetReferencedSchema(0)->GetDescription()), place);
        EXPECT_EQ(Entries(*schema), std::vector<std::wstring>{L"Base 01.02"});
        fs::remove(folder / (place + "/" + file));
    }
    const std::pair<std::wstring, std::wstring> cases[] = {
        {environment, own}, {environment, L""}, {L"", own}, {L"", L""}};
    for (const auto& [inEnvironment, inSchema] : cases) {
        setenv("KASCHEMA_PATH", Narrow(inEnvironment).c_str(), 1);
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        schema.SetSearchPath(inSchema.c_str());
        const std::wstring searched =
            current + (inEnvironment.empty() ? L"" : L";" + inEnvironment) + (inSchema.empty() ? L"" : L";" + inSchema);
        ExpectThrows<KAXMLRuntimeError>([&] { schema.ReadXML(plant.c_str()); },
                                        L"The referenced KaSchemaXML file 'Base.01.02.kaschema.xml' could not be found "
                                        L"searching current directory plus KASCHEMA_PATH: '" +
                                            searched + L"'",
                                        L"CKaSchemaReference::ReadXML");
        EXPECT_TRUE(Entries(schema).empty());
    }
}

TEST_F(SchemaReferences, AreAddedUnlessOneServes) {
    for (const char* const version : {"01.01", "01.02", "01.10", "02.01"})
        Write(std::string("Base.") + version + ".kaschema.xml", "Base", {});
    const std::pair<References, std::vector<std::wstring>> cases[] = {
        {{{"Base", "1.2"}, {"Base", "1.1"}}, {L"Base 01.02"}},
        {{{"Base", "1.1"}, {"Base", "1.2"}}, {L"Base 01.01", L"Base 01.02"}},
        {{{"Base", "1.2"}, {"Base", "01.002"}}, {L"Base 01.02"}},
        {{{"Base", "2.1"}, {"Base", "1.1"}}, {L"Base 02.01", L"Base 01.01"}},
        {{{"Base", "1.10"}, {"Base", "1.2"}}, {L"Base 01.10"}},
        {{{"Plant", "1.1"}, {"Plant", "9.9"}}, {}},
    };
    for (const auto& [references, entries] : cases) {
        const auto schema = ReadModel(Write("plant.xml", "Plant", references));
        EXPECT_EQ(Entries(*schema), entries) << references[0].second;
        // The file's version is its own matter.
        if (!entries.empty()) {
            EXPECT_EQ(schema->GetReferencedSchema(0)->VersionString(), L"01.05");
        }
    }
}

TEST_F(SchemaReferences, ThatFormACycleAreRefused) {
    Write("A.01.00.kaschema.xml", "A", {{"B", "1.0"}});
    Write("B.01.00.kaschema.xml", "B", {{"C", "1.0"}});
    Write("C.01.00.kaschema.xml", "C", {{"A", "1.0"}});
    Write("Self.01.00.kaschema.xml", "Self", {{"Other", "1.0"}});
    fs::create_symlink(folder / "Self.01.00.kaschema.xml", folder / "Other.01.00.kaschema.xml");
    Write("D.01.00.kaschema.xml", "D", {{"B", "1.0"}});
    const struct {
        const wchar_t* file;
        const wchar_t* chain;
    } cases[] = {{L"A.01.00.kaschema.xml", L"A -> B -> C -> A"},
                 {L"./B.01.00.kaschema.xml", L"B -> C -> A -> B"},
                 {L"D.01.00.kaschema.xml", L"B -> C -> A -> B"},
                 {L"Self.01.00.kaschema.xml", L"Self -> Self"}};
    for (const auto& each : cases) {
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        ExpectThrows<KAXMLRuntimeError>([&] { schema.ReadXML(each.file); },
                                        std::wstring(L"KaSchema references form a cycle: ") + each.chain);
        EXPECT_TRUE(Entries(schema).empty());
    }
}

// A client's schema that sees each reference before it is added, and may refuse it.
class WatchingSchema : public CKaSchema {
  public:
    WatchingSchema() : CKaSchema(L"temporary", L"temporary", nullptr) {}
    void AddReference(CKaSchemaReference& reference) override {
        seen.push_back(reference.m_schemaName + L" " + reference.GetSchema()->GetSchemaName());
        if (refuses)
            throw 42;
        CKaSchema::AddReference(reference);
    }
    std::vector<std::wstring> seen;
    bool refuses = false;
};

TEST_F(SchemaReferences, GoThroughTheSchemasOwnAddReference) {
    Write("Base.01.00.kaschema.xml", "Renamed", {{"Deep", "1.0"}});
    Write("Deep.01.00.kaschema.xml", "Deep", {});
    const std::wstring plant = Write("plant.xml", "Plant", {{"Base", "1.0"}});
    WatchingSchema schema;
    schema.SetKaClassResolutionHelper([](CKaSchema*, const wchar_t*) -> CKaClass* { return nullptr; });
    schema.SetKaRelationshipUpgradeHandler(
        [](CKaSchema*, CKaRelationshipClass*, CKaRelationshipConstraint*, KaArrayValue**) { return 0; });
    EXPECT_EQ(schema.ReadXML(plant.c_str()), 0);
    EXPECT_EQ(schema.seen, std::vector<std::wstring>{L"Base Renamed"});
    EXPECT_EQ(Entries(schema), std::vector<std::wstring>{L"Base 01.00"});
    EXPECT_EQ(schema.GetReferencedSchema(0)->GetKaClassResolutionHelper(), nullptr);
    EXPECT_EQ(schema.GetReferencedSchema(0)->GetKaRelationshipUpgradeHandler(), nullptr);
    WatchingSchema refusing;
    refusing.refuses = true;
    EXPECT_THROW(refusing.ReadXML(plant.c_str()), int);
    EXPECT_TRUE(Entries(refusing).empty());
}

} // namespace
} // namespace KAXML::Test
