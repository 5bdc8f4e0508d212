// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <iostream>

#include "host/Zubprint.h"

namespace {

// No file of this process is to become a standard stream that was closed: reading and writing
// there fails as before.
void KeepStandardStreams() {
    for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // The lowest free number is this one.
            static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    KeepStandardStreams();
    // A file that mustn't grow is told like any other failed write.
    std::signal(SIGXFSZ, SIG_IGN);
    // Passwords pass through here: no core file of this process is to hold one.
    rlimit const none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    // What the plug-in prints by itself goes to standard error, so that the results stay whole. C++
    // streams keep the standard output that the process began with.
    stdout = stderr;
    return Zubprint::Run(argc, argv, std::cout, std::cerr);
}
