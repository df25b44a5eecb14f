#pragma once

#include <kaxml/kaschemaxml/schema/common.h>
#include <kaxml/kaschemaxml/schema/schema_reference.h>

#include <cstdint>

namespace KAXML {

class ClassAdder;
class CKaProperty;
class CKaRelationshipClass;
class CKaRelationshipConstraint;
class CKaValue;
class SchemaDocument;

/// Called with each class; a result that is not null ends the iteration.
typedef void* (*KaClassCallback)(CKaClass* kaClass, void* context);
/// The same for relationship classes.
typedef void* (*KaRelationshipClassCallback)(CKaRelationshipClass* relationshipClass, void* context);
/// Asked for a class that a relationship end names and that is found nowhere; may return null. The
/// class must outlive its use by the schema.
typedef CKaClass* (*KaClassResolutionHelper)(CKaSchema* schema, const wchar_t* className);
/// Told of each source/target pair of an older file, after the built-in upgrade; a nonzero answer
/// fails the read. What it stores through `result` is not used.
typedef int (*KaRelationshipUpgradeHandler)(CKaSchema* schema, CKaRelationshipClass* relationshipClass,
                                            CKaRelationshipConstraint* legacyConstraint, KaArrayValue** result);

/// A named, prefixed, versioned set of classes and relationship classes, with references to other
/// schemas whose classes it uses. The root of the model.
///
/// @code
/// KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);   // a file is to fill it
/// schema.SetSearchPath(L"schemas;/usr/share/plant");
/// if (schema.ReadXML(L"Plant.01.00.kaschema.xml") == 0) {
///     KAXML::CKaClass* pump = schema.FindKaClass(L"Pump", KAXML::KA_ANY_CLASS_TYPE);
///     ...
/// }
/// @endcode
///
/// A schema owns its classes, its relationship classes and the schemas its references hold; all
/// go with it. Copies are deep: a copy owns copies of all of these, and every pointer between them
/// leads into the copy. Objects of client classes derived from CKaClass or CKaRelationshipClass are
/// copied as the library's class.
///
/// A schema, with everything in it and the instances made for it, is used by one thread at a time;
/// different threads may use different schemas.
class KAXML_API CKaSchema : public CKaCommon {
  public:
    /// A schema of version 0.0 without classes.
    /// @param name,prefix  valid names.
    /// @throws KAXMLDomainError for an invalid name or prefix.
    CKaSchema(const std::wstring& name, const std::wstring& prefix, const std::wstring& description);
    /// The same. @param description  null means empty.
    /// @throws KAXMLLogicError for a null name or prefix.
    CKaSchema(const wchar_t* name, const wchar_t* prefix, const wchar_t* description);
    CKaSchema(const CKaSchema& other);
    CKaSchema& operator=(const CKaSchema& other);
    /// Deletes the classes, the relationship classes, and each schema referenced from here, directly
    /// or through others, once.
    ~CKaSchema() override;

    /// Appends a copy of the reference. The schema now owns the schema that the reference holds;
    /// when the call throws, it does not. The schema file reader adds through this operation.
    /// @throws KAXMLRuntimeError when the references would form a cycle; it names the schemas.
    virtual void AddReference(CKaSchemaReference& reference);

    /// @name Schema files
    /// @{

    /// Reads a schema file, and the files of the schemas it references, adding what it reads to
    /// this schema. What was read before a failure stays.
    /// @param path  not null (KAXMLInvalidArgument).
    /// @return 0; 1000 for a root element of a foreign namespace, 1001 for the legacy one, 32768
    ///         for a document that is no schema (all three logged, nothing read); or the first
    ///         nonzero result of a client's class reader.
    /// @throws KAXMLRuntimeError for a file that cannot be read or is not well formed (the reason is
    ///         logged), a referenced file that is not found, or references that form a cycle;
    ///         KAXMLFormatError, KAXMLDomainError, KAXMLLogicError for content that breaks the rules.
    int ReadXML(const wchar_t* path);
    /// Writes the schema to a file, in one step: on any failure the old file stays as it was. The
    /// schema is not changed. Where the format cannot carry something, so that reading the file
    /// would refuse it or give another model, a warning is logged for each.
    /// @param path  not null (KAXMLInvalidArgument).
    /// @return 0, or the first nonzero result of a client's class writer (nothing is saved).
    /// @throws KAXMLException of several classes for a model that cannot be written (see the
    ///         writers of its items), _com_error when a text holds what XML cannot, or the file
    ///         cannot be saved.
    int WriteXML(const wchar_t* path) const;
    /// Extra directories for referenced files, separated by ";", searched last. A schema loaded for a
    /// reference gets those of the schema that names it. Never null.
    const wchar_t* GetSearchPath() const noexcept;
    /// Sets those directories; they need not exist.
    /// @param searchPath  not null (KAXMLInvalidArgument).
    void SetSearchPath(const wchar_t* searchPath);
    /// @}

    /// @name Identity
    /// @{

    /// Validates and stores the name; on failure the old one stays.
    /// @throws KAXMLLogicError for null, KAXMLDomainError for an invalid name.
    void SetSchemaName(const wchar_t* name);
    /// Validates and stores the prefix, by the same rules.
    void SetSchemaPrefix(const wchar_t* prefix);
    /// The name. Never null; valid until changed.
    const wchar_t* GetSchemaName() const noexcept;
    /// The prefix. Never null; valid until changed.
    const wchar_t* GetSchemaPrefix() const noexcept;
    /// The name itself; what is written through it is not validated.
    std::wstring& SchemaName() noexcept;
    /// The prefix itself; what is written through it is not validated.
    std::wstring& SchemaPrefix() noexcept;
    /// Any text. An empty one counts as not set.
    /// @param label  not null (KAXMLInvalidArgument).
    void SetDisplayLabel(const wchar_t* label);
    /// The human-readable label, empty when not set. Never null; valid until changed.
    const wchar_t* GetDisplayLabel() const noexcept;
    /// A copy of the label.
    std::wstring DisplayLabel() const;
    /// Sets the version from "MM.mm"; see ParseVersionString, also for what a failure changes.
    void SetVersionString(const wchar_t* version);
    /// The version as "01.02".
    std::wstring VersionString() const;
    /// The namespace of the schema's instances, for example "Plant.01.02".
    std::wstring XmlNamespace() const;
    /// The name of the schema's file, for example "Plant.01.02.kaschema.xml".
    /// @throws KAXMLDomainError when the schema's name is not valid.
    std::wstring OfficialFilename() const;
    /// @}

    /// @name Rules of names and versions
    /// @{

    /// Reads "MM.mm", each part of 1 to 3 characters beginning with a number. `major` is set before
    /// the minor part is looked at.
    /// @throws KAXMLLogicError for null arguments or an empty text, KAXMLFormatError for another form.
    static void ParseVersionString(const wchar_t* version, std::uint32_t* major, std::uint32_t* minor);
    /// Sets `version` to the two numbers as "01.02".
    static void FormatVersionString(std::wstring& version, std::uint32_t major, std::uint32_t minor);
    /// Whether a name may name a schema: 1, or 0 without `throwOnError`.
    /// @throws KAXMLLogicError for null, always; KAXMLDomainError with `throwOnError`.
    static int SchemaNameIsValid(const wchar_t* name, int throwOnError);
    /// Splits "prefix:Name" at its first colon; without one the prefix becomes empty.
    /// @param fullName  not null (KAXMLInvalidArgument).
    /// @throws KAXMLFormatError for a leading colon; the outputs are then unchanged.
    static void ParseKaClassName(const wchar_t* fullName, std::wstring& prefix, std::wstring& className);
    /// 1 when the name is exactly one of the eight primitive types', else 0.
    /// @param typeName  not null (KAXMLInvalidArgument).
    static int IsPrimitiveType(const wchar_t* typeName);
    /// @}

    /// @name Classes
    /// Class types and masks are bits of KaClassType.
    /// @{

    /// Adds a class and takes ownership; null is ignored. The class becomes one of this schema's.
    /// A name that is taken gets a number appended (2, 3, ...), and a class goes before the first
    /// one that names it as base class. When the call throws, the caller still owns the class and
    /// nothing is changed.
    /// @throws KAXMLLogicError when the list holds the class already.
    void AddKaClass(CKaClass* kaClass);
    /// The same on the list of relationship classes; the class keeps the schema it has.
    void AddKaRelationshipClass(CKaRelationshipClass* relationshipClass);
    /// Makes a class and adds it (perhaps under a numbered name). @return owned by the schema.
    /// @param description  not null (KAXMLInvalidArgument).
    /// @throws KAXMLInvalidArgument for a class type that SetClassType refuses, KAXMLDomainError for
    ///         an invalid name; nothing is added then.
    CKaClass* CreateKaClass(const wchar_t* name, const wchar_t* description, unsigned long classType);
    /// The same for a relationship class.
    CKaRelationshipClass* CreateKaRelationshipClass(const wchar_t* name, const wchar_t* description,
                                                    unsigned long classType);
    /// How many classes the schema has of its own, without relationship classes.
    unsigned int GetKaClassCount() const noexcept;
    /// A class of the schema, in the order of its list.
    /// @param index  below the count (else KAXMLInvalidArgument). @return owned by the schema.
    CKaClass* GetKaClassByIndex(unsigned int index) const;
    /// How many relationship classes the schema has of its own.
    unsigned int GetKaRelationshipClassCount() const noexcept;
    /// A relationship class of the schema, in the order of its list.
    /// @param index  below the count (else KAXMLInvalidArgument). @return owned by the schema.
    CKaRelationshipClass* GetKaRelationshipClass(unsigned int index) const;
    /// The first class of exactly this name, here or in the referenced schemas (depth first), if it
    /// matches the mask; else null. Owned by its schema.
    /// @throws KAXMLRuntimeError for a null name when there are classes.
    CKaClass* FindKaClass(const wchar_t* name, unsigned long classTypeMask) const;
    /// The same for relationship classes.
    CKaRelationshipClass* FindKaRelationshipClass(const wchar_t* name, unsigned long classTypeMask) const;
    /// Calls back with each class in order, then, when asked, with those of the referenced schemas,
    /// depth first; returns the first result that is not null, else null. Classes must not be added
    /// or removed meanwhile.
    /// @param callback  not null (KAXMLInvalidArgument).
    void* IterateOverAllClasses(KaClassCallback callback, void* context, int includeReferencedSchemas) const;
    /// The same for relationship classes.
    void* IterateOverAllRelationshipClasses(KaRelationshipClassCallback callback, void* context,
                                            int includeReferencedSchemas) const;
    /// Deletes every class; relationship classes stay, those with a base class among the deleted
    /// ones keep its name only. Instances of the classes must be gone.
    void RemoveAllClasses() noexcept;
    /// @}

    /// @name Referenced schemas
    /// @{

    /// The schema of a reference; null behind the last one, or while it is not loaded.
    CKaSchema* GetReferencedSchema(unsigned long index) const noexcept;
    /// This schema when it has the name, else the first referenced one of the name whose version is
    /// the same, or of the same major and a higher minor number. Null when there is none.
    /// @param name     not null (KAXMLInvalidArgument).
    /// @param version  "MM.mm"; null for any version.
    /// @throws KAXMLLogicError for a version without a full stop.
    CKaSchema* FindReferencedSchema(const wchar_t* name, const wchar_t* version) const;
    /// This schema when it has the prefix, else the first directly referenced one under it, or null.
    /// @param prefix  not null (KAXMLInvalidArgument).
    CKaSchema* FindReferencedSchemaByPrefix(const wchar_t* prefix) const;
    /// FindKaClass in the schema of this prefix.
    /// @throws KAXMLLogicError for a null prefix, KAXMLDomainError for an unknown one.
    CKaClass* FindKaClassUsingPrefix(const wchar_t* className, const wchar_t* prefix,
                                     unsigned long classTypeMask) const;
    /// FindKaClass in the schema of this name.
    /// @throws KAXMLLogicError for a null schema name, KAXMLDomainError for an unknown one.
    CKaClass* FindKaClassUsingSchemaName(const wchar_t* className, const wchar_t* schemaName,
                                         unsigned long classTypeMask) const;
    /// FindKaClass of "Name", or FindKaClassUsingPrefix of "prefix:Name".
    /// @param fullName  not null (KAXMLInvalidArgument).
    /// @throws KAXMLFormatError for a leading colon, and as those two.
    CKaClass* FindKaClassUsingFullName(const wchar_t* fullName, unsigned long classTypeMask) const;
    /// FindKaClassUsingPrefix for relationship classes.
    CKaRelationshipClass* FindKaRelationshipClassUsingPrefix(const wchar_t* className, const wchar_t* prefix,
                                                             unsigned long classTypeMask) const;
    /// FindKaClassUsingSchemaName for relationship classes.
    CKaRelationshipClass* FindKaRelationshipClassUsingSchemaName(const wchar_t* className, const wchar_t* schemaName,
                                                                 unsigned long classTypeMask) const;
    /// FindKaClassUsingFullName for relationship classes.
    CKaRelationshipClass* FindKaRelationshipClassUsingFullName(const wchar_t* fullName,
                                                               unsigned long classTypeMask) const;
    /// The name by which this schema refers to a class: bare for its own, prefixed for others.
    /// @throws KAXMLLogicError for null, and for a class without a schema.
    std::wstring GetRelativeClassName(CKaClass* kaClass) const;
    /// The same for the class of this full name. @throws KAXMLFormatError when there is none.
    std::wstring GetRelativeClassName(const wchar_t* fullName) const;

    /// Installs a hook of the client, or none for null; a schema loaded as a referenced one starts
    /// without.
    void SetKaClassResolutionHelper(KaClassResolutionHelper helper) noexcept;
    /// The hook, null at first.
    KaClassResolutionHelper GetKaClassResolutionHelper() const noexcept;
    /// @copydoc SetKaClassResolutionHelper
    void SetKaRelationshipUpgradeHandler(KaRelationshipUpgradeHandler handler) noexcept;
    /// The hook, null at first.
    KaRelationshipUpgradeHandler GetKaRelationshipUpgradeHandler() const noexcept;
    /// @}

    /// @name Recycled values
    /// Primitive values that instances drop are kept for reuse, for the whole process, under one
    /// lock. These operations may be called on any thread. Anything that fails inside is reported
    /// as KAXMLRuntimeError.
    /// @{

    /// A null value with empty text for the property, owned by the caller: the one given back last,
    /// or a new one. @param property  not null.
    static CKaValue* GetRecycledKaValue(CKaProperty* property);
    /// Takes a value over; null is ignored. On failure (the value is held by an instance, an array
    /// or the pool, or there is no memory) the caller still owns it.
    static void RecycleKaValue(CKaValue* value);
    /// Deletes every value kept. A parse under way in any thread holds some, at most 1,024, of its own.
    static void FreeRecycledValues();
    /// @}

  private:
    friend class CKaReferencedSchemaIterator;
    friend class CKaSchemaReference;
    friend class ClassAdder;
    friend class ModelCopier;

    // Where a class of some name goes: before the first one that names it as its base class.
    struct PlaceInList {
        bool isNameTaken;
        std::size_t index;
    };
    template <typename Class> using Classes = std::vector<std::unique_ptr<Class>>;
    template <typename Class> KAXML_LOCAL static PlaceInList FindPlace(const Classes<Class>& classes,
                                                                       const Class* added, const std::wstring& name);
    template <typename Class> KAXML_LOCAL static void AddClass(Classes<Class>& classes, Class* added);

    KAXML_LOCAL void init(const std::wstring& name, const std::wstring& prefix);
    KAXML_LOCAL static void* findKaClassCallback(CKaClass* kaClass, void* context);
    KAXML_LOCAL static void* findKaRelationshipClassCallback(CKaRelationshipClass* relationshipClass, void* context);
    KAXML_LOCAL int ReadFile(const std::wstring& path, const SchemaDocument* referrer);
    KAXML_LOCAL void ReadRootAttributes(IXMLDOMNode* root);
    KAXML_LOCAL void DeleteReferencedSchemas() noexcept;

    std::wstring m_schemaName;
    std::wstring m_schemaPrefix;
    std::wstring m_displayLabel;
    std::uint32_t m_versionMajor = 0;
    std::uint32_t m_versionMinor = 0;
    std::wstring m_searchPath;
    KaRelationshipUpgradeHandler m_relationshipUpgradeHandler = nullptr;
    KaClassResolutionHelper m_classResolutionHelper = nullptr;
    std::vector<CKaSchemaReference> m_references;
    std::vector<std::unique_ptr<CKaClass>> m_classes;
    std::vector<std::unique_ptr<CKaRelationshipClass>> m_relationshipClasses;
    CKaSchema* m_nextToDelete = nullptr;
    const ClassAdder* m_adder = nullptr; // while a file is read
};

/// Walks a schema's own classes in order. Classes must not be added or removed meanwhile.
class KAXML_API CKaClassIterator {
  public:
    /// For the classes of this schema; to begin with Begin.
    /// @param schema  not null (KAXMLRuntimeError); referred to.
    explicit CKaClassIterator(CKaSchema* schema);

    /// The first class, or null.
    CKaClass* Begin();
    /// The class after that, or null past the last one; after Begin only.
    CKaClass* Next();

  private:
    CKaSchema* m_pKaSchema;
    unsigned int m_position = 0;
};

/// Walks a schema's references in order. The schema's list must not change meanwhile.
class KAXML_API CKaReferencedSchemaIterator {
  public:
    /// For the references of this schema; to begin with Begin.
    /// @param schema  not null (KAXMLRuntimeError); referred to.
    explicit CKaReferencedSchemaIterator(CKaSchema* schema);

    /// The schema's first reference (the entry itself), or null.
    CKaSchemaReference* Begin() noexcept;
    /// The reference after that, or null; after Begin only, and not once null was returned.
    CKaSchemaReference* Next() noexcept;

  private:
    CKaSchema* m_pKaSchema;
    CKaSchemaReference* m_pCurrent = nullptr;
};

} // namespace KAXML
