// SPDX-License-Identifier: Apache-2.0
#pragma once

// Prints the text and the number to the standard output stream when the environment variable
// "PDEDebug" is set.
void MyDebugMessage(char const* text, int number);
