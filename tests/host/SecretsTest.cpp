// SPDX-License-Identifier: Apache-2.0
// What a run leaves of a password, in memory and on disk.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "host/Zubprint.h"
#include "tests/host/HostFixture.h"

namespace {

namespace fs = std::filesystem;

std::string Contents(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A run of the command in a process of its own that stops where it would end. What the process is
// not to hold must not be known here before it starts.
class StoppedRun {
  public:
    explicit StoppedRun(std::vector<std::string> const& arguments, std::string const& go) {
        mProcess = fork();
        if (mProcess == 0) {
            while (access(go.c_str(), F_OK) != 0) {
                usleep(1000);
            }
            std::vector<char const*> argv = {"zubprint"};
            for (std::string const& argument : arguments) {
                argv.push_back(argument.c_str());
            }
            std::ostringstream out;
            std::ostringstream err;
            int const status = Zubprint::Run(static_cast<int>(argv.size()), argv.data(), out, err);
            raise(SIGSTOP);
            _exit(status);
        }
    }
    StoppedRun(StoppedRun const&) = delete;
    StoppedRun& operator=(StoppedRun const&) = delete;
    ~StoppedRun() {
        kill(mProcess, SIGKILL);
        waitpid(mProcess, nullptr, 0);
    }

    bool WaitUntilStopped() const {
        int status = 0;
        return waitpid(mProcess, &status, WUNTRACED) == mProcess && WIFSTOPPED(status);
    }
    // Where the bytes stand in what the process may write to; "" for nowhere.
    std::string PlaceOf(std::string const& bytes) const {
        std::ifstream maps("/proc/" + std::to_string(mProcess) + "/maps");
        int const memory =
            open(("/proc/" + std::to_string(mProcess) + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
        EXPECT_LE(0, memory);
        std::string found;
        std::string line;
        while (found.empty() && std::getline(maps, line)) {
            found = Holds(memory, line, bytes) ? line : "";
        }
        close(memory);
        return found;
    }

  private:
    static bool Holds(int memory, std::string const& mapping, std::string const& bytes) {
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        char writable = '-';
        // Sanitizers reserve terabytes that nobody has touched.
        constexpr std::uint64_t kLargest = std::uint64_t{1} << 30;
        if (std::sscanf(mapping.c_str(), "%lx-%lx %*c%c", &start, &end, &writable) != 3 ||
            writable != 'w' || end - start > kLargest) {
            return false;
        }
        std::string content(end - start, '\0');
        ssize_t const count =
            pread(memory, content.data(), content.size(), static_cast<off_t>(start));
        content.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
        return content.find(bytes) != std::string::npos;
    }

    pid_t mProcess;
};

class SecretsTest : public HostFixture {
  protected:
    // A server that takes the user's record, and that nothing else is to be told.
    static std::string PPD() {
        std::string notes;
        for (char const* keyword : {"ZUUserAuthName", "ZUUserAuthPwd", "DeptPassword"}) {
            std::string const flags = std::string(keyword) == "DeptPassword" ? "AESEncrypt" : "";
            notes += "*%ZUBFlags *" + std::string(keyword) + ": Dynamic\n*%ZUBGroup *" + keyword +
                     ": Finish/Group\n*%ZUBJobNote *" + keyword + "/Note: 100|Password|" + flags +
                     "\n*%" + keyword + ": \"<*" + keyword + "> note\"\n";
        }
        return Head() + "*%ZUBSpecialOption *ZUBAuthenticateWithLDAP: True\n" + notes;
    }
    static std::string UTF16(std::string const& ascii) {
        std::string wide;
        for (char const byte : ascii) {
            wide += byte;
            wide += '\0';
        }
        return wide;
    }
};

TEST_F(SecretsTest, NothingOfThemStaysInMemoryOrInFilesBesideTheJob) {
    std::string const ppd = Write(UniqueName("secret") + ".ppd", PPD());
    StoppedRun const run(
        {"print", "--ppd", ppd, "--tickets", PathOf("tickets.plist"), "--address", "host.invalid",
         "--set-from", "*ZUUserAuthName=" + PathOf("name"), "--set-from",
         "*ZUUserAuthPwd=" + PathOf("word"), "--set-from", "*DeptPassword=" + PathOf("dept")},
        PathOf("go"));
    std::array<std::string, 3> const secrets = {"Marked-Name-of-Somebody", "Marked-Word-of-Theirs",
                                                "Marked-Department-Code"};
    Write("name", secrets[0] + "\n");
    Write("word", secrets[1] + "\n");
    Write("dept", secrets[2] + "\n");
    Write("go", "");
    ASSERT_TRUE(run.WaitUntilStopped());

    std::vector<JobDataFile> const jobs = JobsWith("%%ZUBUATag: ");
    ASSERT_FALSE(jobs.empty());
    for (std::string const& secret : secrets) {
        EXPECT_EQ("", run.PlaceOf(secret)) << secret;
        EXPECT_EQ("", run.PlaceOf(UTF16(secret))) << "wide " << secret;
        for (auto const& file : fs::recursive_directory_iterator(PathOf(""))) {
            bool const isSource = file.path().filename() == "name" ||
                                  file.path().filename() == "word" ||
                                  file.path().filename() == "dept";
            if (file.is_regular_file() && !isSource) {
                EXPECT_EQ(std::string::npos, Contents(file.path()).find(secret)) << file.path();
            }
        }
    }
}

}  // namespace
