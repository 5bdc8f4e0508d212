// SPDX-License-Identifier: Apache-2.0

extern "C" int AnswerOfTheLoadedModule();

int AnswerOfTheLoadedModule() {
    return 4711;
}
