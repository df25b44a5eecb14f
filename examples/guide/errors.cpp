#include <kaxml/kaxml.h>

#include <iostream>
#include <stdexcept>

namespace {

// One handler for everything that can leave the library.
template <typename Operation> void Try(const char* what, Operation operation) {
    std::cout << what << "\n  ";
    try {
        operation();
        std::cout << "done\n";
    } catch (const KAXML::KAXMLInvalidArgument& error) { // a fault of the program
        std::cout << "bug: " << error << '\n';
    } catch (const KAXML::KAXMLException& error) { // the input, the model or the environment
        std::cout << error << '\n';
    } catch (...) { // _com_error, std::bad_alloc, what a callback of the program threw
        std::cout << KAXML::ToUtf8(KAXML::DescribeCurrentException()) << '\n';
    }
}

void Parse(KAXML::CKaSchema& schema, const std::wstring& content) {
    KAXML::KaParseCallables callables;
    callables.error = [](const wchar_t* report) { std::cout << KAXML::ToUtf8(report).substr(0, 35) << "...\n  "; };
    callables.instance = [](KAXML::CKaInstance&) { throw std::runtime_error("thrown by the callback"); };
    const std::wstring root = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI + L"'>";
    KAXML::ParseKaInstanceText((root + content + L"</KaInstanceXML>").c_str(), &schema, callables);
}

void Fail(KAXML::CKaSchema& schema) {
    Try("a null argument", [&] { schema.ReadXML(nullptr); });
    Try("a name that is none", [&] { schema.CreateKaClass(L"No name", L"", KAXML::KA_DOMAIN_CLASS); });
    Try("a base class that is not there", [&] { schema.GetKaClassByIndex(0)->SetBaseClass(L"Nowhere"); });
    Try("a document that is not well formed", [&] { Parse(schema, L"<Pump>"); });
    Try("a property that is not there", [&] { Parse(schema, L"<Pump><Nope/></Pump>"); });
    Try("a callback that throws", [&] { Parse(schema, L"<Pump/>"); });
    Try("a file that cannot be written", [&] { schema.WriteXML(L"no/such/folder/Plant.kaschema.xml"); });
}

} // namespace

int main() {
    KAXML::CKaSchema schema(L"Plant", L"pl", L"");
    schema.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS);
    Fail(schema);

    // Warnings and progress are only logged; so is a copy of every exception's text.
    const KAXML::CScopedLogging logging([](KAXML::LOG_SEV severity, const wchar_t* category, const wchar_t* message) {
        std::cout << severity << " of " << KAXML::ToUtf8(category) << ": " << KAXML::ToUtf8(message) << '\n';
    });
    Parse(schema, L"");
    schema.GetKaClassByIndex(0)->TypeName() = L"No name"; // past the checks
    schema.WriteXML(L"Plant.kaschema.xml");
    Try("with logging", [&] { schema.FindKaClassUsingFullName(L"un:Unit", KAXML::KA_ANY_CLASS_TYPE); });
}
