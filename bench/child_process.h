#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

namespace bench {

/// Runs a function in a copy of this process and returns the text that it returned there.
/// @throws std::runtime_error when it throws, which is printed, or the copy fails.
std::string RunInCopy(const std::function<std::string()>& function);

/// Reads a child's output to the end, closes the descriptor and waits for the child.
/// @throws std::runtime_error when it failed, or `child` is negative.
std::string OutputOf(pid_t child, int descriptor);

} // namespace bench
