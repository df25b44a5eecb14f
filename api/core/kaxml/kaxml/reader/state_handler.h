#pragma once

#include <kaxml/kaxml/core/same_name.h>
#include <kaxml/kaxml/reader/xml_attributes.h>
#include <kaxml/platform/xml_name.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace KAXML {

class CKAXMLSAXContentHandler;

/// What a handler answers to a start tag.
enum START_ACTION : int {
    STATUSQUO = 0,     ///< consumed; the stack stays
    PUSH = 4,          ///< push the next handler for what follows this tag
    PUSH_UNHANDLED = 5 ///< push the next handler and give it this tag
};

/// What a handler answers to an end tag.
enum END_ACTION : int {
    NOCHANGE = 0,      ///< consumed; the stack stays
    POP = 1,           ///< this handler is finished
    POP_UNHANDLED = 2, ///< this handler is finished, and the tag is for the one below
    REPLACE = 3        ///< this handler is finished, and the next handler takes its place
};

/// Understands one kind of element of instance documents. Handlers stand on the content handler's
/// stack, which owns them; every event goes to the top one, whose answer says how the stack changes.
///
/// The base keeps track of nesting: the first element it sees gives it its name, and it is finished
/// at that element's end tag.
class StateHandler {
  public:
    /// @param parent       the handler that made this one, for error paths and for the content
    ///                     handler; null for the root handler.
    /// @param elementName  may be empty until the first start tag; must outlive the handler.
    StateHandler(StateHandler* parent, const wchar_t* elementName);
    StateHandler(const StateHandler&) = delete;
    StateHandler& operator=(const StateHandler&) = delete;
    virtual ~StateHandler() = default;

    /// This handler's part of an error path: "." and the element's name.
    virtual std::wstring PathSegment() const;
    /// @param nextHandler  empty; to be set with PUSH and PUSH_UNHANDLED.
    virtual START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                                      std::unique_ptr<StateHandler>& nextHandler);
    /// @param text  not null-terminated.
    virtual void Characters(const wchar_t* text, std::size_t length);
    /// @param nextHandler  empty; to be set with REPLACE.
    virtual END_ACTION EndElement(const XmlName& name, std::unique_ptr<StateHandler>& nextHandler);

    /// Whether Characters would make use of a text that comes next.
    bool WantsCharacters() const noexcept { return m_collectsCharacters && m_depth > 0; }
    /// Makes the handler ready for the next of several sibling elements.
    void Reset() noexcept {
        m_chars.clear();
        m_elementName = {};
        m_depth = 0;
    }
    /// @throws KAXMLRuntimeError when there is none.
    CKAXMLSAXContentHandler& GetSaxHandler() const;
    /// Takes note of a start tag. @throws KAXMLFormatError for an unexpected element.
    void TrackStart(std::wstring_view localName) {
        ++m_depth;
        if (m_elementName.empty())
            m_elementName = localName;
        else if (m_depth == 1 && !IsSameName(m_elementName, localName))
            ThrowUnexpectedStart();
    }
    /// Takes note of an end tag and answers what it means for this handler.
    END_ACTION TrackEnd(std::wstring_view localName) {
        if (--m_depth != 0)
            return m_depth < 0 ? POP_UNHANDLED : NOCHANGE;
        if (!IsSameName(m_elementName, localName))
            ThrowUnexpectedEnd();
        return POP;
    }
    /// The message with the path of elements in front.
    std::wstring FormatPathMessage(const std::wstring& message) const;

  protected:
    StateHandler* m_pParent;
    CKAXMLSAXContentHandler* m_pSaxHandler;
    std::wstring m_chars;
    std::wstring_view m_elementName; // of the names that live as long as the parse
    std::int32_t m_depth = 0;
    bool m_collectsCharacters = false; // within the elements that it keeps track of

  private:
    [[noreturn]] void ThrowUnexpectedStart() const;
    [[noreturn]] static void ThrowUnexpectedEnd();
};

/// Swallows an element with everything in it. Pushed with PUSH_UNHANDLED.
class IgnoringElement : public StateHandler {
  public:
    explicit IgnoringElement(StateHandler* parent);
};

/// The handlers in force, the innermost on top.
class StateStack {
  public:
    void Push(std::unique_ptr<StateHandler> handler) { m_handlers.push_back(std::move(handler)); }
    /// Destroys the top handler.
    void Pop() noexcept { m_handlers.pop_back(); }
    /// Null when the stack is empty or holds nothing on top.
    StateHandler* Top() const noexcept { return m_handlers.empty() ? nullptr : m_handlers.back().get(); }
    std::size_t Size() const noexcept { return m_handlers.size(); }
    ~StateStack();

  private:
    std::vector<std::unique_ptr<StateHandler>> m_handlers;
};

} // namespace KAXML
