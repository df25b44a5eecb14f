#include <kaxml/kaxml.h>

#include <iostream>

int main() {
    // A schema says which classes there are and what properties they have.
    KAXML::CKaSchema schema(L"Plant", L"pl", L"A process plant");
    KAXML::CKaClass* pumpClass = schema.CreateKaClass(L"Pump", L"Moves liquids", KAXML::KA_DOMAIN_CLASS);
    pumpClass->AddKaProperty(L"Tag", L"string", L"");
    pumpClass->AddKaProperty(L"Power", L"double", L"In kW");

    // An instance is one object of a class.
    KAXML::CKaInstance pump(pumpClass);
    pump.SetPropertyValue(L"Tag", L"P-101");
    pump.SetPropertyValue(L"Power", 7.5);
    std::wstring xml;
    pump.AppendAsXml(xml, L" id='P-101'");
    std::cout << "written: " << KAXML::ToUtf8(xml) << '\n';

    // A document is instances in a root element. Each one is handed to a callback as it is read.
    const std::wstring root = std::wstring(L"<KaInstanceXML xmlns='") + KAXML::KAXML_NAMESPACE_URI + L"'>";
    const std::wstring document = root + xml + L"</KaInstanceXML>";
    KAXML::KaParseCallables callables;
    callables.instance = [](KAXML::CKaInstance& instance) {
        double power = 0;
        instance.GetPropertyValue(L"Power", &power);
        std::cout << "read: " << KAXML::ToUtf8(instance.GetPropertyValue(L"Tag")) << " with " << power << " kW\n";
    };
    KAXML::ParseKaInstanceText(document.c_str(), &schema, callables);
}
