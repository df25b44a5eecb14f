#pragma once

#include <kaxml/platform/export.h>

#include <string>

/// @file
/// Reading instance documents. The document is streamed: each finished instance is handed to a
/// callback and destroyed when it returns, so memory stays bounded by the largest single instance.
///
/// @code
/// int Instance(KAXML::CKaSchema*, void*, KAXML::CKaInstance* instance) { ...; return 0; }
/// int Relationship(KAXML::CKaSchema*, void*, KAXML::KaRelationshipInstance* relationship) { ...; return 0; }
///
/// KAXML::CKaSchemaInstanceFactory factory(&schema); // finds the classes by the elements' names
/// KAXML::ParseKaInstanceXML(1, L"plant.kainstance.xml", &schema, nullptr, nullptr, &Instance, &Relationship,
///                           nullptr, nullptr, nullptr, &factory, 0);
/// @endcode
///
/// The same with lambdas: parse_callables.h.

namespace KAXML {

class CKaInstance;
class CKaSchema;
class KaRelationshipInstance;
class XMLAttributes;

/// @name Callbacks
/// Each gets the schema and the caller's context first. A nonzero result ends the parse with
/// KAXMLRuntimeError. What a callback throws ends it and reaches the caller of the parse unchanged,
/// except that a `_com_error` arrives as KAXMLRuntimeError with its texts. They run on the parsing
/// thread.
/// @{

/// Called at the root's start tag with its "scope" attribute (empty when absent) and attributes.
typedef int (*kaInstanceXMLParseBegin)(CKaSchema* schema, void* context, const wchar_t* scope,
                                       XMLAttributes* attributes);
/// Called with each finished instance, which is destroyed when the call returns: keep a copy.
typedef int (*parsedKaInstanceCallback)(CKaSchema* schema, void* context, CKaInstance* instance);
/// Called with each finished relationship, which is destroyed when the call returns.
typedef int (*parsedKaRelationshipCallback)(CKaSchema* schema, void* context, KaRelationshipInstance* relationship);
/// Called at the start (`isStart` true) and end of a "Project" element; attributes are null at the
/// end.
typedef int (*projectElementCallback)(CKaSchema* schema, void* context, bool isStart, const wchar_t* elementName,
                                      XMLAttributes* attributes);
/// Called at the root's end tag.
typedef int (*kaInstanceXMLParseEnd)(CKaSchema* schema, void* context);
/// Called once with the report of a document that is refused.
typedef void (*parseErrorCallback)(const wchar_t* report, void* context);
/// @}

/// Decides which instance an element becomes. Implemented by the client; the library never
/// destroys a factory. It is called on the parsing thread.
class KAXML_API IKaInstanceFactory {
  public:
    IKaInstanceFactory() noexcept = default;
    IKaInstanceFactory(const IKaInstanceFactory&) noexcept {}
    IKaInstanceFactory(IKaInstanceFactory&&) noexcept {}
    IKaInstanceFactory& operator=(const IKaInstanceFactory&) noexcept { return *this; }
    IKaInstanceFactory& operator=(IKaInstanceFactory&&) noexcept { return *this; }

    /// A new instance for an element, made with `new` and with its class set; the reader owns it
    /// from here on. Null when the element's class is unknown.
    /// @param namespaceUri,className  the element's namespace and local name; never null, valid
    ///                                during the call.
    /// @param isRelationship          0 when called; to be set to 1 for a KaRelationshipInstance.
    virtual CKaInstance* CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className,
                                          int* isRelationship) = 0;

  protected:
    ~IKaInstanceFactory() = default;
};

/// Flags of a parse.
enum KaParseFlags : unsigned int {
    /// An element whose class the factory does not know is logged and skipped.
    SKIP_UNRECOGNIZED_CLASSES = 1,
    /// A property element that the class does not have is logged and skipped.
    IGNORE_UNRECOGNIZED_PROPERTIES = 2
};

/// Reads an instance document and returns 0, or throws. Instances delivered before a failure stay
/// delivered; no callback but `error` is called after it.
///
/// Several threads may parse at once, each with its own schema, factory and context.
///
/// @param isUrl      nonzero: `xmlSource` is a path or `file:` URL; 0: it is the document's text.
/// @param xmlSource  not null (KAXMLInvalidArgument).
/// @param schema     handed to the callbacks; not null (KAXMLInvalidArgument).
/// @param context    handed to the callbacks unchanged.
/// @param begin,project,end,error  may be null.
/// @param instance,relationship    not null (KAXMLInvalidArgument).
/// @param factory    needed for every document with an element under the root (KAXMLRuntimeError);
///                   must outlive the call.
/// @param flags      bits of KaParseFlags.
/// @throws KAXMLRuntimeError for a document that is not well formed, nests structs deeper than
///         1,000 levels, or cannot be opened ("ParseKaInstanceXML: COM Error: ..."), for an unknown
///         class and for a callback that returned nonzero; KAXMLFormatError for another version of
///         the format, an unknown property or a wrong array member; whatever a callback or the
///         factory throws, a `_com_error` as KAXMLRuntimeError ("ParseKaInstanceXML: COM Error: ...").
KAXML_API int ParseKaInstanceXML(int isUrl, const wchar_t* xmlSource, CKaSchema* schema, void* context,
                                 kaInstanceXMLParseBegin begin, parsedKaInstanceCallback instance,
                                 parsedKaRelationshipCallback relationship, projectElementCallback project,
                                 kaInstanceXMLParseEnd end, parseErrorCallback error, IKaInstanceFactory* factory,
                                 unsigned int flags);

} // namespace KAXML
