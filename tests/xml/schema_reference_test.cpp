#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"
#include "support/model_compare.h"

namespace KAXML::Test {
namespace {

namespace fs = std::filesystem;

// A place for schema files of its own, as the current directory and with no other way to find any.
struct SchemaReferences : testing::Test {
    SchemaReferences() {
        fs::current_path(folder.Path());
        unsetenv("KASCHEMA_PATH");
    }
    ~SchemaReferences() override {
        fs::current_path(before);
        unsetenv("KASCHEMA_PATH");
    }

    // Writes a schema file that may refer to another one, of version 1.0.
    std::wstring Write(const std::string& file, const std::string& name, const std::string& referenced = "",
                       const std::string& description = "") const {
        const std::string attributes = "name='" + referenced + "' prefix='r' version='1.0'";
        return folder.Write(file, "<KaSchema xmlns='" + Narrow(KAXML_NAMESPACE_URI) + "' schemaName='" + name +
                                      "' nameSpacePrefix='x' description='" + description + "'>" +
                                      (referenced.empty() ? "" : "<KaSchemaReference " + attributes + "/>") +
                                      "</KaSchema>");
    }

    const fs::path before = fs::current_path();
    const TemporaryFolder folder;
};

TEST_F(SchemaReferences, AreSearchedInTheCurrentDirectoryTheEnvironmentAndTheSchemasPath) {
    const std::string file = "Base.01.00.kaschema.xml";
    const std::wstring current = WideFromUtf8(folder.Path().string());
    const std::wstring plant = Write("plant.xml", "Plant", "Base");
    const std::vector<std::string> places = {".", "one", "two", "three", "four"};
    for (const std::string& place : places) {
        fs::create_directories(folder / place);
        Write(place + "/" + file, "Base", "", place);
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
                                        L"The referenced KaSchemaXML file 'Base.01.00.kaschema.xml' could not be found "
                                        L"searching current directory plus KASCHEMA_PATH: '" +
                                            searched + L"'",
                                        L"CKaSchemaReference::ReadXML");
        EXPECT_EQ(schema.GetReferencedSchema(0), nullptr);
    }
}

// Sees every reference that is read and lets none in.
struct Gate : CKaSchema {
    Gate() : CKaSchema(L"temporary", L"temporary", nullptr) {}
    void AddReference(CKaSchemaReference& reference) override {
        seen += reference.m_schemaName + L" " + reference.m_versionString + L" as " + reference.m_schemaPrefix;
        throw KAXMLLogicError(L"closed");
    }
    std::wstring seen;
};

TEST_F(SchemaReferences, GoThroughTheVirtualOperation) {
    const std::wstring plant = Write("plant.xml", "Plant", "Base");
    Write("Base.01.00.kaschema.xml", "Base", "");
    Gate gate;
    ExpectThrows<KAXMLLogicError>([&] { gate.ReadXML(plant.c_str()); }, L"closed");
    EXPECT_TRUE(gate.seen.starts_with(L"Base 01.00 as ")) << Narrow(gate.seen);
    EXPECT_EQ(gate.GetReferencedSchema(0), nullptr);
}

TEST_F(SchemaReferences, ThatFormACycleAreRefused) {
    Write("A.01.00.kaschema.xml", "A", "B");
    Write("B.01.00.kaschema.xml", "B", "C");
    Write("C.01.00.kaschema.xml", "C", "A");
    Write("Self.01.00.kaschema.xml", "Self", "Other");
    fs::create_symlink(folder / "Self.01.00.kaschema.xml", folder / "Other.01.00.kaschema.xml");
    Write("D.01.00.kaschema.xml", "D", "B");
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
