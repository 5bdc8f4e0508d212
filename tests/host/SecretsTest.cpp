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
#include "ciphers/KeyMaterial.h"
#include "host/Zubprint.h"
#include "tests/ciphers/OtherCiphers.h"
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
    // Which of the bytes stand in what the process may write to, and where.
    std::vector<std::string> Found(std::vector<std::string> const& wanted) const {
        std::string const folder = "/proc/" + std::to_string(mProcess);
        std::ifstream maps(folder + "/maps");
        int const memory = open((folder + "/mem").c_str(), O_RDONLY | O_CLOEXEC);
        EXPECT_LE(0, memory);
        std::vector<std::string> found;
        std::string line;
        while (std::getline(maps, line)) {
            std::string const content = Content(memory, line);
            for (std::string const& bytes : wanted) {
                if (content.find(bytes) != std::string::npos) {
                    found.push_back(testing::PrintToString(bytes) + " in " + line);
                }
            }
        }
        close(memory);
        return found;
    }

  private:
    static std::string Content(int memory, std::string const& mapping) {
        std::uint64_t start = 0;
        std::uint64_t end = 0;
        char writable = '-';
        // Sanitizers reserve terabytes that nobody has touched.
        constexpr std::uint64_t kLargest = std::uint64_t{1} << 30;
        if (std::sscanf(mapping.c_str(), "%lx-%lx %*c%c", &start, &end, &writable) != 3 ||
            writable != 'w' || end - start > kLargest) {
            return {};
        }
        std::string content(end - start, '\0');
        ssize_t const count =
            pread(memory, content.data(), content.size(), static_cast<off_t>(start));
        content.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
        return content;
    }

    pid_t mProcess;
};

// The session key of the record in a job, as its bytes stand there and as words in memory.
std::vector<std::string> SessionKeys(JobDataFile const& job) {
    constexpr std::string_view kTag = "%%ZUBUATag: ";
    auto const pair = std::ranges::find_if(
        job.Pairs(), [](auto const& one) { return one.text.starts_with(kTag); });
    EXPECT_NE(job.Pairs().end(), pair);
    ByteVector const digits(pair->text.begin() + kTag.size(), pair->text.end() - 1);
    ByteVector record(digits.size());
    EXPECT_LT(64, EVP_DecodeBlock(record.data(), digits.data(), static_cast<int>(digits.size())));
    record.resize(48);  // whole blocks, the key stands in the second and third
    ByteVector const plain =
        Gcrypt(GCRY_CIPHER_TWOFISH, true, {kUserAuthFixedKey.begin(), kUserAuthFixedKey.end()}, {},
               record);
    std::string const key(plain.begin() + 8, plain.begin() + 40);
    std::string words = key;
    for (std::size_t at = 0; at < words.size(); at += 4) {
        std::reverse(words.data() + at, words.data() + at + 4);
    }
    return {key, words};
}

class SecretsTest : public HostFixture, public testing::WithParamInterface<bool> {
  protected:
    // A server that takes the user's record, and that nothing else is to be told.
    static std::string PPD(bool withFeatures) {
        std::string notes;
        for (char const* keyword : {"ZUUserAuthName", "ZUUserAuthPwd", "DeptPassword"}) {
            std::string const flags = std::string(keyword) == "DeptPassword" ? "AESEncrypt" : "";
            notes += "*%ZUBFlags *" + std::string(keyword) + ": Dynamic\n*%ZUBGroup *" + keyword +
                     ": Finish/Group\n*%ZUBJobNote *" + keyword + "/Note: 100|Password|" + flags +
                     "\n*%" + keyword + ": \"<*" + keyword + "> note\"\n";
        }
        return Head() + "*%ZUBSpecialOption *ZUBAuthenticateWithLDAP: True\n" +
               "*%ZUBSpecialOption *CopierUserAuth: " + (withFeatures ? "True\n" : "False\n") +
               notes;
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

// With the features in the job the name stands there in clear, and so in the pairs of the session.
TEST_P(SecretsTest, NothingOfThemStaysInMemoryOrInFilesBesideTheJob) {
    std::string const ppd = Write(UniqueName("secret") + ".ppd", PPD(GetParam()));
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
    std::vector<std::string> wanted = SessionKeys(jobs.back());
    for (std::string const& secret : secrets) {
        wanted.push_back(secret);
        wanted.push_back(UTF16(secret));
        for (auto const& file : fs::recursive_directory_iterator(PathOf(""))) {
            bool const isSource = file.path().filename() == "name" ||
                                  file.path().filename() == "word" ||
                                  file.path().filename() == "dept";
            if (file.is_regular_file() && !isSource) {
                EXPECT_EQ(std::string::npos, Contents(file.path()).find(secret)) << file.path();
            }
        }
    }
    EXPECT_EQ(std::vector<std::string>(), run.Found(wanted));
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWithFeatures, SecretsTest, testing::Bool());

}  // namespace
