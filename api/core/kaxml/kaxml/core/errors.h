#pragma once

#include <kaxml/platform/export.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

/// @file
/// What the library throws. The class of an exception says what kind of failure it was:
///
/// | Class                  | Kind of failure                                                     |
/// |------------------------|---------------------------------------------------------------------|
/// | KAXMLInvalidArgument   | a required argument is null or outside what the operation accepts   |
/// | KAXMLLogicError        | the operation cannot be done in the object's present state          |
/// | KAXMLDomainError       | a name is blank, missing from the model, or already taken           |
/// | KAXMLFormatError       | a text or document breaks the rules of its format                   |
/// | KAXMLRuntimeError      | the environment, a collaborator or a client's callback failed       |
///
/// @code
/// try {
///     KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
///     schema.ReadXML(L"Plant.01.00.kaschema.xml");
/// } catch (const KAXML::KAXMLFormatError& error) {   // the file is no schema
///     Report(error.Message());
/// } catch (const KAXML::KAXMLException& error) {     // anything else the library throws
///     Report(error.Message());
/// }
/// @endcode
///
/// Exceptions are thrown by value and caught by reference. Besides these classes only `_com_error`
/// (a failing XML service), the standard allocation failure and whatever a client's own callback
/// throws can leave the library.

namespace KAXML {

/// The base of everything the library throws on its own account. Not derived from the standard
/// library's exception class.
///
/// Constructing one sends its text to the logging callback, once, with severity LOG_ERROR and
/// category "Exception". Copies are not logged. One object may be read by several threads.
class KAXML_API KAXMLException {
  public:
    /// Stores the texts and logs them.
    /// @param message   what went wrong.
    /// @param location  where; often empty.
    /// @throws std::bad_alloc when the texts cannot be stored.
    explicit KAXMLException(std::wstring message, std::wstring location = std::wstring());
    /// Copies message, location and code.
    KAXMLException(const KAXMLException& other);
    /// Copies message, location and code; a failing copy leaves this object as it was.
    KAXMLException& operator=(const KAXMLException& other);
    virtual ~KAXMLException();

    /// The message. Never null; valid while the exception lives.
    const wchar_t* Message() const noexcept;
    /// The location text, often empty. Never null; valid while the exception lives.
    const wchar_t* Location() const noexcept;

  protected:
    /// Gives an object of a subclass its code, 1.
    void SetSubclassCode() noexcept;

  private:
    std::unique_ptr<std::pair<std::wstring, std::wstring>> m_pText;
    std::int32_t m_code;
};

/// The operation cannot be done in the object's present state.
class KAXML_API KAXMLLogicError : public KAXMLException {
  public:
    /// @copydoc KAXMLException::KAXMLException(std::wstring, std::wstring)
    explicit KAXMLLogicError(std::wstring message, std::wstring location = std::wstring());
    KAXMLLogicError(const KAXMLLogicError& other);
    KAXMLLogicError& operator=(const KAXMLLogicError& other);
    ~KAXMLLogicError() override;
};

/// A name is blank, missing from the model, or already taken.
class KAXML_API KAXMLDomainError : public KAXMLException {
  public:
    /// @copydoc KAXMLException::KAXMLException(std::wstring, std::wstring)
    explicit KAXMLDomainError(std::wstring message, std::wstring location = std::wstring());
    KAXMLDomainError(const KAXMLDomainError& other);
    KAXMLDomainError& operator=(const KAXMLDomainError& other);
    ~KAXMLDomainError() override;
};

/// A text or document breaks the rules of its format.
class KAXML_API KAXMLFormatError : public KAXMLDomainError {
  public:
    /// @copydoc KAXMLException::KAXMLException(std::wstring, std::wstring)
    explicit KAXMLFormatError(std::wstring message, std::wstring location = std::wstring());
    KAXMLFormatError(const KAXMLFormatError& other);
    KAXMLFormatError& operator=(const KAXMLFormatError& other);
    ~KAXMLFormatError() override;
};

/// A required argument is null, or an argument is outside what the operation accepts.
class KAXML_API KAXMLInvalidArgument : public KAXMLException {
  public:
    /// @copydoc KAXMLException::KAXMLException(std::wstring, std::wstring)
    explicit KAXMLInvalidArgument(std::wstring message, std::wstring location = std::wstring());
    KAXMLInvalidArgument(const KAXMLInvalidArgument& other);
    KAXMLInvalidArgument& operator=(const KAXMLInvalidArgument& other);
    ~KAXMLInvalidArgument() override;
};

/// The environment, a collaborator or a client's callback failed.
class KAXML_API KAXMLRuntimeError : public KAXMLException {
  public:
    /// @copydoc KAXMLException::KAXMLException(std::wstring, std::wstring)
    explicit KAXMLRuntimeError(std::wstring message, std::wstring location = std::wstring());
    KAXMLRuntimeError(const KAXMLRuntimeError& other);
    KAXMLRuntimeError& operator=(const KAXMLRuntimeError& other);
    ~KAXMLRuntimeError() override;
};

} // namespace KAXML
