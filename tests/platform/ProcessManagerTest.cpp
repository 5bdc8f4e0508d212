// SPDX-License-Identifier: Apache-2.0
#include "platform/ProcessManager.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "tests/platform/TestSupport.h"

namespace {

using ProcessManagerTest = OwnershipTest;

// A process that waits under a file name of its own; ended at the latest with its owner.
class Child {
  public:
    explicit Child(std::string const& program) {
        int ready[2];
        EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
        mProcess = fork();
        if (mProcess == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            execl(program.c_str(), program.c_str(), "60", nullptr);
            _exit(1);
        }
        // The other end closes with the start of the program.
        close(ready[1]);
        char byte;
        EXPECT_EQ(read(ready[0], &byte, 1), 0);
        close(ready[0]);
    }
    Child(Child const&) = delete;
    Child& operator=(Child const&) = delete;
    ~Child() {
        kill(mProcess, SIGKILL);
        waitpid(mProcess, nullptr, 0);
    }

    ProcessSerialNumber Number() const { return {0, static_cast<std::uint32_t>(mProcess)}; }
    // Waits until it has ended but leaves it to be waited for.
    int SignalThatEndedIt() const {
        siginfo_t info{};
        waitid(P_PID, static_cast<id_t>(mProcess), &info, WEXITED | WNOWAIT);
        return info.si_code == CLD_KILLED ? info.si_status : 0;
    }

  private:
    pid_t mProcess;
};

std::string NameOf(ProcessSerialNumber const& process) {
    CFStringRef name = nullptr;
    OSStatus const status = CopyProcessName(&process, &name);
    CFRef<CFStringRef> const owner(name);
    return status == noErr ? Text(name) : "error " + std::to_string(status);
}

std::multiset<std::uint32_t> Walk() {
    std::multiset<std::uint32_t> found;
    ProcessSerialNumber process{0, kNoProcess};
    while (GetNextProcess(&process) == noErr) {
        found.insert(process.lowLongOfPSN);
    }
    EXPECT_EQ(process.lowLongOfPSN, kNoProcess);
    return found;
}

TEST_F(ProcessManagerTest, NamesAreWholeAlsoWhereTheKernelCutsThem) {
    TemporaryFolder const folder;
    for (std::string const name : {"short name)", "exactly15bytes_", "Job Properties Viewer 4.2"}) {
        std::filesystem::copy_file("/bin/sleep", folder.Path(name));
        Child const child(folder.Path(name));
        EXPECT_EQ(NameOf(child.Number()), name);
        std::filesystem::remove(folder.Path(name));
        EXPECT_EQ(NameOf(child.Number()), name);

        ProcessInfoRec info;
        auto const number = child.Number();
        EXPECT_EQ(GetProcessInformation(&number, &info), noErr);
        EXPECT_EQ(info.processName[0], name.size());
        EXPECT_EQ(std::string(info.processName + 1, info.processName + 1 + info.processName[0]),
                  name);
    }
}

TEST_F(ProcessManagerTest, AWalkMeetsARunningProcessOnceAndAnEndedOneNeverThoughNobodyWaitedForIt) {
    Child const child("/bin/sleep");
    auto const number = child.Number();
    EXPECT_EQ(Walk().count(number.lowLongOfPSN), 1U);
    EXPECT_EQ(Walk().count(static_cast<std::uint32_t>(getpid())), 1U);
    EXPECT_EQ(KillProcess(&number), noErr);
    EXPECT_EQ(child.SignalThatEndedIt(), SIGTERM);
    EXPECT_EQ(KillProcess(&number), procNotFound);
    EXPECT_EQ(NameOf(number), "error -600");
    EXPECT_EQ(Walk().count(number.lowLongOfPSN), 0U);
}

TEST_F(ProcessManagerTest, AForkedChildHasANumberOfItsOwn) {
    ProcessSerialNumber parent{};
    ASSERT_EQ(GetCurrentProcess(&parent), noErr);
    pid_t const child = fork();
    if (child == 0) {
        ProcessSerialNumber own{};
        GetCurrentProcess(&own);
        _exit(own.lowLongOfPSN == static_cast<std::uint32_t>(getpid()) ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(parent.lowLongOfPSN, static_cast<std::uint32_t>(getpid()));
}

TEST_F(ProcessManagerTest, NumbersThatNameNoProcessAreRefused) {
    // 0 and what reads as a negative number would reach whole groups of processes.
    ProcessSerialNumber const bad[] = {{0, 0}, {0, 0xFFFFFFFFU}, {0, 0x7FFFFFFFU}, {1, 1}};
    for (auto const& number : bad) {
        EXPECT_EQ(KillProcess(&number), procNotFound);
        EXPECT_EQ(NameOf(number), "error -600");
        ProcessInfoRec info;
        EXPECT_EQ(GetProcessInformation(&number, &info), procNotFound);
        EXPECT_EQ(info.processName[0], 0);
    }
}

}  // namespace
