// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/LinkElement_Dual.h"

LinkElement_Dual::~LinkElement_Dual() = default;
