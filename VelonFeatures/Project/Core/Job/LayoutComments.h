// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/PrintManager.h"

class ZUBJobTicket;
class ZUBPPD;

// Adds the comments that tell the print server how pages lie on the sheet. `ppd` may be null.
// `orientation` takes the page format's own, and stays as it was where that has none: nothing is
// added then. 0, or the print manager's status for a ticket that the session doesn't have.
OSStatus AddLayoutComments(ZUBJobTicket& ticket, PMPrintSession session, ZUBPPD* ppd,
                           std::int32_t& orientation);
