#pragma once

#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaxml/reader/parse.h>

#include <memory>

namespace KAXML {

class CKaClass;
class CKaRelationshipClass;

/// The factory that most clients need: it finds the class of an element in a schema and the schemas
/// that it references.
///
/// @code
/// KAXML::CKaSchemaInstanceFactory factory(&schema);
/// KAXML::ParseKaInstanceXML(1, L"plant.kainstance.xml", &schema, nullptr, nullptr, &Instance, &Relationship,
///                           nullptr, nullptr, nullptr, &factory, 0);
/// @endcode
///
/// An element's local name is the class's name, as it stands or coded by EncodeToValidXmlTag. Of
/// several classes of the name it takes the first whose schema has the element's namespace
/// (CKaSchema::XmlNamespace), else the first of all. Relationship classes come before classes, and
/// each kind in the order of the schema's look-ups: the schema itself, then its references, depth
/// first.
///
/// The factory knows what the schemas hold when it is made, so that finding a class takes the same
/// short time however many there are. Make a new one after classes, references, names or versions
/// have changed. Used by one thread at a time, together with the schema.
///
/// A derived factory that overrides CreateInstance or CreateRelationshipInstance makes instances of
/// classes of its own.
class KAXML_API CKaSchemaInstanceFactory : public IKaInstanceFactory {
  public:
    /// Collects the classes of the schema and its references.
    /// @param schema         not null (KAXMLInvalidArgument); not owned. It must outlive the factory.
    /// @param classTypeMask  bits of KaClassType: only classes with one of them are found. Structs
    ///                       and custom attributes are no objects of their own, so they are not
    ///                       unless asked for.
    explicit CKaSchemaInstanceFactory(CKaSchema* schema, unsigned long classTypeMask = KA_DOMAIN_CLASS);
    CKaSchemaInstanceFactory(const CKaSchemaInstanceFactory&) = delete;
    CKaSchemaInstanceFactory& operator=(const CKaSchemaInstanceFactory&) = delete;
    virtual ~CKaSchemaInstanceFactory();

    /// See IKaInstanceFactory. Null, and `isRelationship` as it was, when no class is found.
    /// @param namespaceUri,className,isRelationship  not null (KAXMLInvalidArgument).
    CKaInstance* CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className, int* isRelationship) override;

  protected:
    /// A new instance, made with `new`; null when elements of this class are to count as unknown.
    /// @param kaClass  never null.
    virtual CKaInstance* CreateInstance(CKaClass* kaClass);
    /// The same for a relationship.
    virtual KaRelationshipInstance* CreateRelationshipInstance(CKaRelationshipClass* relationshipClass);

  private:
    class Index;

    std::unique_ptr<const Index> m_index;
};

} // namespace KAXML
