#pragma once

#include <kaxml/kaschemaxml/instance/recycled_values.h>
#include <kaxml/kaxml/reader/default_handlers.h>
#include <kaxml/kaxml/reader/known_properties.h>
#include <kaxml/kaxml/reader/known_structs.h>
#include <kaxml/kaxml/reader/parse.h>
#include <kaxml/kaxml/reader/spare_strings.h>
#include <kaxml/kaxml/reader/state_handler.h>

namespace KAXML {

/// The client's callbacks of one parse.
struct ParseCallbacks {
    kaInstanceXMLParseBegin parseBegin = nullptr;
    parsedKaInstanceCallback parsedInstance = nullptr;
    parsedKaRelationshipCallback parsedRelationship = nullptr;
    projectElementCallback projectElement = nullptr;
    kaInstanceXMLParseEnd parseEnd = nullptr;
};

/// Gives every event of the parser to the handler on top of a stack, and changes the stack as the
/// handler answers. Also holds what the handlers of one parse share.
class CKAXMLSAXContentHandler : public CDefaultSAXContentHandler {
  public:
    /// @throws KAXMLInvalidArgument for a null instance or relationship callback or schema.
    CKAXMLSAXContentHandler(CKaSchema* schema, void* context, const ParseCallbacks& callbacks, unsigned int parseFlags);
    ~CKAXMLSAXContentHandler() override;

    HRESULT raw_startElement(const XmlName& name, ISAXAttributes* attributes) override;
    HRESULT raw_endElement(const XmlName& name) override;
    HRESULT raw_characters(const wchar_t* text, std::size_t length) override;

    /// Whether the character data that follows is of use to the handler on top. Half of all, the white
    /// space between elements, is not, and need not be converted.
    const bool& WantsCharacters() const noexcept { return m_wantsCharacters; }

    /// @throws KAXMLLogicError when there is none.
    StateStack& GetStateStack() const {
        if (!m_pStateStack)
            ThrowNoStack();
        return *m_pStateStack;
    }

    int GetImportedCount() const noexcept { return m_importedCount; }
    void IncrementImportedCount() noexcept { ++m_importedCount; }
    bool HasFlag(KaParseFlags flag) const noexcept { return (m_parseFlags & flag) != 0; }
    void SetKaInstanceFactory(IKaInstanceFactory* factory) noexcept { m_pKaInstanceFactory = factory; }
    IKaInstanceFactory* GetKaInstanceFactory() const noexcept { return m_pKaInstanceFactory; }
    CKaSchema* GetKaSchema() const noexcept { return m_pKaSchema; }
    const ParseCallbacks& Callbacks() const noexcept { return m_callbacks; }
    void* Context() const noexcept { return m_context; }

    /// Count the struct values that are open inside each other.
    /// @throws XmlRefusal past kMaxNesting of them.
    void EnterStruct();
    void LeaveStruct() noexcept { --m_openStructs; }

    /// The properties that the document has named.
    KnownProperties& Properties() noexcept { return m_properties; }

    /// Makes the document's struct values.
    KnownStructs& Structs() noexcept { return m_structs; }

    /// Where handlers take primitive values from.
    ValueStock& Stock() noexcept { return m_stock; }

    /// The room that handlers pass on to each other.
    SpareStrings& Strings() noexcept { return m_spareStrings; }

  private:
    /// @throws KAXMLRuntimeError, naming the operation, when there is none.
    StateHandler& Top(const wchar_t* operation) const {
        StateHandler* const top = GetStateStack().Top();
        if (top == nullptr)
            ThrowNoTop(operation);
        return *top;
    }
    [[noreturn]] static void ThrowNoTop(const wchar_t* operation);
    StateHandler& Obey(START_ACTION action, std::unique_ptr<StateHandler>& next, const XmlName& name,
                       XMLAttributes& attributes);
    StateHandler* Obey(END_ACTION action, std::unique_ptr<StateHandler>& next, const XmlName& name);
    StateHandler* Push(std::unique_ptr<StateHandler> handler) {
        m_pStateStack->Push(std::move(handler));
        return m_pStateStack->Top();
    }
    [[noreturn]] static void ThrowNoStack();

    // In front, because the handlers on the stack use them to their end.
    SpareStrings m_spareStrings;
    KnownProperties m_properties;
    KnownStructs m_structs;
    ValueStock m_stock;

    std::int32_t m_importedCount = 0;
    std::unique_ptr<StateStack> m_pStateStack;
    std::uint32_t m_parseFlags;
    IKaInstanceFactory* m_pKaInstanceFactory = nullptr;
    CKaSchema* m_pKaSchema;
    ParseCallbacks m_callbacks;
    void* m_context;
    int m_openStructs = 0;
    bool m_wantsCharacters = false;
};

} // namespace KAXML
