// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/platform/TestSupport.h"

// After `count` more array allocations that may answer null the next one does; -1 for never.
void FailNewAfter(long count);

// After `count` more allocations of any form the next one fails, by null or by its exception; -1
// for never.
void FailAnyNewAfter(long count);
// Whether that one has come.
bool HasAnyNewFailed();

// A test on a Mac Roman system that gives back what it made.
class MacRomanTest : public OwnershipTest {
  protected:
    void SetUp() override { SetSystemTextEncoding(kCFStringEncodingMacRoman); }
    void TearDown() override {
        FailNewAfter(-1);
        OwnershipTest::TearDown();
    }
};
