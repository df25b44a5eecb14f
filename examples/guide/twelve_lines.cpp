#include <kaxml/kaxml.h>

#include <iostream>

int main() {
    KAXML::CKaSchema schema(L"Plant", L"pl", L"A process plant");
    schema.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS)->AddKaProperty(L"Power", L"double", L"In kW");
    KAXML::KaParseCallables callables;
    callables.instance = [](KAXML::CKaInstance& pump) {
        double power = 0;
        pump.GetPropertyValue(L"Power", &power);
        std::cout << KAXML::ToUtf8(pump.InstanceID()) << " takes " << power << " kW\n";
    };
    KAXML::ParseKaInstanceText(L"<KaInstanceXML xmlns='http://corvane.example/schemas/Corvane.KAXML.2.0'>"
                               L"<Pump id='P-101'><Power>7.5</Power></Pump>"
                               L"<Pump id='P-102'><Power>11</Power></Pump></KaInstanceXML>",
                               &schema, callables);
}
