#pragma once

#include "memory_probe.h"

#include <filesystem>
#include <optional>
#include <string>

namespace bench {

struct Options {
    bool isHelp = false;
    bool isSmall = false;
    bool isKept = false;
    bool usesCpuTime = false;
    int repetitions = 7;
    std::string filter;
    std::filesystem::path folder = std::filesystem::temp_directory_path();
    std::optional<Probe> probe;
};

/// What the program's arguments mean. @throws std::invalid_argument with a text for the user.
Options ParseOptions(int argc, const char* const* argv);

/// How to call the program.
const char* Usage() noexcept;

} // namespace bench
