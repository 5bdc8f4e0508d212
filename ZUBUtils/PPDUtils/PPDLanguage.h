// SPDX-License-Identifier: Apache-2.0
#pragma once

class PPDX;

// The reader's texts of *LanguageVersion and *LanguageEncoding, borrowed; null where the PPD has
// none.
char const* PPDLanguageVersion(PPDX* ppd);
char const* PPDLanguageEncoding(PPDX* ppd);
