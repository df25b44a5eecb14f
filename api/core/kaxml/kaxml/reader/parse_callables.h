#pragma once

#include <kaxml/kaxml/reader/parse.h>

#include <functional>

/// @file
/// Reading instance documents with C++ callables, lambdas above all, in the place of functions and a
/// context pointer.
///
/// @code
/// double power = 0;
/// KAXML::KaParseCallables callables;
/// callables.instance = [&power](KAXML::CKaInstance& instance) {
///     double value = 0;
///     if (instance.GetPropertyValue(L"Power", false) != nullptr)
///         instance.GetPropertyValue(L"Power", &value);
///     power += value;
/// };
/// KAXML::ParseKaInstanceFile(L"plant.kainstance.xml", &schema, callables);
/// @endcode

namespace KAXML {

/// What is called during a parse; see the callbacks of parse.h, which these stand for. Each may be
/// empty: what it would have been told is then passed over, also instances and relationships.
///
/// They run on the parsing thread. What one throws ends the parse and reaches the caller of the parse
/// unchanged, except that a `_com_error` arrives as KAXMLRuntimeError. That is also the way to stop
/// early.
struct KaParseCallables {
    /// At the root's start tag, with its "scope" attribute (never null, empty when absent) and its
    /// attributes, which are valid during the call.
    std::function<void(const wchar_t* scope, const XMLAttributes& attributes)> begin;
    /// With each finished instance, which is destroyed when the call returns: keep a copy.
    std::function<void(CKaInstance& instance)> instance;
    /// With each finished relationship, which is destroyed when the call returns.
    std::function<void(KaRelationshipInstance& relationship)> relationship;
    /// At the start tag of a "Project" element, with its attributes.
    std::function<void(const XMLAttributes& attributes)> projectBegin;
    /// At the end tag of a "Project" element.
    std::function<void()> projectEnd;
    /// At the root's end tag.
    std::function<void()> end;
    /// Once with the report of a document that is refused (never null), before the parse throws.
    std::function<void(const wchar_t* report)> error;
};

/// Reads the instance document in a file, as ParseKaInstanceXML does. Instances delivered before a
/// failure stay delivered.
///
/// @param path       a path or `file:` URL; not null (KAXMLInvalidArgument).
/// @param schema     not null (KAXMLInvalidArgument).
/// @param callables  used during the call only; must not be changed meanwhile.
/// @param factory    must outlive the call; null for a CKaSchemaInstanceFactory of the schema.
/// @param flags      bits of KaParseFlags.
/// Throws as ParseKaInstanceXML.
KAXML_API void ParseKaInstanceFile(const wchar_t* path, CKaSchema* schema, const KaParseCallables& callables,
                                   IKaInstanceFactory* factory = nullptr, unsigned int flags = 0);

/// The same for a document given as text. @param xml  not null (KAXMLInvalidArgument).
KAXML_API void ParseKaInstanceText(const wchar_t* xml, CKaSchema* schema, const KaParseCallables& callables,
                                   IKaInstanceFactory* factory = nullptr, unsigned int flags = 0);

} // namespace KAXML
