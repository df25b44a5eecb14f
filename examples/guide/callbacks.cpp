#include <kaxml/kaxml.h>

#include <iostream>

namespace {

// A client's own class of instances. The factory makes it, the reader fills it.
class Pump : public KAXML::CKaInstance {
  public:
    using CKaInstance::CKaInstance;

    double Power() const {
        double power = 0;
        if (CKaInstance::GetPropertyValue(L"Power", false) != nullptr)
            CKaInstance::GetPropertyValue(L"Power", &power);
        return power;
    }
};

class Factory final : public KAXML::CKaSchemaInstanceFactory {
  public:
    using CKaSchemaInstanceFactory::CKaSchemaInstanceFactory;

  protected:
    KAXML::CKaInstance* CreateInstance(KAXML::CKaClass* kaClass) override {
        if (kaClass->TypeName() == L"Pump")
            return new Pump(kaClass);
        return CKaSchemaInstanceFactory::CreateInstance(kaClass);
    }
};

// What the callbacks share travels through the context.
struct Totals {
    double power = 0;
    int relationships = 0;
};

int Instance(KAXML::CKaSchema*, void* context, KAXML::CKaInstance* instance) {
    if (const auto* pump = dynamic_cast<const Pump*>(instance))
        static_cast<Totals*>(context)->power += pump->Power();
    return 0; // anything else ends the parse
}

int Relationship(KAXML::CKaSchema*, void* context, KAXML::KaRelationshipInstance*) {
    ++static_cast<Totals*>(context)->relationships;
    return 0;
}

} // namespace

int main(int, char** arguments) {
    const std::wstring folder = KAXML::ToWString(arguments[1]);
    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(folder.c_str());
    schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());

    Factory factory(&schema);
    Totals totals;
    KAXML::ParseKaInstanceXML(1, (folder + L"/water.kainstance.xml").c_str(), &schema, &totals, nullptr, &Instance,
                              &Relationship, nullptr, nullptr, nullptr, &factory, 0);
    std::cout << totals.power << " kW of pumps, " << totals.relationships << " relationships\n";
}
