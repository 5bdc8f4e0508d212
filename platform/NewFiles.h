// SPDX-License-Identifier: Apache-2.0
#pragma once

// Who wants to know of files as soon as they are made, so that none is left behind by a process
// that ends at once.

// Told the name under which a file was just made and the name that it is about to take. Mustn't
// throw.
using NewFileListener = void (*)(char const* path, char const* target);
void SetNewFileListener(NewFileListener listener);  // one for the process; null for none

// For whoever makes a file; writing a resource does it by itself.
void ReportNewFile(char const* path, char const* target);
