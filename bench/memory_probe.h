#pragma once

#include <filesystem>
#include <string>

namespace bench {

/// One parse in a process of its own: which client, with what.
struct Probe {
    std::string client; ///< "ours", "raw" or "pugixml"
    std::filesystem::path schema;
    std::filesystem::path document;
};

/// Runs the probe in a child process and returns the peak of its memory in bytes.
/// @throws std::runtime_error when the child fails.
double MeasurePeakMemory(const Probe& probe);

/// What the child does: parses, then prints its peak. Returns the exit code.
int RunProbe(const Probe& probe);

} // namespace bench
