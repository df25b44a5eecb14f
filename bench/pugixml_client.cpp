#include "pugixml_client.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace bench {
namespace {

struct Value {
    std::wstring name;          // empty for a member of an array
    std::wstring text;          // of a primitive value
    std::vector<Value> members; // of an array or a struct
};

struct Instance {
    std::wstring className;
    std::wstring id;
    std::wstring sourceId; // of a relationship
    std::wstring targetId;
    std::vector<Value> values;
};

struct Property {
    std::wstring name;
    std::wstring type;
    std::wstring description;
    std::vector<Instance> customAttributes;
};

struct Class {
    std::wstring name;
    std::wstring description;
    bool isDomain;
    bool isStruct;
    bool isCustomAttribute;
    std::vector<Property> properties;
    std::vector<Instance> customAttributes;
    const Class* base = nullptr;
};

// What the schemas of the inputs say about their properties.
bool IsArray(std::string_view name) {
    static constexpr std::string_view kArrays[] = {"Readings", "Numbers", "Samples"};
    return std::find(std::begin(kArrays), std::end(kArrays), name) != std::end(kArrays);
}

void AddValues(std::vector<Value>& values, pugi::xml_node parent, bool areNamed);

// White space between elements is not in the tree, so the first child tells what the element holds.
void AddValue(std::vector<Value>& values, pugi::xml_node element, bool isNamed) {
    Value& value = values.emplace_back();
    if (isNamed)
        value.name = pugi::as_wide(element.name());
    if (element.first_child().type() == pugi::node_element)
        AddValues(value.members, element, !isNamed || !IsArray(element.name()));
    else
        value.text = pugi::as_wide(element.child_value());
}

void AddValues(std::vector<Value>& values, pugi::xml_node parent, bool areNamed) {
    for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
        AddValue(values, child, areNamed);
}

Instance Build(pugi::xml_node element) {
    Instance instance;
    instance.className = pugi::as_wide(element.name());
    instance.id = pugi::as_wide(element.attribute("id").value());
    if (const pugi::xml_attribute source = element.attribute("sourceInstanceID")) {
        instance.sourceId = pugi::as_wide(source.value());
        instance.targetId = pugi::as_wide(element.attribute("targetInstanceID").value());
    }
    AddValues(instance.values, element, true);
    return instance;
}

void CountValues(Tally& tally, const std::vector<Value>& values) {
    for (const Value& value : values) {
        ++tally.values;
        tally.characters += value.text.size();
        CountValues(tally, value.members);
    }
}

std::vector<Instance> CustomAttributes(pugi::xml_node item) {
    std::vector<Instance> list;
    for (const pugi::xml_node element : item.child("KaCustomAttributes").children())
        list.push_back(Build(element));
    return list;
}

Class BuildClass(pugi::xml_node element, const std::deque<Class>& classes) {
    const auto text = [](pugi::xml_node node, const char* name) { return pugi::as_wide(node.attribute(name).value()); };
    const auto flag = [element](const char* name) { return element.attribute(name).as_bool(); };
    Class result{text(element, "typeName"), text(element, "description"),   flag("isDomainClass"),
                 flag("isStruct"),          flag("isCustomAttributeClass"), {},
                 CustomAttributes(element)};
    for (const pugi::xml_node child : element.children("KaProperty"))
        result.properties.push_back({text(child, "propertyName"), text(child, "typeName"), text(child, "description"),
                                     CustomAttributes(child)});
    // A base stands in front of what derives from it, mostly close by.
    if (const pugi::xml_node base = element.child("BaseClass")) {
        const std::wstring name = pugi::as_wide(base.child_value());
        const auto found =
            std::find_if(classes.rbegin(), classes.rend(), [&](const Class& c) { return c.name == name; });
        result.base = found != classes.rend() ? &*found : nullptr;
    }
    return result;
}

void Load(pugi::xml_document& tree, const std::filesystem::path& file) {
    if (const auto result = tree.load_file(file.c_str()); !result)
        throw std::runtime_error("pugixml: " + std::string(result.description()));
}

template <typename Visitor> std::size_t Parse(const std::filesystem::path& document, Visitor visit) {
    pugi::xml_document tree;
    Load(tree, document);
    std::size_t count = 0;
    const pugi::xml_node root = tree.document_element();
    for (pugi::xml_node child = root.first_child(); child; child = child.next_sibling()) {
        visit(Build(child));
        ++count;
    }
    return count;
}

} // namespace

std::size_t PugixmlParse(const std::filesystem::path& document) {
    return Parse(document, [](const Instance&) {});
}

Tally PugixmlCount(const std::filesystem::path& document) {
    Tally tally;
    tally.instances = Parse(document, [&tally](const Instance& instance) {
        tally.characters += instance.className.size() + instance.id.size();
        CountValues(tally, instance.values);
    });
    return tally;
}

std::size_t PugixmlReadSchema(const std::filesystem::path& file) {
    pugi::xml_document tree;
    Load(tree, file);
    std::deque<Class> classes;
    for (const pugi::xml_node element : tree.document_element().children("KaClass"))
        classes.push_back(BuildClass(element, classes));
    return classes.size();
}

} // namespace bench
