// SPDX-License-Identifier: Apache-2.0
#include <sys/resource.h>

#include <cstdio>
#include <iostream>

#include "host/Zubprint.h"

int main(int argc, char** argv) {
    // Passwords pass through here: no core file of this process is to hold one.
    rlimit const none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    // What the plug-in prints by itself goes to standard error, so that the results stay whole. C++
    // streams keep the standard output that the process began with.
    stdout = stderr;
    return Zubprint::Run(argc, argv, std::cout, std::cerr);
}
