// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// Lines of a PPD that make an option outside all groups.
class PPDLines {
  public:
    // A list at its first option; none of them has code.
    static std::string Popup(std::string const& keyword, std::vector<std::string> const& options) {
        std::string lines = Opening(keyword, "PickOne") + "*Default" + keyword.substr(1) + ": " +
                            options.front() + "\n";
        for (std::string const& option : options) {
            lines.append(keyword).append(" ").append(option).append("/O: \"\"\n");
        }
        return lines + "*CloseUI: " + keyword + "\n";
    }
    // A switch that is off.
    static std::string Boolean(std::string const& keyword) {
        return Opening(keyword, "Boolean") + "*Default" + keyword.substr(1) +
               ": False\n*CloseUI: " + keyword + "\n";
    }

  private:
    static std::string Opening(std::string const& keyword, std::string const& type) {
        return "*%ZUBFlags " + keyword + ":\n*OpenUI " + keyword + "/Option: " + type + "\n";
    }
};
