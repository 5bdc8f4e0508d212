// SPDX-License-Identifier: Apache-2.0
// What a run leaves of a password, in memory and on disk.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ciphers/KeyMaterial.h"
#include "tests/ciphers/OtherCiphers.h"
#include "tests/host/HostFixture.h"

namespace {

namespace fs = std::filesystem;

std::string Contents(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

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

std::string UTF16(std::string const& ascii) {
    std::string wide;
    for (char const byte : ascii) {
        wide += byte;
        wide += '\0';
    }
    return wide;
}

struct Server {
    char const* authenticates;  // True and False
    char const* copiesFeatures;
};

class SecretsTest : public HostFixture, public testing::WithParamInterface<Server> {
  protected:
    // A run of the command in a process of its own, which begins when there is a file `go`, leaves
    // what it prints in `said` and stops where it would end. What the process is not to hold must
    // not be known here before it starts.
    class StoppedRun {
      public:
        StoppedRun(std::vector<std::string> const& arguments, std::string const& go,
                   std::string const& said) {
            mProcess = fork();
            if (mProcess == 0) {
                while (access(go.c_str(), F_OK) != 0) {
                    usleep(1000);
                }
                Result const result = Run(arguments);
                std::ofstream(said) << result.out << result.err;
                raise(SIGSTOP);
                _exit(result.status);
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

    static std::string PPD(Server const& server) {
        struct Row {
            std::string keyword;
            std::string flags;
            std::string code;
        };
        Row const rows[] = {{"ZUUserAuthName", "", "(<*ZUUserAuthName>) name"},
                            {"ZUUserAuthPwd", "Password|Encrypt", "(<*ZUUserAuthPwd>) word"},
                            {"DeptPassword", "AESEncrypt", "%%Department <*DeptPassword>"}};
        std::string notes;
        for (Row const& row : rows) {
            notes += "*%ZUBFlags *" + row.keyword + ": Dynamic\n*%ZUBGroup *" + row.keyword +
                     ": Finish/Group\n*%ZUBJobNote *" + row.keyword + "/Note: 100|" + row.flags +
                     "\n*%" + row.keyword + ": \"" + row.code + "\"\n";
        }
        return Head() + "*%ZUBSpecialOption *ZUBAuthenticateWithLDAP: " + server.authenticates +
               "\n*%ZUBSpecialOption *CopierUserAuth: " + server.copiesFeatures + "\n" + notes;
    }
    // The small files that were written into a folder since then, but for the job's and those that
    // the choices came from.
    static std::string WrittenSince(fs::path const& folder, fs::file_time_type start) {
        constexpr std::uintmax_t kLargest = std::uintmax_t{1} << 20;
        std::string all;
        std::error_code error;
        for (auto const& file : fs::directory_iterator(folder)) {
            std::string const name = file.path().filename();
            if (file.is_regular_file(error) && file.last_write_time(error) >= start &&
                file.file_size(error) < kLargest && !name.starts_with("Velon.temp") &&
                !name.starts_with("source-")) {
                all += Contents(file.path());
            }
        }
        return all;
    }
};

// What is freed is first overwritten at its beginning by the allocator, so the rest is looked for.
TEST_P(SecretsTest, NothingOfThemStaysInMemoryOrInFilesBesideTheJob) {
    constexpr std::size_t kOverwritten = 16;
    auto const start = fs::file_time_type::clock::now() - std::chrono::seconds(1);
    std::string const ppd = Write(UniqueName("secret") + ".ppd", PPD(GetParam()));
    StoppedRun const run({"print", "--ppd", ppd, "--tickets", PathOf("tickets.plist"), "--address",
                          "host.invalid", "--set-from", "*ZUUserAuthName=" + PathOf("source-name"),
                          "--set-from", "*ZUUserAuthPwd=" + PathOf("source-word"), "--set-from",
                          "*DeptPassword=" + PathOf("source-dept")},
                         PathOf("go"), PathOf("said"));
    // Others than in the former test, of which this process, and so its child, still knows.
    std::string const marks[] = {UniqueName("Marked-Name-of-Somebody-"),
                                 UniqueName("Marked-Word-of-Theirs-"),
                                 UniqueName("Marked-Department-Code-")};
    Write("source-name", marks[0] + "\n");
    Write("source-word", marks[1] + "\n");
    Write("source-dept", marks[2] + "\n");
    Write("go", "");
    ASSERT_TRUE(run.WaitUntilStopped());

    std::string const files = WrittenSince(PathOf(""), start) + WrittenSince("/tmp", start);
    EXPECT_NE(std::string::npos, files.find("/Velon.temp"));  // the path, from the tickets
    std::vector<std::string> wanted;
    if (GetParam().authenticates == std::string("True")) {
        std::vector<JobDataFile> const jobs = JobsWith("%%ZUBUATag: ");
        ASSERT_FALSE(jobs.empty());
        wanted = SessionKeys(jobs.back());
    }
    for (std::string const& mark : marks) {
        std::string const text = mark.substr(kOverwritten);
        EXPECT_EQ(std::string::npos, files.find(text)) << text;
        std::string const hex = ToHex({text.begin(), text.end()});
        wanted.insert(wanted.end(), {text, UTF16(text), hex, UTF16(hex)});
    }
    EXPECT_EQ(std::vector<std::string>(), run.Found(wanted));
}

INSTANTIATE_TEST_SUITE_P(Servers, SecretsTest,
                         testing::Values(Server{"True", "False"}, Server{"True", "True"},
                                         Server{"False", "True"}));

}  // namespace
