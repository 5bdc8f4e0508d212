// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/PrintManager.h"

class ZUBPPD;

// Opens a session with the printer's workflow server and, for a new job, makes it there under the
// print job's name; two options then have its identifier as their value. Nothing happens without
// the server's library, and when one of the options that name server and workflow is missing.
void UploadToWorkflow(ZUBPPD* ppd, PMPrintSession session, bool isNewJob);
