// SPDX-License-Identifier: Apache-2.0
#pragma once

// Where the client of the workflow server lies.
extern char const* gWorkflowLibraryPath;

// The client library of a workflow server, loaded for as long as the object lives. All texts are
// UTF-8. A library that isn't there, or lacks a function, makes what needs it do nothing.
class WorkflowLibrary {
  public:
    using Session = void*;
    static constexpr unsigned long kJobIdentifierSize = 256;  // with the terminator

    WorkflowLibrary();
    WorkflowLibrary(WorkflowLibrary const&) = delete;
    WorkflowLibrary& operator=(WorkflowLibrary const&) = delete;
    ~WorkflowLibrary();

    bool IsLoaded() const { return mLibrary != nullptr; }
    // Null when the server doesn't answer. The caller closes the session.
    Session Open(char const* server, char const* user, char const* password) const;
    // Makes a job of the workflow file at `path`. False when there is no such function; the
    // identifier is terminated in any case, empty if the server gave none.
    bool CreateJob(Session session, char const* folder, char const* jobName, char const* path,
                   char (&identifier)[kJobIdentifierSize]) const;
    void Close(Session session) const;

  private:
    using OpenSession = int (*)(char const* server, char const* user, char const* password,
                                char const* language, Session* session, int reserved);
    using CreateNewJob = int (*)(Session session, char const* folder, char const* jobName,
                                 char const* path, char* identifier);
    using CloseSession = int (*)(Session session);

    void* mLibrary;
    OpenSession mOpen = nullptr;
    CreateNewJob mCreateJob = nullptr;
    CloseSession mClose = nullptr;
};
