// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PPDX/PPDObjects/Blanks.h"
#include "PPDX/PPDObjects/CodeBlock.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PopupItem.h"
#include "PPDX/PPDObjects/OwnedBy.h"
#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "constraints/UIConstraints.h"
#include "platform/CFRef.h"

// The lines that make options.

namespace {

constexpr std::string_view kClosers[] = {"*CloseUI", "*ZUCloseUI", "*CloseUIZUB", "*EndUI"};
constexpr std::string_view kSkippedCloser = "*CloseUIZUB";
constexpr std::string_view kOrder = "*OrderDependency";  // comes to nothing, in every block
constexpr std::string_view kDefault = "*Default";
constexpr char kInstallableGroup[] = "ZUPPInstallableOptions";
constexpr unsigned char kLastSeriesWithoutOptions = '2';

template <typename Words>
bool IsOneOf(Words const& words, std::string_view text) {
    return std::find(std::begin(words), std::end(words), text) != std::end(words);
}

// Most code begins and ends in its line, where it needn't be put together. False, with the line as
// it was, for any other.
bool TakeCodeOfOneLine(PPDStream& line, std::string_view& code) {
    std::string_view const rest = line.Rest();
    std::size_t const opening = rest.find('"');
    std::size_t const closing = opening != rest.npos ? rest.find('"', opening + 1) : rest.npos;
    if (closing == rest.npos) {
        return false;
    }
    code = rest.substr(opening + 1, closing - opening - 1);
    line.Skip(closing + 1);
    return true;
}

}  // namespace

// What stands in front of an option's code: views of the line.
struct ZUBPPD::OptionHead {
    std::string_view option;
    std::string_view translation;
    bool hasOption;
    bool hasTranslation;
};

// What the lines of a block give until its control can be made.
struct ZUBPPD::PopupBlock {
    PopupBlock() = default;
    PopupBlock(PopupBlock const&) = delete;
    PopupBlock& operator=(PopupBlock const&) = delete;
    ~PopupBlock() {
        for (auto it = items.Begin(); it != items.End(); ++it) {
            _PopupItem::Delete(static_cast<_PopupItem*>(*it));
        }
    }

    PointerList items;  // _PopupItem*, owned; they and their nodes lie in the PPD's arena
    std::unique_ptr<CString> defaultKeyword;
    bool defaultFound = false;
    long secondDefault = -1;  // the place of its line
};

struct ZUBPPD::BooleanBlock {
    struct State {
        std::unique_ptr<CString> text;
        CodeBlock code;
    };
    State trueState;
    State falseState;
    bool defaultSeen = false;
    bool defaultState = false;
};

// ---- From the flags line to the block ----

PPDXErrorObj* ZUBPPD::ParseControl(PPDStream& line) {
    char keyword[kTextSize];
    if (!NextToken(line, keyword, kKeywordDelimiters, true)) {
        return new PPDXErrorObj(kFlagsLineWithoutBlock, keyword, false);
    }
    if (FindControl(keyword) != nullptr) {
        return new PPDXErrorObj(kAlreadyExists, false);
    }
    PointerList flags;  // with its strings in the arena
    for (std::string_view word; NextToken(line, word, kWordDelimiters);) {
        if (!word.empty()) {
            flags.PushBack(new (mArena.PlaceFor<CString>()) CString(mArena, word), mArena);
        }
    }
    return ParseFlaggedBlock(keyword, flags);
}

ZUBPPD::BlockParser ZUBPPD::BlockParserOf(std::string_view token, bool inGroup) {
    struct Row {
        std::string_view token;
        bool onlyInGroup;
        BlockParser parse;
    };
    static constexpr Row kBlocks[] = {
        {"*%ZUBJobNote", true, &ZUBPPD::ParseJobNote},
        {"*%ZUBRange", true, &ZUBPPD::ParseRange},
        {"*%ZUBUnitRange", true, &ZUBPPD::ParseRange},
        {"*%ZUBFloatRange", true, &ZUBPPD::ParseFloatRange},
        {"*OpenUI", false, &ZUBPPD::ParseOpenUI},
        {"*ZUOpenUI", false, &ZUBPPD::ParseOpenUI},
        {"*BeginUI", false, &ZUBPPD::ParseOpenUI},
        {"*OpenUIZUB", false, &ZUBPPD::ParseOpenUIZUB},
    };
    auto const* const row = std::ranges::find(kBlocks, token, &Row::token);
    bool const fits = row != std::end(kBlocks) && (inGroup || !row->onlyInGroup);
    return fits ? row->parse : nullptr;
}

PPDXErrorObj* ZUBPPD::ParseFlaggedBlock(char const* keyword, PointerList& flags) {
    std::string_view token;
    PPDStream line;
    long const announced = Place();
    if (!NextLine(line, token)) {
        return nullptr;
    }
    if (token == "*%ZUBGroup") {
        return ParseGroup(line, keyword, flags);
    }
    BlockParser const parse = BlockParserOf(token, false);
    return parse != nullptr ? (this->*parse)(line, keyword, flags, nullptr)
                            : NoBlock(kFlagsLineWithoutBlock, keyword, announced);
}

// The line at fault is the one that announced a block.
PPDXErrorObj* ZUBPPD::NoBlock(short code, char const* keyword, long announced) {
    auto* const error = new PPDXErrorObj(code, keyword, false);
    error->SetPlace(announced);
    return error;
}

PPDXErrorObj* ZUBPPD::ParseGroup(PPDStream& line, char const* keyword, PointerList& flags) {
    char field[kTextSize];
    if (!NextToken(line, field, kKeywordDelimiters, true)) {
        return new PPDXErrorObj(kGroupLineWithoutBlock, field, false);
    }
    if (std::strcmp(field, keyword) != 0 || !NextToken(line, field, kNameDelimiters, true)) {
        return nullptr;
    }
    PPDXGroup* group = mGroups->Find(field, true);
    if (group == nullptr) {
        group = FindAndCreateParent(field);
    }
    return ParseGroupedBlock(keyword, flags, group);
}

PPDXErrorObj* ZUBPPD::ParseGroupedBlock(char const* keyword, PointerList& flags, PPDXGroup* group) {
    std::string_view token;
    PPDStream line;
    long const announced = Place();
    if (!NextLine(line, token)) {
        return nullptr;
    }
    BlockParser const parse = BlockParserOf(token, true);
    return parse != nullptr ? (this->*parse)(line, keyword, flags, group)
                            : NoBlock(kGroupLineWithoutBlock, keyword, announced);
}

PPDXErrorObj* ZUBPPD::ParseOpenUI(PPDStream& line, char const* keyword, PointerList& flags,
                                  PPDXGroup* group) {
    std::string_view key;
    char text[kTextSize];
    std::string_view kind;
    if (!NextToken(line, key, kNameDelimiters)) {
        return new PPDXErrorObj(kOpenerWithoutKeyword, keyword, false);
    }
    NextToken(line, text, kTranslationDelimiters, true);
    if (!NextToken(line, kind, kTypeDelimiters)) {
        return new PPDXErrorObj(kUnknownUIType, keyword, false);
    }
    bool const popup = kind == "PickOne" || kind == "PickMany";
    if (!popup && kind != "Boolean") {
        return new PPDXErrorObj(kUnknownUIType, keyword, false);
    }
    CFRef<CFStringRef> const translation(CopyTranslation(text));
    bool const pickMany = kind == "PickMany";
    return popup ? ParsePopupControl(keyword, translation, flags, group, pickMany)
                 : ParseBooleanControl(keyword, translation, flags, group);
}

PPDXErrorObj* ZUBPPD::ParseOpenUIZUB(PPDStream&, char const* keyword, PointerList&, PPDXGroup*) {
    AddError(kBlockSkipped, keyword, false);
    std::string_view token;
    for (PPDStream line; ReadLine(line);) {
        if (NextToken(line, token, kKeywordDelimiters) && token == kSkippedCloser) {
            return nullptr;
        }
    }
    return new PPDXErrorObj(kFileEndsInSkippedBlock, keyword, true);
}

// ---- The lines of a block ----

// Reads the block's lines and hands their heads to `takeHead` until a closing head. A head that
// nothing knows ends its line when it is the line's first.
template <typename TakeHead>
ZUBPPD::BlockEnd ZUBPPD::ReadBlock(TakeHead takeHead) {
    std::string_view head;
    for (PPDStream line; ReadLine(line);) {
        for (bool first = true; NextToken(line, head, kTranslationDelimiters); first = false) {
            if (IsOneOf(kClosers, head)) {
                return BlockEnd::kClosed;
            }
            HeadResult const result = takeHead(line, head);
            if (result == HeadResult::kFailed) {
                return BlockEnd::kFailed;
            }
            if (result == HeadResult::kLineDone || (result == HeadResult::kIgnored && first)) {
                break;
            }
        }
    }
    return BlockEnd::kFileEnded;
}

ZUBPPD::OptionHead ZUBPPD::CutOptionHead(std::string_view head, std::size_t keywordSize) {
    std::string_view named = head.substr(keywordSize);
    TakeWord(named);
    std::size_t const slash = named.find('/');
    std::string_view const option = named.substr(0, slash);
    std::string_view const translation =
        slash != named.npos ? named.substr(slash + 1) : std::string_view();
    return {WithoutBlanksAround(option), WithoutBlanksAround(translation), !option.empty(),
            !translation.empty()};
}

CodeBlock ZUBPPD::ReadCode(PPDStream& line) {
    CodeBlock code;
    char text[kPostScriptSize];
    unsigned long const size = GetPostscriptString(line, text, kPostScriptSize);
    if (size == 0) {
        return code;
    }
    code.bytes.reset(static_cast<unsigned char*>(std::malloc(size)));
    if (code.bytes != nullptr) {
        std::memcpy(code.bytes.get(), text, size);
        code.size = static_cast<long>(size);
    }
    return code;
}

PPDXErrorObj* ZUBPPD::WhyNoControl(char const* keyword, CFStringRef translation,
                                   PPDXGroup const* group) const {
    if (group == nullptr && !ParseOrphans()) {
        return new PPDXErrorObj(kControlWithoutGroup, keyword, false);
    }
    if (translation == nullptr && SeriesHasOptions()) {
        return new PPDXErrorObj(kOpenerWithoutKeyword, keyword, false);
    }
    return nullptr;
}

bool ZUBPPD::SeriesHasOptions() const {
    char const* const version = ZUVersion();
    return version != nullptr && static_cast<unsigned char>(*version) > kLastSeriesWithoutOptions;
}

// ---- Popups ----

PPDXErrorObj* ZUBPPD::ParsePopupControl(char const* keyword, CFStringRef translation,
                                        PointerList& flags, PPDXGroup* group,
                                        bool const& pickMany) {
    PopupBlock block;
    BlockEnd const end = ReadBlock([&](PPDStream& line, std::string_view head) {
        return TakePopupHead(line, head, keyword, block);
    });
    if (end == BlockEnd::kFileEnded || block.secondDefault >= 0) {
        auto* const error = new PPDXErrorObj(kSecondDefaultOrFileEnds, keyword, true);
        error->SetPlace(block.secondDefault);
        return error;
    }
    if (block.defaultKeyword == nullptr) {
        AddError(kBlockWithoutDefault, keyword, false);
    }
    PPDXErrorObj* const error = WhyNoControl(keyword, translation, group);
    if (error != nullptr || !SeriesHasOptions()) {
        return error;
    }
    if (!block.defaultFound && block.defaultKeyword != nullptr) {
        auto const* const first = static_cast<_PopupItem const*>(block.items.Front());
        block.defaultKeyword.reset(first != nullptr ? new CString(first->Keyword()) : nullptr);
    }
    bool const installable = group != nullptr && *group == kInstallableGroup;
    auto* const popup = new (std::nothrow)
        PPDXPopupControl(keyword, translation, flags, true, pickMany, installable, block.items,
                         block.defaultKeyword.get(), mConstraints);
    if (popup == nullptr) {
        return new PPDXErrorObj(kOutOfMemory, keyword, false);
    }
    flags.MakeEmpty();
    block.items.MakeEmpty();
    static_cast<void>(block.defaultKeyword.release());
    SetupControl(group, popup, true);
    if (popup->ItemCount() == 0) {
        return nullptr;
    }
    InternOptions(keyword, *popup);
    return nullptr;
}

void ZUBPPD::InternOptions(std::string_view keyword, PPDXPopupControl const& popup) {
    CStringSoup& texts = mConstraints->GetConstraintStrings();
    long const key = texts.Insert(keyword);
    std::vector<long> options;
    options.reserve(static_cast<std::size_t>(popup.ItemCount()));
    for (auto it = popup.Items().Begin(); it != popup.Items().End(); ++it) {
        auto const* const item = static_cast<_PopupItem const*>(*it);
        options.push_back(texts.Insert(item->KeywordText()));
    }
    mConstraints->KVSInsert(key, std::move(options));
}

ZUBPPD::HeadResult ZUBPPD::TakePopupHead(PPDStream& line, std::string_view head,
                                         std::string_view keyword, PopupBlock& block) {
    if (head == kOrder) {
        return HeadResult::kLineDone;
    }
    if (head.starts_with(kDefault)) {
        return head == kDefault ? TakeNamedDefault(line, keyword, block)
                                : TakePopupDefault(line, kNameDelimiters, block);
    }
    if (head.starts_with(keyword)) {
        return TakePopupOption(line, CutOptionHead(head, keyword.size()), block);
    }
    return HeadResult::kIgnored;
}

ZUBPPD::HeadResult ZUBPPD::TakeNamedDefault(PPDStream& line, std::string_view keyword,
                                            PopupBlock& block) {
    std::string_view name;
    return NextToken(line, name, kNameDelimiters) && name == keyword
               ? TakePopupDefault(line, kWordDelimiters, block)
               : HeadResult::kLineDone;
}

ZUBPPD::HeadResult ZUBPPD::TakePopupDefault(PPDStream& line, Delimiters const& delimiters,
                                            PopupBlock& block) {
    char value[kTextSize];
    if (NextToken(line, value, delimiters, true)) {
        if (block.defaultKeyword != nullptr) {
            block.secondDefault = Place();
        }
        block.defaultKeyword = std::make_unique<CString>(value);
    }
    return HeadResult::kTaken;
}

ZUBPPD::HeadResult ZUBPPD::TakePopupOption(PPDStream& line, OptionHead const& option,
                                           PopupBlock& block) {
    if (!option.hasOption) {
        return HeadResult::kLineDone;
    }
    _PopupItem* const item = _PopupItem::New(mArena, option.option);
    block.items.PushBack(item, mArena);
    block.defaultFound |=
        block.defaultKeyword != nullptr && *block.defaultKeyword == item->Keyword();
    if (option.hasTranslation) {
        NameItem(*item, option.translation);
    }
    ReadItemCode(line, *item);
    return HeadResult::kTaken;
}

void ZUBPPD::NameItem(_PopupItem& item, std::string_view name) {
    TextConverter const* const converter = GetTextConverter();
    std::uint32_t const encoding =
        converter != nullptr ? converter->EncodingOf(name) : TextConverter::kUnknownEncoding;
    if (encoding != TextConverter::kUnknownEncoding) {
        item.SetName(mArena, name, encoding);
    } else {
        item.mLocalName = CopyTranslation(std::string(name).c_str());
    }
}

void ZUBPPD::ReadItemCode(PPDStream& line, _PopupItem& item) {
    std::string_view code;
    if (TakeCodeOfOneLine(line, code)) {
        if (!code.empty()) {
            item.SetCode(mArena, code);
        }
        return;
    }
    char text[kPostScriptSize];
    unsigned long const size = GetPostscriptString(line, text, kPostScriptSize);
    if (size > 0) {
        item.SetCode(mArena, {text, size - 1});
    }
}

// ---- Booleans ----

PPDXErrorObj* ZUBPPD::ParseBooleanControl(char const* keyword, CFStringRef translation,
                                          PointerList& flags, PPDXGroup* group) {
    BooleanBlock block;
    BlockEnd const end = ReadBlock([&](PPDStream& line, std::string_view head) {
        return TakeBooleanHead(line, head, keyword, block);
    });
    if (end == BlockEnd::kFailed) {
        return new PPDXErrorObj(kStateNeitherTrueNorFalse, keyword, false);
    }
    if (end == BlockEnd::kFileEnded) {
        return nullptr;
    }
    if (!block.defaultSeen) {
        AddError(kBlockWithoutDefault, keyword, false);
    }
    PPDXErrorObj* const error = WhyNoControl(keyword, translation, group);
    if (error != nullptr || !SeriesHasOptions()) {
        return error;
    }
    auto* const boolean = new (std::nothrow)
        PPDXBooleanControl(keyword, translation, flags, true, block.trueState.text.get(),
                           block.trueState.code.bytes.get(), block.trueState.code.size,
                           block.falseState.text.get(), block.falseState.code.bytes.get(),
                           block.falseState.code.size, block.defaultState, mConstraints);
    if (boolean == nullptr) {
        return new PPDXErrorObj(kOutOfMemory, keyword, true);
    }
    flags.MakeEmpty();
    for (BooleanBlock::State* state : {&block.trueState, &block.falseState}) {
        static_cast<void>(state->text.release());
        static_cast<void>(state->code.bytes.release());
    }
    SetupControl(group, boolean, true);
    mConstraints->KVSInsert(keyword, "True");
    mConstraints->KVSInsert(keyword, "False");
    return nullptr;
}

ZUBPPD::HeadResult ZUBPPD::TakeBooleanHead(PPDStream& line, std::string_view head,
                                           std::string_view keyword, BooleanBlock& block) {
    if (head == kOrder) {
        return HeadResult::kLineDone;
    }
    if (head.starts_with(kDefault)) {
        std::string_view value;
        NextToken(line, value, kNameDelimiters);
        block.defaultSeen = true;
        block.defaultState = value == "True";
        return HeadResult::kTaken;
    }
    if (!head.starts_with(keyword)) {
        return HeadResult::kIgnored;
    }
    OptionHead const option = CutOptionHead(head, keyword.size());
    bool const isTrue = option.option == "True";
    if (!isTrue && option.option != "False") {
        return HeadResult::kFailed;
    }
    BooleanBlock::State& state = isTrue ? block.trueState : block.falseState;
    state.text.reset(option.hasTranslation ? new (std::nothrow)
                                                 CString(std::string(option.translation).c_str())
                                           : nullptr);
    state.code = ReadCode(line);
    return HeadResult::kTaken;
}

// ---- Placing controls ----

PPDXControl* ZUBPPD::FindControl(char const* keyword) const {
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    return ::Find(mControls, keyword, type, true);
}

void ZUBPPD::SetupControl(PPDXGroup* group, PPDXControl* control, bool warn) {
    if (control == nullptr) {
        return;
    }
    std::unique_ptr<PPDXControl> owned(control);
    if (group == nullptr && mInsideInstallableOptions) {
        group = mInstallableRollDown;
    }
    auto* const rollDown = dynamic_cast<PPDXRollDown*>(group);
    PPDXControls* const siblings = rollDown != nullptr ? rollDown->Controls() : nullptr;
    if (siblings != nullptr) {
        control->SetParent(rollDown);
    } else if (rollDown == nullptr && warn && (group != nullptr || ParseOrphans())) {
        AddError(kControlWithoutRollDown, control->Keyword(), false);
    }
    AddOwned(*mControls, std::move(owned));
    if (siblings != nullptr && !siblings->Add(control)) {
        throw std::bad_alloc();
    }
    ControlTaken(*control);
}

void ZUBPPD::ClearStringList(PointerList& strings) {
    for (; !strings.Empty(); strings.PopBack()) {
        delete static_cast<CString*>(strings.Back());
    }
}

// ---- Popups made at run time ----

PPDXControl* ZUBPPD::PPDCreatePopupMenu(char const* groupName, char const* keyword,
                                        char const* translation, PointerList& items,
                                        CString* defaultItem) {
    if (GetTextConverter() == nullptr || groupName == nullptr || translation == nullptr) {
        return nullptr;
    }
    CFRef<CFStringRef> const name(CopyTranslation(translation));
    if (!name) {
        return nullptr;
    }
    if (CFRef<CFStringRef> const groupTranslation(CopyTranslation(groupName)); groupTranslation) {
        AddGroupNameToList(groupName, groupTranslation, true);
    }
    PPDXGroup* const group = mGroups->Find(groupName, true);
    PointerList flags;
    auto* const popup = new (std::nothrow) PPDXPopupControl(
        keyword, name, flags, true, false, false, items, defaultItem, mConstraints);
    SetupControl(group, popup, true);
    return popup;
}

bool ZUBPPD::PPDReconcilePopupMenu(char const* keyword, char const* name, PointerList& items,
                                   CString* defaultItem) {
    auto* const popup = dynamic_cast<PPDXPopupControl*>(FindControl(keyword));
    return popup != nullptr && popup->Rebuild(name, items, defaultItem);
}
