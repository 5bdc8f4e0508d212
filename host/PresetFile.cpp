// SPDX-License-Identifier: Apache-2.0
#include "host/PresetFile.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/ControlNames.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"
#include "platform/CFRef.h"

namespace {

constexpr int kVersion = 1;
constexpr int kDeepest = 4;                   // what is nested deeper is passed over
constexpr std::size_t kLongest = 16U << 20U;  // bytes of a file

bool IsPortable(PPDXControl& control) {
    if (control.Type() == kCustomPageSizeType) {
        auto const& size = static_cast<PPDXCustomPageSizeControl&>(control);
        return size.GetWidth() > 0 && size.GetHeight() > 0;
    }
    constexpr CNTL_TYPE kPortable[] = {kPopupType, kBooleanType, kRangeType, kFloatRangeType};
    return std::ranges::find(kPortable, control.Type()) != std::end(kPortable);
}

bool IsOffered(PPDXControl& control) {
    PPDXElement const* const group = control.GetParent();
    return control.Keyword() != nullptr && control.IsVisible() && group != nullptr &&
           group->IsVisible() && !ControlNames::IsHardware(control);
}

bool IsByDefault(PPDXControl& control) {
    switch (control.Type()) {
        case kPopupType: {
            auto& popup = static_cast<PPDXPopupControl&>(control);
            return popup.GetValue() == popup.DefaultValue();
        }
        case kBooleanType: {
            auto const& boolean = static_cast<PPDXBooleanControl&>(control);
            return boolean.IsTrue() == boolean.DefaultState();
        }
        case kRangeType: {
            auto const& range = static_cast<PPDXRangeControl&>(control);
            return range.GetValue() == range.DefaultValue();
        }
        case kFloatRangeType: {
            auto const& range = static_cast<PPDXFloatRangeControl&>(control);
            return !(range.GetValue() < range.DefaultValue()) &&
                   !(range.GetValue() > range.DefaultValue());
        }
        default:
            return false;
    }
}

std::string ValueOf(PPDXControl& control) {
    CFRef<CFStringRef> const value(control.CopyCurrentControlValueString());
    return value ? JsonText::ToUTF8(value) : std::string();
}

// A text, or a number or truth value as somebody may write it by hand.
std::string TextIn(Json const& object, char const* key) {
    auto const found = object.find(key);
    if (found == object.end()) {
        return {};
    }
    if (found->is_boolean()) {
        return found->get<bool>() ? "True" : "False";
    }
    return found->is_string()   ? found->get<std::string>()
           : found->is_number() ? found->dump()
                                : std::string();
}

// The option of a choice in this control: by keyword, else by its name. Empty for none; a number
// and a colour profile take any value.
std::string OptionFor(ZUBPPD const& ppd, PPDXControl& control, std::string const& value,
                      std::string const& valueName) {
    std::vector<std::string> const options = ControlNames::Choices(control);
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    bool const takesAny = options.empty() || (popup != nullptr && popup->TakesUnknownValues());
    if (takesAny || std::ranges::count(options, value) > 0) {
        return value;
    }
    std::vector<std::string> const names = PeopleText::NamesOfChoices(ppd, control);
    auto const named = std::ranges::find(names, valueName);
    return valueName.empty() || named == names.end()
               ? std::string()
               : options[static_cast<std::size_t>(named - names.begin())];
}

// The controls that a preset may speak of, by keyword and by the names that people see.
class Offers {
  public:
    explicit Offers(ZUBPPD& ppd) {
        for (PPDXControl* const control : ControlNames::All(ppd)) {
            if (IsOffered(*control)) {
                mByKeyword.emplace(JsonText::Bytes(control->Keyword()), control);
                mByName.emplace(PeopleText::NameOf(*control), control);
            }
        }
    }

    // Null for none. The star may be left off.
    PPDXControl* WithKeyword(std::string const& keyword) const {
        PPDXControl* const control = In(mByKeyword, keyword);
        return control == nullptr ? In(mByKeyword, '*' + keyword) : control;
    }
    PPDXControl* WithName(std::string const& name) const { return In(mByName, name); }

  private:
    using Controls = std::map<std::string, PPDXControl*>;

    static PPDXControl* In(Controls const& controls, std::string const& text) {
        auto const found = controls.find(text);
        return found == controls.end() ? nullptr : found->second;
    }

    Controls mByKeyword;
    Controls mByName;  // the first of each
};

}  // namespace

Outcome PresetFile::Write(ZUBPPD& ppd, std::string const& path) {
    Json choices = Json::array();
    for (PPDXControl* const control : ControlNames::All(ppd)) {
        std::string const value = ValueOf(*control);
        if (IsOffered(*control) && IsPortable(*control) && !value.empty()) {
            choices.push_back({{"keyword", JsonText::Bytes(control->Keyword())},
                               {"name", PeopleText::NameOf(*control)},
                               {"value", value},
                               {"valueName", PeopleText::NameOf(ppd, *control, value)},
                               {"byDefault", IsByDefault(*control)}});
        }
    }
    Json const preset = {{"preset", kVersion},
                         {"printer", JsonText::Bytes(ppd.ModelName())},
                         {"choices", std::move(choices)}};
    return HostFiles::Write(path, preset.dump(2) + '\n');
}

Outcome PresetFile::Read(std::string const& path) {
    if (Outcome outcome = HostFiles::CheckReadable(path); !outcome.Ok()) {
        return outcome;
    }
    mPath = path;
    std::ifstream file(path, std::ios::binary);
    std::string text(kLongest + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    auto const isShallow = [](int depth, Json::parse_event_t, Json const&) {
        return depth <= kDeepest;
    };
    Json const preset = text.size() > kLongest ? Json() : Json::parse(text, isShallow, false);
    if (!preset.is_object() || !preset.contains("preset")) {
        return Outcome::Failed(path +
                               " is no preset, or is damaged; zubprint print --save-preset "
                               "writes one");
    }
    auto const choices = preset.find("choices");
    if (preset["preset"] != kVersion || choices == preset.end() || !choices->is_array()) {
        return Outcome::Failed(path + " is a preset of another form than " +
                               std::to_string(kVersion) + ", which this program reads");
    }
    mPrinter = TextIn(preset, "printer");
    for (Json const& choice : *choices) {
        if (!choice.is_object() || TextIn(choice, "keyword").empty()) {
            return Outcome::Failed(path + ": choice " + std::to_string(mChoices.size() + 1) +
                                   " has no keyword");
        }
        mChoices.push_back({TextIn(choice, "keyword"), TextIn(choice, "name"),
                            TextIn(choice, "value"), TextIn(choice, "valueName"),
                            TextIn(choice, "byDefault") == "True"});
    }
    return Outcome::Done();
}

std::string PresetFile::Told(Choice const& choice) {
    std::string const pair = choice.keyword + '=' + choice.value;
    return choice.name.empty()
               ? pair
               : choice.name + ": " + (choice.valueName.empty() ? choice.value : choice.valueName) +
                     " (" + pair + ')';
}

std::vector<ControlSetting> PresetFile::SettingsFor(ZUBPPD& ppd, std::ostream& err,
                                                    std::size_t& missed) const {
    std::vector<ControlSetting> settings;
    if (mPath.empty()) {
        return settings;
    }
    std::size_t defaults = 0;
    Offers const offers(ppd);
    for (Choice const& choice : mChoices) {
        PPDXControl* control = offers.WithKeyword(choice.keyword);
        bool const byName = control == nullptr;
        control = byName ? offers.WithName(choice.name) : control;
        std::string const option =
            control == nullptr ? "" : OptionFor(ppd, *control, choice.value, choice.valueName);
        if (choice.byDefault && (option.empty() || byName)) {
            ++defaults;  // what stands by default here is as good
        } else if (!option.empty()) {
            settings.push_back({control->Keyword(), WipedText(option)});
            if (byName || option != choice.value) {
                err << Outcome::Line(mPath + ": " + Told(choice) + " is taken by its name as " +
                                     PeopleText::Bytes(control->Keyword()) + '=' + option);
            }
        } else {
            ++missed;
            err << Outcome::Line(
                mPath + ": not taken: " + Told(choice) + ", this printer" +
                (control == nullptr ? " has no such option"
                                    : "'s " + PeopleText::NameOf(*control) + " has no such choice" +
                                          ControlNames::AskChoice(ppd, *control, choice.value)));
        }
    }
    TellCount(settings, defaults, err);
    return settings;
}

// For another printer also what was taken, since nobody may expect it there.
void PresetFile::TellCount(std::vector<ControlSetting> const& settings, std::size_t defaults,
                           std::ostream& err) const {
    std::string text = mPath + ": found " + std::to_string(settings.size()) + " of " +
                       std::to_string(mChoices.size()) + " choices";
    if (settings.size() < mChoices.size()) {
        std::vector<std::string> keywords;
        keywords.reserve(settings.size());
        for (ControlSetting const& setting : settings) {
            keywords.push_back(PeopleText::Bytes(setting.keyword));
        }
        text += (mPrinter.empty() ? "" : " that were saved for " + mPrinter) +
                (keywords.empty() ? "" : ": " + Suggestions::List(keywords, "and"));
    }
    if (defaults > 0) {
        text += "; " + std::to_string(defaults) + " more, which stood at their defaults, are left";
    }
    err << Outcome::Line(text);
}
