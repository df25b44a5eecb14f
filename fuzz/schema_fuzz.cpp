#include "oracles.h"

/// Any bytes as a schema file: read, written, read and written again. A first byte that does not
/// begin a document is the size of slices. What a failed read left is a model too.
namespace KAXML::Fuzz {

void ReadAndWrite(Bytes& input) {
    InputSliceSize() = input.rest.starts_with('<') ? 4096 : 1 + input.Next();
    CKaSchema schema = NewSchema();
    // Under a name by which it can reference itself.
    const std::wstring path = Folder().Write("Self.01.00.kaschema.xml", std::string(input.rest));
    Succeeds([&] { schema.ReadXML(path.c_str()); });
    CheckWriting(schema, true);
    CheckWriting(*std::make_unique<CKaSchema>(schema), true);
}

} // namespace KAXML::Fuzz

KAXML_FUZZ_TARGET(KAXML::Fuzz::ReadAndWrite)
