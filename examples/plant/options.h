#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace plant {

/// What the command line asks for.
struct Options {
    bool help = false;
    /// Unknown classes and properties fail the run instead of being skipped.
    bool strict = false;
    /// The sample data was asked for, not files of the user's.
    bool sample = false;
    std::vector<std::filesystem::path> schemaFiles;
    /// Where referenced schemas are searched for: directories separated by ";".
    std::wstring searchPath;
    std::filesystem::path instanceFile;
};

/// A command line that makes no sense; what() says why.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads the arguments behind the program's name. @throws UsageError.
Options ParseArguments(const std::vector<std::string>& arguments);

/// The text of --help.
const char* HelpText();

} // namespace plant
