// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/CoreFoundation.h"

// The XML text of a property list that is one array, written element by element: for an array that
// is only written, without an object for each element. The text is the same that
// CFPropertyListCreateXMLData makes of such an array.
class PropertyListArray {
  public:
    void AddInteger(std::int64_t number);
    void AddData(std::uint8_t const* bytes, std::size_t length);
    // Closes the array. The caller releases the text; null when the memory for it or for one of
    // the elements was missing.
    CFDataRef CreateXMLData();

  private:
    std::string mElements;
    bool mComplete = true;
};
