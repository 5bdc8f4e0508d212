// SPDX-License-Identifier: Apache-2.0
#include "platform/NewFiles.h"

namespace {

NewFileListener gListener = nullptr;

}  // namespace

void SetNewFileListener(NewFileListener listener) {
    gListener = listener;
}

void ReportNewFile(char const* path, char const* target) {
    if (gListener != nullptr) {
        gListener(path, target);
    }
}
