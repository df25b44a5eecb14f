#include "oracles.h"

#include <kaxml/kaxml/reader/instance_handlers.h>

/// Instance documents of a fixed schema: the bytes stand in the root, in an instance, or each names
/// a piece of markup. What is read is written as text and read again.
namespace KAXML::Fuzz {

constexpr const char* kElements[] = {"Project", "Item",   "Pump",  "Feeds", "Tag",   "Note",     "Names",
                                     "string",  "Counts", "int",   "Motor", "Power", "Phases",   "Front",
                                     "Spares",  "Root",   "Inner", "Parts", "Part",  "KaSource", "KaTarget"};
constexpr const char* kAttributes[] = {"", " href='s' id='&lt;&#10;'", " sourceInstanceID='s' targetInstanceID='t'"};
constexpr const char* kTexts[] = {"&#13;", "&#10;x", "<!--c-->", "<?p i?>", "<![CDATA[<]]>", "&amp;", "\n"};

// Each byte opens or closes an element or is a piece of text; what is left open is closed.
std::string DocumentOf(Bytes& input) {
    std::string text;
    std::vector<std::string> open;
    while (!input.rest.empty() || !open.empty()) {
        const unsigned byte = input.Next();
        if (byte >= 0xA0) {
            open.push_back(kElements[byte % std::size(kElements)]);
            text += "<" + open.back() + kAttributes[input.Below(std::size(kAttributes))] + ">";
        } else if (byte >= '?') {
            text += byte >= 0x80 ? kTexts[byte % std::size(kTexts)] : std::string(1, static_cast<char>(byte));
        } else if (!open.empty()) {
            text += "</" + open.back() + ">";
            open.pop_back();
        }
    }
    return text;
}

// As a client writes a text: a reader would take line breaks for others.
std::wstring Escaped(std::wstring text, std::wstring_view lineBreaks = L"\r\n\t") {
    for (std::size_t at = 0; (at = text.find_first_of(lineBreaks, at)) != text.npos;)
        text[at] = L' ';
    return ConvertToXmlString(text.c_str(), text), text;
}

struct Client {
    Test::InstanceRecorder factory;
    CKAXMLSAXContentHandler* handler = nullptr;
    std::wstring text;
    bool isRepeating = false; // a repeated value gets a name that no property has

    void Escape(KaValueBase& value) {
        isRepeating = isRepeating || value.PropertyName() != value.GetProperty()->GetPropertyName();
        if (auto* const primitive = dynamic_cast<CKaValue*>(&value))
            primitive->Value() = Escaped(primitive->Value(), L"\r");
        else if (auto* const array = dynamic_cast<KaArrayValue*>(&value))
            for (unsigned i = 0; i < array->GetLength(); ++i)
                Escape(*array->GetValue(i));
        else
            Escape(*dynamic_cast<KaStructValue&>(value).GetValue());
    }
    void Escape(CKaInstance& instance) {
        for (unsigned i = 0; i < instance.GetKaValueCount(); ++i)
            Escape(*instance.GetKaValue(i));
    }
    template <typename Instance> static int Deliver(CKaSchema*, void* context, Instance* instance) {
        auto& client = *static_cast<Client*>(context);
        EXPECT_EQ(client.handler->GetStateStack().Size(), 2); // the root's handler and that of all instances
        std::wstring attributes = L" id='" + Escaped(instance->InstanceID()) + L"'";
        if constexpr (std::is_same_v<Instance, KaRelationshipInstance>)
            attributes += L" sourceInstanceID='" + Escaped(instance->GetSourceID()) + L"' targetInstanceID='" +
                          Escaped(instance->GetTargetID()) + L"'";
        Instance copy(*instance);
        copy.SetInstanceID(L"");
        client.Escape(copy);
        return copy.AppendAsXml(client.text, attributes), 0;
    }
    bool Read(const std::string& document, unsigned flags) {
        const ParseCallbacks callbacks = {nullptr, &Deliver<CKaInstance>, &Deliver<KaRelationshipInstance>};
        CKAXMLSAXContentHandler watched(&Test::MachinesSchema(), this, callbacks, flags);
        handler = &watched;
        handler->SetKaInstanceFactory(&factory);
        handler->GetStateStack().Push(std::make_unique<KaInstanceXMLHandler>(handler));
        std::unique_ptr<ISAXXMLReader> reader;
        CreateSAXXMLReader(reader);
        reader->putContentHandler(handler);
        try {
            return Succeeds([&] { reader->parse(WideFromUtf8(Test::InRoot(document)).c_str()); });
        } catch (const _com_error&) { // not well formed
            return false;
        }
    }
};

void ReadAndWrite(Bytes& input) {
    const unsigned form = input.Next();
    const std::string content = (form & 2) != 0 ? DocumentOf(input) : std::string(input.rest);
    Client first;
    first.Read((form & 1) != 0 ? "<Pump id='1'>" + content + "</Pump>" : content, form >> 4 & 3);
    Client second;
    EXPECT_TRUE(second.Read(Test::Narrow(first.text), IGNORE_UNRECOGNIZED_PROPERTIES));
    EXPECT_TRUE(first.isRepeating || second.text == first.text);
    EXPECT_EQ(Test::Counted<CKaInstance>::s_alive + Test::Counted<KaRelationshipInstance>::s_alive, 0);
}

} // namespace KAXML::Fuzz

KAXML_FUZZ_TARGET(KAXML::Fuzz::ReadAndWrite)
