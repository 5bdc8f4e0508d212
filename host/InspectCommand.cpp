// SPDX-License-Identifier: Apache-2.0
#include "host/InspectCommand.h"

#include <memory>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "host/ExtensionsScope.h"
#include "host/HostFiles.h"
#include "host/TreeJson.h"

namespace {

// The archive goes through its flat form, as on the way to a print ticket.
bool PassThroughArchive(ZUBPPD& ppd, Settings& archive) {
    Settings saved;
    CFDataStream stream;
    return ppd.Save(saved) && saved.Save(&stream) == noErr && archive.Read(&stream, 0) == noErr;
}

}  // namespace

Outcome InspectCommand::Run() {
    ExtensionsScope const level(mOptions.extensions);
    return PPDCommand::Run();
}

Outcome InspectCommand::Answer(ZUBPPD& ppd, std::ostream& out) {
    if (mOptions.rebuilt) {
        return AnswerRebuilt(ppd, out);
    }
    TreeJson::Write(ppd, out);
    return Outcome::Done();
}

Outcome InspectCommand::AnswerRebuilt(ZUBPPD& ppd, std::ostream& out) {
    Settings archive;
    if (!PassThroughArchive(ppd, archive)) {
        return Outcome::Failed(mOptions.ppd + " can't be saved into an archive");
    }
    std::unique_ptr<ZUBPPD, ReleasePPD> const rebuilt(new ZUBPPD(
        archive, HostFiles::URL(mOptions.ppd, false), ParsedPPD::Names(mOptions.accepted)));
    TreeJson::Write(*rebuilt, out);
    return Outcome::Done();
}
