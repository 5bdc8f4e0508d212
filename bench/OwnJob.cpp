// SPDX-License-Identifier: Apache-2.0
#include "bench/OwnJob.h"

#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "bench/Failure.h"
#include "bench/OwnPPD.h"
#include "platform/CFRef.h"

OwnJob::OwnJob(ZUBPPD& ppd, std::string const& path) {
    CFRef<CFURLRef> const url = OwnPPD::URL(path);
    if (PMCreateSession(&mSession) != noErr ||
        PMSessionSetCurrentPrinter(mSession, CFSTR("Bench"), url, nullptr) != noErr ||
        PMTicketCreate(TicketKey(kPrintSettingsTicketName), &mSettings) != noErr ||
        PMSessionSetTicket(mSession, TicketKey(kPrintSettingsTicket), mSettings) != noErr) {
        Fail(path + ": no print session");
    }
    mData = std::make_unique<PDEData>(mSession, &ppd, nullptr);
    if (!mData->IsValid() || Commit() == 0) {
        Fail(path + ": nothing to commit");
    }
}

OwnJob::~OwnJob() {
    mData.reset();
    PMDisposeSession(mSession);
    PMTicketReleaseAndClear(&mSettings);
}

long OwnJob::Commit() {
    PrintSettingsTicket settings(mSession);
    ZUBJobTicket ticket(&settings, CFSTR("bench"));
    return mData->OutPostscriptData(ticket) == noErr ? static_cast<long>(ticket.Count()) : 0;
}
