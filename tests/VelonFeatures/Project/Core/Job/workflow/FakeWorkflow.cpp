// SPDX-License-Identifier: Apache-2.0
// A workflow server's client that writes down what it is asked into "log" of the folder that the
// environment's FAKE_WORKFLOW names, and gives new jobs the bytes of "identifier" there. Built in
// kinds that lack something each.
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

int sSession;

std::string PathOf(char const* name) {
    char const* const folder = std::getenv("FAKE_WORKFLOW");
    return std::string(folder == nullptr ? "." : folder) + "/" + name;
}

void Log(std::string const& line) {
    if (std::FILE* const file = std::fopen(PathOf("log").c_str(), "a"); file != nullptr) {
        std::fputs((line + "\n").c_str(), file);
        std::fclose(file);
    }
}

std::string NameOf(void* session) {
    return session == &sSession ? "session" : "stranger";
}

struct Presence {
    Presence() { Log("loaded"); }
    Presence(Presence const&) = delete;
    Presence& operator=(Presence const&) = delete;
    ~Presence() { Log("unloaded"); }
};
Presence const sPresence;

}  // namespace

extern "C" {

int SKOpenSession(char const* server, char const* user, char const* password, char const* language,
                  void** session, int reserved);
int SKCreateNewJobEx(void* session, char const* folder, char const* name, char const* path,
                     char* identifier);
int SKCloseSession(void* session);

#ifndef FAKE_WORKFLOW_NO_OPEN
int SKOpenSession(char const* server, char const* user, char const* password, char const* language,
                  void** session, int reserved) {
    Log(std::string("open ") + server + "|" + user + "|" + password + "|" + language + "|" +
        std::to_string(reserved));
#ifdef FAKE_WORKFLOW_NO_SESSION
    *session = nullptr;
#else
    *session = &sSession;
#endif
    return 0;
}
#endif

#ifndef FAKE_WORKFLOW_NO_CREATE
int SKCreateNewJobEx(void* session, char const* folder, char const* name, char const* path,
                     char* identifier) {
    constexpr std::size_t kIdentifierSize = 256;
    Log("create " + NameOf(session) + "|" + folder + "|" + name + "|" + path);
    if (std::FILE* const file = std::fopen(PathOf("identifier").c_str(), "r"); file != nullptr) {
        std::size_t const length = std::fread(identifier, 1, kIdentifierSize, file);
        std::fclose(file);
        if (length < kIdentifierSize) {
            identifier[length] = '\0';
        }
    }
    return -1;  // nobody looks at it
}
#endif

#ifndef FAKE_WORKFLOW_NO_CLOSE
int SKCloseSession(void* session) {
    Log("close " + NameOf(session));
    return -1;
}
#endif

}  // extern "C"
