// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "constraints/KVCache.h"

class ZUBPPD;

// What is selected as the rules of a PPD see it once `changes` are made: while the print size
// follows the page size, the real size counts where the print size has such an option. Ids are
// those of the PPD's rules, of which it must have a store.
KVCache RuledSelection(ZUBPPD const& ppd, KVCache const& changes = {});
// Whether the print size of that selection would follow the page size.
bool PrintSizeFollows(ZUBPPD const& ppd, KVCache const& changes = {});
