#include "memory_probe.h"

#include "child_process.h"
#include "client.h"
#include "pugixml_client.h"
#include "raw_parser.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace bench {
namespace {

// A child's ru_maxrss begins with its parent's memory; this counter begins with the program.
double PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::stod(line.substr(6)) * 1024;
    throw std::runtime_error("this system does not tell the peak of a process's memory");
}

// Starts this program again with its output going into the pipe.
pid_t Spawn(std::string arguments[4], const int (&pipe)[2]) {
    char* const argv[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(), arguments[3].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipe[0]);
    pid_t child = 0;
    const int error = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipe[1]);
    return error == 0 ? child : -1;
}

} // namespace

double MeasurePeakMemory(const Probe& probe) {
    std::string arguments[] = {"probe", "--probe=" + probe.client, "--schema=" + probe.schema.string(),
                               "--document=" + probe.document.string()};
    int pipe[2];
    if (::pipe(pipe) != 0)
        throw std::runtime_error("cannot make a pipe");
    const pid_t child = Spawn(arguments, pipe);
    return std::stod(OutputOf(child, pipe[0]));
}

int RunProbe(const Probe& probe) {
    if (probe.client == "ours")
        Client(probe.schema).ParseFile(probe.document);
    else if (probe.client == "raw")
        RawParse(probe.document);
    else
        PugixmlParse(probe.document);
    std::cout << std::to_string(PeakMemory()) << '\n';
    return 0;
}

} // namespace bench
