// SPDX-License-Identifier: Apache-2.0
#pragma once

// After `count` more array allocations that may answer null the next one does; -1 for never.
void FailNewAfter(long count);
