// SPDX-License-Identifier: Apache-2.0
#pragma once

// Home of the assertions. They stand where a caller has broken a stated rule, and in every build
// type.
class ZUBAssert {
  public:
    virtual ~ZUBAssert();

    // Prints where and what to the standard error stream and aborts.
    [[noreturn]] static void Fail(char const* expression, char const* sourcePath, unsigned line);
};

// `expression` is the text that a failure prints, `sourcePath` a path from the root of the sources
// without an extension. They are given by hand so that a report means the same in every version.
#define ZUB_ASSERT(condition, expression, sourcePath, line) \
    ((condition) ? static_cast<void>(0) : ZUBAssert::Fail(expression, sourcePath, line))
