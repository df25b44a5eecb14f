#include "child_process.h"

#include <exception>
#include <iostream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {
namespace {

std::string ReadAll(int descriptor) {
    std::string text;
    char buffer[256];
    for (ssize_t count = 0; (count = read(descriptor, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(count));
    return text;
}

bool WriteAll(int descriptor, const std::string& text) {
    std::size_t written = 0;
    for (ssize_t count = 0; written < text.size(); written += static_cast<std::size_t>(count))
        if ((count = write(descriptor, text.data() + written, text.size() - written)) < 0)
            return false;
    return true;
}

int ExitCodeOf(const std::function<std::string()>& function, int descriptor) {
    try {
        return WriteAll(descriptor, function()) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "kaxml_bench: " << error.what() << '\n';
        return 1;
    }
}

} // namespace

std::string RunInCopy(const std::function<std::string()>& function) {
    int pipe[2];
    if (::pipe(pipe) != 0)
        throw std::runtime_error("cannot make a pipe");
    std::cout.flush();
    const pid_t child = fork();
    if (child == 0)
        _exit(ExitCodeOf(function, pipe[1])); // what this process owns stays for the first one to clear up
    close(pipe[1]);
    return OutputOf(child, pipe[0]);
}

std::string OutputOf(pid_t child, int descriptor) {
    std::string output = ReadAll(descriptor);
    close(descriptor);
    int status = -1;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("a process that measures failed");
    return output;
}

} // namespace bench
