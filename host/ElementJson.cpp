// SPDX-License-Identifier: Apache-2.0
#include "host/ElementJson.h"

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/PPDXElement.h"

Json ElementJson::Names(PPDXElement& element) {
    return {{"keyword", JsonText::Bytes(element.Keyword())},
            {"name", JsonText::Text(element.CFStringUserName())}};
}

Json ElementJson::Parent(PPDXElement& element) {
    return element.IsOrphan() ? Json() : JsonText::Bytes(element.GetParent()->Keyword());
}
