// SPDX-License-Identifier: Apache-2.0
#include "host/RunNotes.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <new>
#include <sstream>
#include <string_view>

#include "platform/NewFiles.h"

namespace {

constexpr std::string_view kFolder = "/tmp/";
constexpr std::string_view kJobData = "/tmp/Velon.temp";
constexpr std::string_view kUUIDCharacters = "0123456789ABCDEF-";
constexpr std::size_t kUUIDSize = 36;
// What files and the PPD's copy are called while they are written.
constexpr std::string_view kUnfinished = ".new-";
constexpr std::string_view kNewCopy = "/tmp/Velon.copy";
constexpr std::string_view kNote = "run-";
constexpr std::string_view kMade = "made ";
constexpr std::string_view kKept = "kept ";

// The run that hears of new files.
RunNotes* gHearing = nullptr;

bool IsJobData(std::string_view path) {
    if (!path.starts_with(kJobData)) {
        return false;
    }
    std::string_view const uuid = path.substr(kJobData.size());
    return uuid.size() == kUUIDSize && uuid.find_first_not_of(kUUIDCharacters) == uuid.npos;
}

// What a file is called while it is written whole, in whatever folder.
bool IsUnfinished(std::string_view path) {
    return path.starts_with('/') && path.substr(path.rfind('/') + 1).starts_with(kUnfinished);
}

// A job data file's name, that of a PPD's copy, or what a file is called at first.
bool HasOurForm(std::string_view path) {
    return IsUnfinished(path) ||
           (path.starts_with(kFolder) && path.find('/', kFolder.size()) == path.npos &&
            (IsJobData(path) || path.starts_with(kNewCopy) || path.find(".ppd") != path.npos));
}

// When the process started, in the kernel's ticks; empty for one that has ended.
std::string StartOf(std::string const& process) {
    constexpr int kStartField = 20;  // counted from the one behind the name
    std::ifstream file("/proc/" + process + "/stat");
    std::string text;
    std::getline(file, text, '\0');  // a process that ends meanwhile is a read error
    std::istringstream fields(text.substr(std::min(text.rfind(')'), text.size() - 1) + 1));
    std::string field;
    for (int number = 0; number < kStartField; ++number) {
        field.clear();
        fields >> field;
    }
    return field;
}

std::string NameOf(std::string const& process) {
    return std::string(kNote) + process + '-' + StartOf(process);
}

// A folder of the user alone, made if it is missing; -1 for anything else.
int OpenOwnFolder(std::string const& path) {
    constexpr mode_t kPrivate = 0700;
    constexpr mode_t kOthers = 077;
    mkdir(path.c_str(), kPrivate);
    int const folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat status {};
    if (folder >= 0 && (fstat(folder, &status) != 0 || status.st_uid != geteuid() ||
                        (status.st_mode & kOthers) != 0)) {
        close(folder);
        return -1;
    }
    return folder;
}

}  // namespace

RunNotes::RunNotes() {
    OpenFolder();
    Sweep();
    OpenNote();
    gHearing = this;
    SetNewFileListener(Hear);
}

RunNotes::~RunNotes() {
    SetNewFileListener(nullptr);
    gHearing = nullptr;
    for (File const& file : mFiles) {
        Remove(file);
    }
    if (mNote >= 0) {
        unlinkat(mFolder, mName.c_str(), 0);
        close(mNote);
    }
    if (mFolder >= 0) {
        close(mFolder);
    }
}

void RunNotes::OpenFolder() {
    if (char const* const own = std::getenv("XDG_RUNTIME_DIR"); own != nullptr && *own == '/') {
        mFolder = OpenOwnFolder(std::string(own) + "/zubprint");
    }
    if (mFolder < 0) {
        mFolder = OpenOwnFolder("/tmp/zub-notes-" + std::to_string(geteuid()));
    }
}

void RunNotes::OpenNote() {
    constexpr mode_t kPrivate = 0600;
    mName = NameOf(std::to_string(getpid()));
    if (mFolder >= 0) {
        int const flags = O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC;
        mNote = openat(mFolder, mName.c_str(), flags, kPrivate);
    }
    if (mNote >= 0 && flock(mNote, LOCK_EX | LOCK_NB) != 0) {
        unlinkat(mFolder, mName.c_str(), 0);
        close(mNote);
        mNote = -1;
    }
}

void RunNotes::Made(std::string const& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return;
    }
    Add({path, status.st_dev, status.st_ino});
}

void RunNotes::Add(File const& file) {
    Note(std::string(kMade) + std::to_string(file.device) + ' ' + std::to_string(file.number) +
         ' ' + file.path);
    Forget(mFiles, file.path);
    mFiles.push_back(file);
}

// The user's own documents are none of these, whatever they are called. A file keeps its number
// under its new name.
void RunNotes::Hear(char const* path, char const* target) {
    struct stat status {};
    bool const isOurs = IsJobData(target) || std::string_view(path).starts_with(kNewCopy);
    if (!(isOurs || IsUnfinished(path)) || lstat(path, &status) != 0) {
        return;
    }
    try {
        gHearing->Add({path, status.st_dev, status.st_ino});
        if (isOurs) {
            gHearing->Add({target, status.st_dev, status.st_ino});
        }
    } catch (std::bad_alloc const&) {
        return;  // it stays, and the run has other troubles
    }
}

void RunNotes::Keep(std::string const& path) {
    Note(std::string(kKept) + path);
    Forget(mFiles, path);
}

// A line that the end of the process cuts short names nothing: it has no line end.
void RunNotes::Note(std::string const& line) const {
    if (mNote < 0 || line.find('\n') != line.npos) {
        return;
    }
    std::string const text = line + '\n';
    if (write(mNote, text.data(), text.size()) < 0) {
        return;  // a full disk; what was made goes at the end all the same
    }
}

void RunNotes::Forget(std::vector<File>& files, std::string const& path) {
    std::erase_if(files, [&](File const& file) { return file.path == path; });
}

void RunNotes::Remove(File const& file) {
    struct stat status {};
    if (HasOurForm(file.path) && lstat(file.path.c_str(), &status) == 0 &&
        S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_dev == file.device &&
        status.st_ino == file.number) {
        unlink(file.path.c_str());
    }
}

void RunNotes::Sweep() const {
    int const copy = mFolder < 0 ? -1 : openat(mFolder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const folder = copy < 0 ? nullptr : fdopendir(copy);
    if (folder == nullptr) {
        return;
    }
    while (dirent const* const entry = readdir(folder)) {
        if (std::string_view(entry->d_name).starts_with(kNote)) {
            SweepNote(entry->d_name);
        }
    }
    closedir(folder);
}

// A process of another container has its number there, so a note counts as a living run's also
// while it is locked; between the making of a note and its lock, the process tells.
void RunNotes::SweepNote(char const* name) const {
    std::string const text(name);
    std::string const process =
        text.substr(kNote.size(), text.find('-', kNote.size()) - kNote.size());
    if (process.find_first_not_of("0123456789") != process.npos || NameOf(process) == text) {
        return;
    }
    int const note = openat(mFolder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (note < 0) {
        return;
    }
    struct stat status {};
    if (fstat(note, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
        flock(note, LOCK_EX | LOCK_NB) == 0) {
        for (File const& file : FilesIn(note)) {
            Remove(file);
        }
        unlinkat(mFolder, name, 0);
    }
    close(note);
}

// What the note names and nothing behind it says is kept.
std::vector<RunNotes::File> RunNotes::FilesIn(int note) {
    std::string text;
    char buffer[4096];
    for (ssize_t count = 0; (count = read(note, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(count));
    }
    std::vector<File> files;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find('\n', begin)) != text.npos; begin = end + 1) {
        std::string const line = text.substr(begin, end - begin);
        if (line.starts_with(kKept)) {
            Forget(files, line.substr(kKept.size()));
        } else if (line.starts_with(kMade)) {
            File file{};
            std::istringstream fields(line.substr(kMade.size()));
            fields >> file.device >> file.number;
            fields.ignore(1);
            std::getline(fields, file.path);
            Forget(files, file.path);
            files.push_back(file);
        }
    }
    return files;
}
