#pragma once

#include <kaxml/platform/export.h>
#include <kaxml/platform/guid.h>

#include <string>

/// @file
/// Identifiers and temporary file names. The functions keep no state and may run on several
/// threads at once.

namespace KAXML {

/// Fills `guid` with a new random GUID.
/// @param guid  not null (KAXMLInvalidArgument).
/// @throws KAXMLRuntimeError when the system gives no random numbers.
KAXML_API void GenerateGUID(GUID* guid);

/// A new GUID as 36 lowercase characters in groups 8-4-4-4-12.
/// @throws KAXMLRuntimeError when none can be made.
KAXML_API std::wstring CreateGuid();

/// Sets `output` to an identifier for an instance: the class name coded as an element name, "-",
/// and "VelInstanceID-" with the number when it is 1 or more, else a new GUID.
/// @param className  not null (KAXMLInvalidArgument).
/// @param number     a 32-bit value (else KAXMLInvalidArgument).
/// @param output     unchanged when the call throws.
KAXML_API void GenerateKaInstanceXMLIdentifier(const wchar_t* className, long number, std::wstring& output);

/// Sets `output` to the path of a new file in the directory for temporary files (TMPDIR, else
/// /tmp): a new GUID and the suffix. Nothing is created on disk.
/// @param suffix  not null (KAXMLInvalidArgument).
/// @throws KAXMLRuntimeError when no GUID can be made; `output` is then unchanged.
KAXML_API void CreateTempFileName(const wchar_t* suffix, std::wstring& output);

/// Makes identifiers for new instances. A class keeps the strategy it was constructed with; it
/// neither owns nor calls it, so the threads that may use one are up to the derived class.
class KAXML_API CIDGenerationStrategy {
  public:
    CIDGenerationStrategy() noexcept = default;
    CIDGenerationStrategy(const CIDGenerationStrategy&) noexcept {}
    CIDGenerationStrategy(CIDGenerationStrategy&&) noexcept {}
    CIDGenerationStrategy& operator=(const CIDGenerationStrategy&) noexcept { return *this; }
    CIDGenerationStrategy& operator=(CIDGenerationStrategy&&) noexcept { return *this; }

    /// A new identifier.
    virtual std::wstring GetNextID() = 0;

  protected:
    ~CIDGenerationStrategy() = default;
};

/// Makes identifiers that are GUIDs. Objects hold no data and may be used on several threads.
class KAXML_API CGUIDGenerator final : public CIDGenerationStrategy {
  public:
    /// A new GUID in text form. @throws KAXMLRuntimeError when none can be made.
    std::wstring GetNextID() override;
};

} // namespace KAXML
