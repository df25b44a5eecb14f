#pragma once

#include "support/instance_recorder.h"
#include "support/model_compare.h"

#include <algorithm>

/// What the fuzz targets share. They check with the tests' EXPECT_..., which here ends the program.
namespace KAXML::Fuzz {

/// The bytes of one input, taken from the front; zeros follow its end.
struct Bytes {
    std::string_view rest;

    unsigned Next() { return rest.empty() ? 0 : static_cast<unsigned char>(Take(1).front()); }
    unsigned Below(std::size_t limit) { return Next() % static_cast<unsigned>(limit); }
    std::string Take(std::size_t count) {
        const std::string taken(rest.substr(0, count));
        rest.remove_prefix(taken.size());
        return taken;
    }
};

/// Runs a call and returns whether it did not fail. The library's own exceptions are the only ones
/// it may throw; nothing catches others.
template <typename Call> bool Succeeds(Call call) {
    try {
        return call(), true;
    } catch (const KAXMLException& error) {
        EXPECT_STRNE(error.Message(), L"");
        return false;
    }
}

/// A folder of this process.
inline const Test::TemporaryFolder& Folder() {
    static const Test::TemporaryFolder folder;
    return folder;
}

/// A schema that a file is to fill. It finds the schemas of the tests, and files in Folder().
inline CKaSchema NewSchema() {
    CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(WideFromUtf8(KAXML_TEST_DATA_DIR "/schemas/referenced;" + Folder().Path().string()).c_str());
    return schema;
}

/// The bytes of a model's file; none when it cannot be written.
inline std::string Written(const CKaSchema& model) {
    const std::wstring path = Folder().Write("written", "");
    try {
        Succeeds([&] { EXPECT_EQ(model.WriteXML(path.c_str()), 0); });
    } catch (const _com_error&) { // a text holds what XML cannot
    }
    return Test::BytesOf(Folder() / "written");
}

/// What a model is written as reads back unless the writer warns that it cannot be read. Without any
/// warning it is the same model. It is written again as the same bytes; with a warning that is so
/// for a model that came from a file, unless the warning is of a value that does not come back: a file
/// has one where a comment is all that its element holds.
inline void CheckWriting(CKaSchema& model, bool isFromFile) {
    const Test::LogRecorder log;
    const std::string written = Written(model);
    const std::vector<std::wstring> warnings = log.Messages(LOG_WARNING);
    // A text that was cut may have ended with anything.
    const auto isAnyOf = [&warnings](const wchar_t* problem) {
        return std::any_of(warnings.begin(), warnings.end(), [problem](const std::wstring& text) {
            return text.find(problem) != text.npos || text.size() == 2047;
        });
    };
    if (written.empty() || isAnyOf(L"cannot be read"))
        return;
    CKaSchema back = NewSchema();
    EXPECT_TRUE(Succeeds([&] { EXPECT_EQ(back.ReadXML(Folder().Write("written", written).c_str()), 0); })) << written;
    const bool mayDiffer = isFromFile ? isAnyOf(L"does not come back") : !warnings.empty();
    EXPECT_TRUE(Written(back) == written || mayDiffer) << written;
    EXPECT_EQ(warnings.empty() ? Test::FirstDifference(model, back) : "", "");
}

} // namespace KAXML::Fuzz

/// Runs one input; afterwards nothing may be left of it. Nothing catches what a failure throws.
#define KAXML_FUZZ_TARGET(run)                                                                                         \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {                                \
        GTEST_FLAG_SET(throw_on_failure, true);                                                                        \
        KAXML::Fuzz::Bytes input{{reinterpret_cast<const char*>(data), size}};                                         \
        run(input);                                                                                                    \
        return KAXML::CKaSchema::FreeRecycledValues(), 0;                                                              \
    }
