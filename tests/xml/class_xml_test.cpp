#include <kaxml/kaxml.h>
#include <kaxml/platform/dom.h>

#include "support/expectations.h"

namespace KAXML::Test {
namespace {

TEST(PropertyXml, OccurrenceAttributesMakeArraysInEitherOrder) {
    const struct {
        const wchar_t* attributes;
        int isArray;
        const wchar_t *minOccurs, *maxOccurs;
    } cases[] = {
        {L"", 0, L"", L""},
        {L"minOccurs='' maxOccurs=''", 0, L"", L""},
        {L"minOccurs='1' maxOccurs='1'", 0, L"1", L"1"},
        {L"maxOccurs='1' minOccurs='1'", 0, L"1", L"1"},
        {L"minOccurs='1'", 0, L"1", L""},
        {L"minOccurs='0'", 1, L"0", L""},
        {L"maxOccurs='1'", 1, L"0", L"1"},
        {L"maxOccurs='1' minOccurs=''", 1, L"0", L"1"},
        {L"minOccurs='0' maxOccurs='1'", 1, L"0", L"1"},
        {L"maxOccurs='unbounded' minOccurs='1'", 1, L"1", L"unbounded"},
        {L"minOccurs='1' maxOccurs=' 1'", 1, L"1", L" 1"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(Narrow(each.attributes));
        IXMLDOMDocument2 document;
        // The element's own name does not count.
        ASSERT_TRUE(document.loadXML(std::wstring(L"<KaArrayProperty typeName='int' propertyName='Tag' ") +
                                     each.attributes + L"/>"));
        CKaProperty property(nullptr);
        EXPECT_EQ(property.ReadXML(nullptr, &document, document.get_firstChild()), 0);
        EXPECT_EQ(property.IsArray(), each.isArray);
        EXPECT_STREQ(property.GetMinOccurs(), each.minOccurs);
        EXPECT_STREQ(property.GetMaxOccurs(), each.maxOccurs);
    }
}

TEST(ClassXml, AttributesAreAppliedBeforeTheNameIsMissed) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    CKaClass kaClass(L"Placeholder", &schema, nullptr);
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(L"<KaClass description='d' displayLabel='l' isStruct='True'/>"));
    EXPECT_THROW(kaClass.ReadXML(&schema, &document, document.get_firstChild()), KAXMLFormatError);
    EXPECT_STREQ(kaClass.GetTypeName(), L"Placeholder");
    EXPECT_STREQ(kaClass.GetDescription(), L"d");
    EXPECT_STREQ(kaClass.GetDisplayLabel(), L"l");
    EXPECT_EQ(kaClass.GetClassType(), KA_STRUCT_CLASS);
    // Its attributes and its contents are traced.
    ASSERT_TRUE(document.loadXML(L"<KaClass typeName='Pump'/>"));
    const LogRecorder log;
    EXPECT_EQ(kaClass.ReadXML(&schema, &document, document.get_firstChild()), 0);
    const LogRecorder::Entry trace{LOG_TRACE, L"KAXML", L"CKaClass::ReadXML (typeName=Pump)"};
    EXPECT_EQ(log.Entries(), (std::vector<LogRecorder::Entry>{trace, trace}));
}

} // namespace
} // namespace KAXML::Test
