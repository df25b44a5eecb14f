#include <kaxml/platform/xml_parser.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

TEST(XmlParser, PassesExceptionsOfEveryEventOnAndNoEventAfterThem) {
    // Every kind of event, an attribute with a reference, and a malformed tail.
    const wchar_t* const document = L"<?p?><!--c--><a x='&lt;1'>text<![CDATA[d]]>&amp;<b/></a><!--e--> malformed";
    AtEverySliceSize([&] {
        for (int at = 1; at <= 10; ++at) {
            int count = 0;
            EveryEvent thrower;
            thrower.note = [&] { ++count == at ? throw std::make_shared<int>(at) : void(); };
            try {
                ParseXml(*OpenWideText(document), thrower);
                ADD_FAILURE() << "nothing thrown at event " << at;
            } catch (const std::shared_ptr<int>& exception) {
                EXPECT_EQ(*exception, at);
                EXPECT_EQ(exception.use_count(), 1) << "not the object that was thrown";
            }
            EXPECT_EQ(count, at);
        }
    });
}

} // namespace
} // namespace KAXML::Test
