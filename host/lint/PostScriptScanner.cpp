// SPDX-License-Identifier: Apache-2.0
#include "host/lint/PostScriptScanner.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kTimeLimit(10);
constexpr std::chrono::milliseconds kNap(2);
constexpr char kMark[] = "rejected ";
constexpr char kEnd[] = "all were read";  // an answer without it was cut off

// A syntax error alone counts: other errors come of names that only a printer knows.
constexpr char kPrologue[] = R"(
/scan { { token not { exit } if pop } loop } bind def
/check {
  /text exch def /number exch def
  { text scan } stopped
  { $error /errorname get /syntaxerror eq { (rejected ) print number = } if } if
  clear
} bind def
)";

std::string ProgramFor(std::vector<std::string> const& texts) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string program = kPrologue;
    for (std::size_t index = 0; index < texts.size(); ++index) {
        program += std::to_string(index) + " <";
        std::size_t column = 0;
        for (char const byte : texts[index]) {
            auto const value = static_cast<unsigned char>(byte);
            program += kDigits[value >> 4];
            program += kDigits[value & 0xF];
            program += ++column % 100 == 0 ? "\n" : "";
        }
        program += "> check\n";
    }
    return program + "(" + kEnd + ") =\n";
}

// A process with its standard input and output; ended and waited for on destruction.
class Child {
  public:
    explicit Child(std::string const& path) {
        int input[2] = {-1, -1};
        int output[2] = {-1, -1};
        if (pipe2(input, O_CLOEXEC) == 0 && pipe2(output, O_CLOEXEC) == 0) {
            Spawn(path, input[0], output[1]);
        }
        mInput = input[1];
        mOutput = output[0];
        for (int const end : {input[0], output[1]}) {
            if (end >= 0) {
                close(end);
            }
        }
    }
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;
    ~Child() {
        CloseInput();
        if (mOutput >= 0) {
            close(mOutput);
        }
        if (mProcess > 0) {
            kill(mProcess, SIGKILL);
            waitpid(mProcess, nullptr, 0);
        }
    }

    bool Runs() const { return mProcess > 0; }
    int Input() const { return mInput; }
    int Output() const { return mOutput; }
    void CloseInput() {
        if (mInput >= 0) {
            close(mInput);
            mInput = -1;
        }
    }
    // False unless it has ended well by then.
    bool EndsWell(Clock::time_point deadline) {
        int status = 0;
        for (;;) {
            pid_t const ended = waitpid(mProcess, &status, WNOHANG);
            if (ended == mProcess) {
                mProcess = -1;
                return WIFEXITED(status) && WEXITSTATUS(status) == 0;
            }
            if ((ended < 0 && errno != EINTR) || Clock::now() >= deadline) {
                return false;
            }
            std::this_thread::sleep_for(kNap);
        }
    }

  private:
    void Spawn(std::string const& path, int input, int output) {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        std::string arguments[] = {"gs",        "-q",      "-dSAFER", "-dNODISPLAY",
                                   "-dNOPAUSE", "-dBATCH", "-"};
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        std::string environment = "PATH=/usr/bin:/bin";
        char* const envp[] = {environment.data(), nullptr};
        if (posix_spawn(&mProcess, path.c_str(), &actions, nullptr, argv.data(), envp) != 0) {
            mProcess = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
    }

    pid_t mProcess = -1;
    int mInput = -1;
    int mOutput = -1;
};

// Whether a call that failed is to be made again.
bool IsPassing() {
    return errno == EINTR || errno == EAGAIN;
}

// Writes as much as fits; the input is closed behind the last of it, or when nobody reads it.
void Feed(Child& child, std::string_view& program) {
    ssize_t const written = write(child.Input(), program.data(), program.size());
    if (written < 0 && IsPassing()) {
        return;
    }
    program.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    if (written < 0 || program.empty()) {
        child.CloseInput();
    }
}

// While the program is written its answers are read, since either pipe may be full.
bool Converse(Child& child, std::string_view program, Clock::time_point deadline,
              std::string& answer) {
    fcntl(child.Input(), F_SETFL, O_NONBLOCK);
    for (;;) {
        auto const left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd ends[] = {{child.Output(), POLLIN, 0}, {child.Input(), POLLOUT, 0}};
        int const ready = poll(ends, child.Input() < 0 ? 1 : 2, static_cast<int>(left.count()));
        if (ready < 0 && IsPassing()) {
            continue;
        }
        if (ready <= 0) {
            return false;
        }
        if (child.Input() >= 0 && ends[1].revents != 0) {
            Feed(child, program);
        }
        if (ends[0].revents == 0) {
            continue;
        }
        char buffer[4096];
        ssize_t const count = read(child.Output(), buffer, sizeof buffer);
        if (count == 0) {
            return true;
        }
        if (count < 0 && !IsPassing()) {
            return false;
        }
        answer.append(buffer, count > 0 ? static_cast<std::size_t>(count) : 0);
    }
}

// A write to a program that has ended fails instead of ending this one.
class NoPipeSignal {
  public:
    NoPipeSignal() : mFormer(std::signal(SIGPIPE, SIG_IGN)) {}
    NoPipeSignal(NoPipeSignal const&) = delete;
    NoPipeSignal& operator=(NoPipeSignal const&) = delete;
    ~NoPipeSignal() { std::signal(SIGPIPE, mFormer); }

  private:
    void (*mFormer)(int);
};

}  // namespace

std::string PostScriptScanner::Program() {
    char const* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string program = folder + "/gs";
        if (folder.starts_with('/') && access(program.c_str(), X_OK) == 0) {
            return program;
        }
    }
    return {};
}

std::optional<std::vector<std::size_t>> PostScriptScanner::Rejected(
    std::string const& program, std::vector<std::string> const& texts) {
    NoPipeSignal const guard;
    Child child(program);
    std::string answer;
    auto const deadline = Clock::now() + kTimeLimit;
    if (!child.Runs() || !Converse(child, ProgramFor(texts), deadline, answer) ||
        !child.EndsWell(deadline) || !answer.ends_with(std::string(kEnd) + '\n')) {
        return std::nullopt;
    }
    std::vector<std::size_t> rejected;
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(kMark)) {
            rejected.push_back(std::strtoul(line.c_str() + sizeof kMark - 1, nullptr, 10));
        }
    }
    return rejected;
}
