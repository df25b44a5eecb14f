#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"

/// What documents do to the schema that reads them. What is refused, and how, is in the corpus.
namespace KAXML::Test {
namespace {

std::string Root(const std::string& body,
                 const std::string& attributes = R"(schemaName="Plant" nameSpacePrefix="pl")") {
    return "<KaSchema xmlns=\"" + Narrow(KAXML_NAMESPACE_URI) + "\" " + attributes + ">" + body + "</KaSchema>";
}

// The names of all classes, relationship classes behind a bar.
std::string ClassNames(const CKaSchema& schema) {
    std::string names;
    for (unsigned int i = 0; i < schema.GetKaClassCount(); ++i)
        names += Narrow(schema.GetKaClassByIndex(i)->TypeName()) + " ";
    names += "|";
    for (unsigned int i = 0; i < schema.GetKaRelationshipClassCount(); ++i)
        names += " " + Narrow(schema.GetKaRelationshipClass(i)->TypeName());
    return names;
}

TEST(SchemaReader, UnreadableFilesAreParseErrors) {
    const TemporaryFolder folder;
    const struct {
        std::wstring path;
        const char* reason;
    } cases[] = {
        {WideFromUtf8((folder / "missing.xml").string()), "No such file or directory"},
        {WideFromUtf8(folder.Path().string()), "Is a directory"},
        {L"", "No such file or directory"},
    };
    for (const auto& each : cases) {
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        const LogRecorder log;
        testing::internal::CaptureStdout();
        EXPECT_THROW(schema.ReadXML(each.path.c_str()), KAXMLRuntimeError);
        const std::string printed = testing::internal::GetCapturedStdout();
        // What was printed is what was thrown, which the log has too.
        const std::vector<std::wstring> errors = log.Messages(LOG_ERROR);
        ASSERT_EQ(errors.size(), 2U);
        EXPECT_EQ(printed, Narrow(errors[1]));
        const std::string source = "Error at api/core/kaxml/kaschemaxml/xml/schema_reader.cpp (";
        EXPECT_TRUE(printed.starts_with(source)) << printed;
        const std::size_t end = printed.find_first_not_of("0123456789", source.size());
        EXPECT_TRUE(end > source.size() && printed.substr(end) == "): CheckXmlLoad(pXmlDoc)") << printed;
        const std::string reason = Narrow(errors[0]);
        EXPECT_TRUE(reason.starts_with("line 0, position 0 parsing KaSchema file " + Narrow(each.path) + ". "));
        EXPECT_TRUE(reason.find(each.reason) != std::string::npos) << reason;
    }
    CKaSchema schema(L"temporary", L"temporary", nullptr);
    ExpectThrows<KAXMLInvalidArgument>([&] { schema.ReadXML(nullptr); }, L"Passed NULL path to CKaSchema::ReadXML");
}

TEST(SchemaReader, LogLinesOfRefusedRootsAreCutTo1024Characters) {
    const TemporaryFolder folder;
    const std::string longName(2000, 'n');
    const std::wstring path = folder.Write("x", "<KaSchema xmlns='urn:" + longName + "'/>");
    CKaSchema schema(L"Own", L"own", nullptr);
    const LogRecorder log;
    EXPECT_EQ(schema.ReadXML(path.c_str()), 1000);
    const std::wstring whole = L"Import file '" + path + L"' is using namespace 'urn:" + WideFromUtf8(longName);
    ASSERT_EQ(log.Entries().size(), 1U);
    EXPECT_EQ(log.Entries()[0], (LogRecorder::Entry{LOG_ERROR, L"KAXML", whole.substr(0, 1024)}));
    EXPECT_STREQ(schema.GetSchemaName(), L"Own");
}

TEST(SchemaReader, AddsToWhatTheSchemaHolds) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", Root("<KaClass typeName='Pump'/><KaRelationshipClass typeName='Feeds'/>"
                                                     "<KaClass typeName='Valve'/>",
                                                     "description=''"));
    CKaSchema schema(L"Own", L"own", L"replaced");
    schema.SetVersionString(L"3.4");
    EXPECT_EQ(schema.ReadXML(path.c_str()), 0);
    EXPECT_EQ(schema.ReadXML(path.c_str()), 0);
    EXPECT_EQ(ClassNames(schema), "Pump Valve Pump2 Valve2 | Feeds Feeds2");
    EXPECT_STREQ(schema.GetSchemaName(), L"Own");
    EXPECT_STREQ(schema.GetSchemaPrefix(), L"own");
    EXPECT_STREQ(schema.GetDescription(), L"");
    EXPECT_EQ(schema.VersionString(), L"03.04");
    EXPECT_EQ(schema.GetKaClassByIndex(2)->GetKaSchema(), &schema);
}

TEST(SchemaReader, FailuresLeaveWhatWasReadBefore) {
    const struct {
        std::string document;
        const char* names;
        const wchar_t* description;
    } cases[] = {
        {"<KaSchema schemaName='Plant' description='not read'/>", "|", L""},
        {Root("", "description='read' nameSpacePrefix='1' displayLabel='not'"), "|", L"read"},
        {Root("<KaClass typeName='A'/><KaThing/>"), "|", L""},
        {Root("<KaClass typeName='A'/><KaClass/><KaClass typeName='B'/>"), "A |", L""},
        {Root("<KaClass typeName='A'><BaseClass>X</BaseClass></KaClass><KaRelationshipClass typeName='B'/>"), "A | B",
         L""},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.document);
        const TemporaryFolder folder;
        CKaSchema schema(L"temporary", L"temporary", nullptr);
        try {
            EXPECT_EQ(schema.ReadXML(folder.Write("x", each.document).c_str()), 1000);
        } catch (const KAXMLException&) {
        }
        EXPECT_EQ(ClassNames(schema), each.names);
        EXPECT_STREQ(schema.GetDescription(), each.description);
        EXPECT_STREQ(schema.GetDisplayLabel(), L"");
    }
}

} // namespace
} // namespace KAXML::Test
