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

// Lets no reference in.
struct Gate : CKaSchema {
    using CKaSchema::CKaSchema;
    void AddReference(CKaSchemaReference& reference) override {
        throw KAXMLLogicError(reference.m_schemaName + L" " + reference.m_versionString);
    }
};

TEST_F(SchemaReferences, GoThroughTheVirtualOperation) {
    const std::wstring plant = Write("plant.xml", "Plant", "Base");
    Write("Base.01.00.kaschema.xml", "Base", "");
    Gate gate(L"temporary", L"temporary", nullptr);
    ExpectThrows<KAXMLLogicError>([&] { gate.ReadXML(plant.c_str()); }, L"Base 01.00");
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

TEST_F(SchemaReferences, NestAThousandFilesDeepAndLeadToTenThousandReadings) {
    const auto name = [](int level) { return "S" + std::to_string(level); };
    const auto file = [](const std::string& schema) { return schema + ".01.00.kaschema.xml"; };
    for (int level = 0; level <= 1000; ++level)
        Write(file(name(level)), name(level), level == 0 ? "" : name(level - 1));
    // The last file is the 1000th of the first chain.
    const std::unique_ptr<CKaSchema> deepest = ReadModel(L"S999.01.00.kaschema.xml");
    int depth = 1;
    for (const CKaSchema* schema = deepest.get(); (schema = schema->GetReferencedSchema(0)) != nullptr;)
        ++depth;
    EXPECT_EQ(depth, 1000);
    const auto expectRefusal = [](const wchar_t* path, const std::wstring& problem, const wchar_t* limit) {
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        ExpectThrows<KAXMLRuntimeError>([&] { schema.ReadXML(path); }, L"KaSchema references " + problem + limit);
        EXPECT_EQ(schema.GetReferencedSchema(0), nullptr);
    };
    const std::wstring current = WideFromUtf8(folder.Path().string());
    expectRefusal(L"S1000.01.00.kaschema.xml", L"are nested too deep at '" + current + L"/S0.01.00.kaschema.xml'",
                  L": the limit is 1000 files");
    // Two files on each of 14 levels, each of which refers to both of the level below.
    for (int level = 1; level <= 14; ++level)
        for (const std::string& schema : {"L" + name(level), "R" + name(level)}) {
            const std::string below = name(level - 1);
            Write(file(schema), schema, "L" + below + "' prefix='l' version='1.0'/><KaSchemaReference name='R" + below);
        }
    for (const char* const schema : {"LS0", "RS0"})
        Write(file(schema), schema);
    expectRefusal(L"LS14.01.00.kaschema.xml", L"lead to too many files at '" + current + L"/LS0.01.00.kaschema.xml'",
                  L": the limit is 10000 files");
    EXPECT_EQ(ReadModel(L"LS11.01.00.kaschema.xml")->GetReferencedSchema(1)->SchemaName(), L"RS10");
}

} // namespace
} // namespace KAXML::Test
