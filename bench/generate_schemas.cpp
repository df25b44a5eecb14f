#include "element_writer.h"
#include "generate.h"

#include <utility>

namespace bench {
namespace {

enum class Role { domain, structure, metadata };

struct Property {
    std::string name;
    std::string type;
    const char* element = "KaProperty";
};

constexpr char kStruct[] = "KaStructProperty";
constexpr char kArray[] = "KaArrayProperty";

std::string Attributes(std::initializer_list<std::pair<std::string_view, std::string_view>> attributes) {
    std::string text;
    for (const auto& [name, value] : attributes)
        text.append(text.empty() ? "" : " ").append(name).append("=\"").append(value).append("\"");
    return text;
}

std::string ClassAttributes(const std::string& name, Role role) {
    const auto flag = [role](Role asked) { return role == asked ? "True" : "False"; };
    return Attributes({{"typeName", name},
                       {"description", "What " + name + " is for"},
                       {"isDomainClass", flag(Role::domain)},
                       {"isStruct", flag(Role::structure)},
                       {"isCustomAttributeClass", flag(Role::metadata)}});
}

// The elements of one schema file.
class SchemaWriter {
  public:
    SchemaWriter(const std::filesystem::path& file, const std::string& name) : m_xml(file, true), m_name(name) {
        m_xml.Open("KaSchema", Attributes({{"schemaName", name},
                                           {"nameSpacePrefix", name},
                                           {"version", "1.0"},
                                           {"description", "Generated for measuring"},
                                           {"xmlns", "http://corvane.example/schemas/Corvane.KAXML.2.0"},
                                           {"xmlns:" + name, name + ".01.00"}}));
    }

    void Reference(const std::string& name) {
        Empty("KaSchemaReference", Attributes({{"name", name}, {"version", "1.0"}, {"prefix", name}}));
    }

    void OpenClass(const std::string& name, Role role, const std::string& base = {}) {
        m_xml.Open("KaClass", ClassAttributes(name, role));
        if (!base.empty())
            m_xml.Leaf("BaseClass", base);
    }

    void Class(const std::string& name, Role role, const std::string& base, const std::vector<Property>& properties) {
        OpenClass(name, role, base);
        Properties(properties);
        Close();
    }

    void OpenProperty(const Property& property) {
        std::string attributes = Attributes(
            {{"propertyName", property.name}, {"typeName", property.type}, {"description", "The " + property.name}});
        if (property.element == kArray)
            attributes += ' ' + Attributes({{"minOccurs", "0"}, {"maxOccurs", "unbounded"}});
        m_xml.Open(property.element, attributes);
    }

    void Relationship(const std::string& name, const char* end) {
        m_xml.Open("KaRelationshipClass", ClassAttributes(name, Role::domain));
        Properties({{"Medium", "string"}, {"Flow", "double"}});
        for (const char* const side : {"Source", "Target"}) {
            m_xml.Open(side, Attributes({{"cardinality", "(0,N)"}, {"roleLabel", "flows"}, {"polymorphic", "True"}}));
            Empty("Class", Attributes({{"class", end}}));
            Close();
        }
        Close();
    }

    // One custom attribute: an instance of the class "Hints", which has to stand in front.
    void Hints(const std::string& category, std::size_t order) {
        m_xml.Open("KaCustomAttributes");
        m_xml.Open(m_name + ":Hints");
        m_xml.Leaf(m_name + ":Category", category);
        m_xml.Leaf(m_name + ":Order", std::to_string(order));
        Close();
        Close();
    }

    void Close() { m_xml.Close(); }

    void Finish() {
        Close();
        m_xml.Finish();
    }

  private:
    void Properties(const std::vector<Property>& properties) {
        for (const Property& property : properties) {
            OpenProperty(property);
            Close();
        }
    }

    void Empty(const char* name, const std::string& attributes) {
        m_xml.Open(name, attributes);
        Close();
    }

    ElementWriter m_xml;
    std::string m_name;
};

void AddPlantClasses(SchemaWriter& schema) {
    schema.Class("Place", Role::structure, "", {{"Area", "string"}, {"Elevation", "double"}});
    schema.Class("Item", Role::domain, "", {{"Tag", "string"}, {"Service", "string"}, {"AssetNumber", "long"}});
    schema.Class("Equipment", Role::domain, "Item",
                 {{"Manufacturer", "string"},
                  {"DryMass", "double"},
                  {"Commissioned", "dateTime"},
                  {"InService", "boolean"},
                  {"Location", "Place", kStruct}});
    for (int i = 0; i < 30; ++i)
        schema.Class("Equipment" + std::to_string(i), Role::domain, "Equipment",
                     {{"DesignPressure", "double"}, {"Readings", "double", kArray}});
    for (int i = 0; i < 4; ++i)
        schema.Relationship("Feeds" + std::to_string(i), "Equipment");
}

void AddWideClasses(SchemaWriter& schema) {
    constexpr int kLevels = 8;
    constexpr int kPropertiesPerLevel = 15;
    for (int level = 0; level < kLevels; ++level) {
        std::vector<Property> properties;
        for (int i = level * kPropertiesPerLevel; i < (level + 1) * kPropertiesPerLevel; ++i)
            properties.push_back({"Characteristic" + std::to_string(i), i % 3 == 0 ? "string" : "double"});
        schema.Class(level == kLevels - 1 ? "Wide" : "Level" + std::to_string(level), Role::domain,
                     level == 0 ? "" : "Level" + std::to_string(level - 1), properties);
    }
}

void AddArrayClasses(SchemaWriter& schema) {
    schema.Class("Sample", Role::structure, "", {{"Point", "string"}, {"Thickness", "double"}});
    schema.Class("Series", Role::domain, "", {{"Numbers", "double", kArray}, {"Samples", "Sample", kArray}});
}

// The class of this number: every third one has the class before it as its base.
void AddOrdinaryClass(SchemaWriter& schema, std::size_t number) {
    static constexpr const char* kTypes[] = {"string", "double", "int", "boolean", "dateTime"};
    const bool hasBase = number % 3 == 2;
    schema.OpenClass("Class" + std::to_string(number), Role::domain,
                     hasBase ? "Class" + std::to_string(number - 1) : std::string());
    schema.Hints("Equipment", number);
    for (std::size_t i = 0; i < 10; ++i) {
        // A class may not repeat the properties of its base.
        schema.OpenProperty({(hasBase ? "Detail" : "Property") + std::to_string(i), kTypes[i % std::size(kTypes)]});
        if (i % 5 == 0)
            schema.Hints("Identification", i);
        schema.Close();
    }
    schema.Close();
}

void WriteOrdinarySchema(const std::filesystem::path& file, const std::string& name, std::size_t classCount) {
    SchemaWriter schema(file, name);
    schema.Class("Hints", Role::metadata, "", {{"Category", "string"}, {"Order", "int"}});
    for (std::size_t i = 0; i < classCount; ++i)
        AddOrdinaryClass(schema, i);
    schema.Finish();
}

} // namespace

void WriteInstanceSchema(const std::filesystem::path& file, Kind kind, std::size_t otherClasses) {
    SchemaWriter schema(file, "Bench");
    for (std::size_t i = 0; i < otherClasses; ++i)
        schema.Class("Other" + std::to_string(i), Role::domain, "", {{"Tag", "string"}});
    if (kind == Kind::plant || kind == Kind::plantCompact)
        AddPlantClasses(schema);
    else if (kind == Kind::wide)
        AddWideClasses(schema);
    else if (kind == Kind::arrays)
        AddArrayClasses(schema);
    else if (kind == Kind::longValues)
        schema.Class("Document", Role::domain, "", {{"Content", "string"}});
    else
        schema.Class("T", Role::domain, "", {{"V", "string"}});
    schema.Finish();
}

void WriteLargeSchema(const std::filesystem::path& file, std::size_t classCount) {
    WriteOrdinarySchema(file, "Large", classCount);
}

void WriteReferencingSchema(const std::filesystem::path& file, std::size_t referenceCount, std::size_t classCount) {
    SchemaWriter schema(file, "Referencing");
    for (std::size_t i = 0; i < referenceCount; ++i) {
        const std::string name = "Part" + std::to_string(i);
        WriteOrdinarySchema(file.parent_path() / (name + ".01.00.kaschema.xml"), name, classCount);
        schema.Reference(name);
    }
    for (std::size_t i = 0; i < referenceCount; ++i)
        schema.Class("Derived" + std::to_string(i), Role::domain, "Part" + std::to_string(i) + ":Class0",
                     {{"Own", "string"}});
    schema.Finish();
}

} // namespace bench
