#include <kaxml/kaxml/reader/parse_callables.h>

#include <kaxml/kaxml/reader/schema_instance_factory.h>

namespace KAXML {

namespace {

template <typename Function, typename... Arguments> int Call(const Function& function, Arguments&&... arguments) {
    if (function)
        function(std::forward<Arguments>(arguments)...);
    return 0;
}

const KaParseCallables& Of(const void* context) { return *static_cast<const KaParseCallables*>(context); }

int Begin(CKaSchema*, void* context, const wchar_t* scope, XMLAttributes* attributes) {
    return Call(Of(context).begin, scope, *attributes);
}

int Instance(CKaSchema*, void* context, CKaInstance* instance) { return Call(Of(context).instance, *instance); }

int Relationship(CKaSchema*, void* context, KaRelationshipInstance* relationship) {
    return Call(Of(context).relationship, *relationship);
}

int Project(CKaSchema*, void* context, bool isStart, const wchar_t*, XMLAttributes* attributes) {
    return isStart ? Call(Of(context).projectBegin, *attributes) : Call(Of(context).projectEnd);
}

int End(CKaSchema*, void* context) { return Call(Of(context).end); }

void Error(const wchar_t* report, void* context) { Call(Of(context).error, report); }

void Parse(int isUrl, const wchar_t* source, CKaSchema* schema, const KaParseCallables& callables,
           IKaInstanceFactory* factory, unsigned int flags) {
    // The context of callbacks is a pointer to what may be changed; nothing here changes it.
    void* const context = const_cast<KaParseCallables*>(&callables);
    ParseKaInstanceXML(isUrl, source, schema, context, &Begin, &Instance, &Relationship, &Project, &End, &Error,
                       factory, flags);
}

void ParseWithFactory(int isUrl, const wchar_t* source, CKaSchema* schema, const KaParseCallables& callables,
                      IKaInstanceFactory* factory, unsigned int flags) {
    if (factory != nullptr)
        return Parse(isUrl, source, schema, callables, factory, flags);
    CKaSchemaInstanceFactory ownFactory(schema);
    Parse(isUrl, source, schema, callables, &ownFactory, flags);
}

} // namespace

void ParseKaInstanceFile(const wchar_t* path, CKaSchema* schema, const KaParseCallables& callables,
                         IKaInstanceFactory* factory, unsigned int flags) {
    ParseWithFactory(1, path, schema, callables, factory, flags);
}

void ParseKaInstanceText(const wchar_t* xml, CKaSchema* schema, const KaParseCallables& callables,
                         IKaInstanceFactory* factory, unsigned int flags) {
    ParseWithFactory(0, xml, schema, callables, factory, flags);
}

} // namespace KAXML
