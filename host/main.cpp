// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "host/Zubprint.h"

int main(int argc, char** argv) {
    return Zubprint::Run(argc, argv, std::cout, std::cerr);
}
