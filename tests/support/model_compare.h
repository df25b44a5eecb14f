#pragma once

#include <kaxml/kaxml.h>

#include <memory>
#include <string>

namespace KAXML::Test {

/// Where two models first differ, as the path to the place and what either has there; empty when
/// they are equal. Everything that schema files carry counts, in order, referenced schemas included.
/// Of pointers between parts of a model it counts which part of the same model they lead to.
std::string FirstDifference(CKaSchema& expected, CKaSchema& found);

/// A new model from a schema file. The test fails when the file is answered with a status.
std::unique_ptr<CKaSchema> ReadModel(const std::wstring& path, const std::wstring& searchPath = L"");

} // namespace KAXML::Test
