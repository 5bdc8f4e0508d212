// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "platform/CFRef.h"
#include "tests/PPDLines.h"
#include "tests/PPDX/PPDObjects/PPDText.h"
#include "tests/VelonFeatures/Project/Core/TestSession.h"

// Two of each kind of option but the special one, two pages, and shortcuts to what has a lookup of
// its own.
inline PPDPtr ParseTwoOfEach() {
    std::string const flags = "Command|Spooler|Setup|MacVJN|MacIS|NoVelonDriverUI";
    std::string body = std::string(kTree) + "*%ZUBPropPage Second/Second: True\n";
    for (std::string const number : {"1", "2"}) {
        body += "*%ZUBFlags *R" + number + ": " + flags + "\n*%ZUBGroup *R" + number +
                ": Finish/Finishing\n*%ZUBRange *R" + number + "/Range: (2;20;5;10) \"<*R" +
                number + "> r\"\n*%ZUBFlags *F" + number + ":\n*%ZUBGroup *F" + number +
                ": Finish/Finishing\n*%ZUBFloatRange *F" + number +
                "/Float: (0.5;2;.25;1.5) \"<*F" + number + "> f\"\n" +
                PPDLines::Boolean("*B" + number) + "*%ZUBJobNote *N" + number + "/Note: 20\n";
    }
    for (char const* const keyword :
         {"*PageSize", "*InputSlot", "*ZUDuplex", "*ZU_PAPER_ORIENTATION"}) {
        body += PPDLines::Popup(keyword, {"A", "B"}) + "*%ZUShortcut " + keyword + "\n";
    }
    return ParseBody(body + "*%ParamCustomPrintSize Width: 1 points 72 1000\n" +
                     "*%ZUBSpecialOption *Server: 2.1\n*UIConstraints: *PageSize B *ZUDuplex B\n");
}

// The text of an error that a parser gave, which goes.
inline std::string Taken(PPDXErrorObj* error) {
    std::unique_ptr<PPDXErrorObj> const owned(error);
    return owned != nullptr ? std::to_string(owned->Code()) : "none";
}
