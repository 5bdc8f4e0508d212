// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>

// Calls `work` where no file may grow beyond `size` bytes, which stands in for a full disk: a write
// stops in the middle. `handler` is for the signal that comes with it.
template <typename Work>
bool OnSmallDisk(rlim_t size, decltype(SIG_DFL) handler, Work&& work) {
    struct rlimit old {};
    getrlimit(RLIMIT_FSIZE, &old);
    auto const oldHandler = std::signal(SIGXFSZ, handler);
    struct rlimit const small = {size, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    bool const result = work();
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    return result;
}

// Sets an environment variable, or removes it, for the length of a scope.
class ScopedVariable {
  public:
    ScopedVariable(char const* name, char const* value) : mName(name) {
        if (char const* old = std::getenv(name); old != nullptr) {
            mOld = old;
        }
        Set(value);
    }
    ScopedVariable(ScopedVariable const&) = delete;
    ScopedVariable& operator=(ScopedVariable const&) = delete;
    ~ScopedVariable() { Set(mOld ? mOld->c_str() : nullptr); }

  private:
    void Set(char const* value) const {
        value == nullptr ? unsetenv(mName) : setenv(mName, value, 1);
    }

    char const* mName;
    std::optional<std::string> mOld;
};
