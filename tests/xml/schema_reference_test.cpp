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
        EXPECT_EQ(schema.GetReferencedSchema(0), nullptr);
    }
}

TEST_F(SchemaReferences, ThatFormACycleAreRefused) {
    Write("A.01.00.kaschema.xml", "A", {{"B", "1.0"}});
    Write("B.01.00.kaschema.xml", "B", {{"C", "1.0"}});
    Write("C.01.00.kaschema.xml", "C", {{"A", "1.0"}});
    Write("Self.01.00.kaschema.xml", "Self", {{"Other", "1.0"}});
    fs::create_symlink(folder / "Self.01.00.kaschema.xml", folder / "Other.01.00.kaschema.xml");
    Write("D.01.00.kaschema.xml", "D", {{"B", "1.0"}});
    const std::pair<const wchar_t*, std::wstring> cases[] = {{L"A.01.00.kaschema.xml", L"A -> B -> C -> A"},
                                                             {L"./B.01.00.kaschema.xml", L"B -> C -> A -> B"},
                                                             {L"D.01.00.kaschema.xml", L"B -> C -> A -> B"},
                                                             {L"Self.01.00.kaschema.xml", L"Self -> Self"}};
    for (const auto& [file, chain] : cases) {
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        ExpectThrows<KAXMLRuntimeError>([&, path = file] { schema.ReadXML(path); },
                                        L"KaSchema references form a cycle: " + chain);
        EXPECT_EQ(schema.GetReferencedSchema(0), nullptr);
    }
}

} // namespace
} // namespace KAXML::Test
