// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// What one run of the command makes in /tmp and removes at its end: the PPD's copy and the job data
// files, of which it is told as soon as they are there. They are noted in a file too, so that the
// next run removes what a run left that was killed. One for the process at a time.
//
// The notes lie in the user's own folder, "$XDG_RUNTIME_DIR/zubprint" or, without that,
// "/tmp/zub-notes-" and the user's number. A note is named after its process and the time at which
// that started, and locked while the run lasts. Without such a folder, or where it isn't the user's
// alone, a run notes nothing and works all the same.
//
// Only a regular file of the user is removed, in /tmp, with a name such as the plug-in gives, and
// only the very file that was noted, not another that has taken its name.
class RunNotes {
  public:
    // Removes what the notes of ended runs name, and those notes.
    RunNotes();
    RunNotes(RunNotes const&) = delete;
    RunNotes& operator=(RunNotes const&) = delete;
    // Removes what was made and isn't kept, and the note.
    ~RunNotes();

    // A file that goes at the end of the run after all. One that isn't there is none.
    void Made(std::string const& path);
    // It stays.
    void Keep(std::string const& path);

  private:
    struct File {
        std::string path;
        dev_t device;
        ino_t number;
    };

    void OpenFolder();
    void OpenNote();
    void Sweep() const;
    void SweepNote(char const* name) const;
    void Note(std::string const& line) const;
    static void Hear(char const* path, char const* target);
    void Add(File const& file);
    static void Forget(std::vector<File>& files, std::string const& path);
    static void Remove(File const& file);
    static std::vector<File> FilesIn(int note);

    int mFolder = -1;  // -1: no notes; owned, as the next
    int mNote = -1;
    std::string mName;
    std::vector<File> mFiles;
};
