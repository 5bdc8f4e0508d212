// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

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

PPDStream StreamOf(char const* text) {
    return PPDStream(text, static_cast<long>(std::strlen(text)));
}

}  // namespace

// One option line, cut into its fields.
struct ZUBPPD::OptionLine {
    char option[kTextSize];
    char translation[kTextSize];
    bool hasOption;
    bool hasTranslation;
    CodeBlock code;
};

// The words of a flags line, until a control takes them.
struct ZUBPPD::FlagWords {
    FlagWords() = default;
    FlagWords(FlagWords const&) = delete;
    FlagWords& operator=(FlagWords const&) = delete;
    ~FlagWords() { ClearStringList(words); }

    PointerList words;  // CString*, owned
};

// What the lines of a block give until its control can be made.
struct ZUBPPD::PopupBlock {
    PopupBlock() = default;
    PopupBlock(PopupBlock const&) = delete;
    PopupBlock& operator=(PopupBlock const&) = delete;
    ~PopupBlock() {
        for (; !items.Empty(); items.PopBack()) {
            delete static_cast<_PopupItem*>(items.Back());
        }
    }

    PointerList items;  // _PopupItem*, owned
    std::unique_ptr<CString> defaultKeyword;
    std::unique_ptr<CString> firstOption;
    bool defaultFound = false;
    bool secondDefault = false;
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
    FlagWords flags;
    for (char word[kTextSize]; NextToken(line, word, kWordDelimiters, true);) {
        if (word[0] != '\0') {
            PushOwned(flags.words, std::make_unique<CString>(word));
        }
    }
    return ParseFlaggedBlock(keyword, flags.words);
}

ZUBPPD::BlockParser ZUBPPD::BlockParserOf(std::string_view token, bool inGroup) {
    struct Row {
        std::string_view token;
        bool onlyInGroup;
        BlockParser parse;
    };
    static constexpr Row kBlocks[] = {
        {"*%ZUBJobNote", true, &ZUBPPD::PassOver},
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
    char text[PPDStream::kLineSize];
    char token[kTextSize];
    PPDStream line;
    if (!NextLine(text, line, token)) {
        return nullptr;
    }
    if (std::strcmp(token, "*%ZUBGroup") == 0) {
        return ParseGroup(line, keyword, flags);
    }
    BlockParser const parse = BlockParserOf(token, false);
    return parse != nullptr ? (this->*parse)(line, keyword, flags, nullptr)
                            : new PPDXErrorObj(kFlagsLineWithoutBlock, keyword, false);
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
    char text[PPDStream::kLineSize];
    char token[kTextSize];
    PPDStream line;
    if (!NextLine(text, line, token)) {
        return nullptr;
    }
    BlockParser const parse = BlockParserOf(token, true);
    return parse != nullptr ? (this->*parse)(line, keyword, flags, group)
                            : new PPDXErrorObj(kGroupLineWithoutBlock, keyword, false);
}

// Job notes have no class yet: such a line makes nothing.
PPDXErrorObj* ZUBPPD::PassOver(PPDStream&, char const*, PointerList&, PPDXGroup*) {
    return nullptr;
}

PPDXErrorObj* ZUBPPD::ParseOpenUI(PPDStream& line, char const* keyword, PointerList& flags,
                                  PPDXGroup* group) {
    char key[kTextSize];
    char text[kTextSize];
    char type[kTextSize];
    if (!NextToken(line, key, kNameDelimiters, true)) {
        return new PPDXErrorObj(kOpenerWithoutKeyword, keyword, false);
    }
    NextToken(line, text, kTranslationDelimiters, true);
    if (!NextToken(line, type, kTypeDelimiters, true)) {
        return new PPDXErrorObj(kUnknownUIType, keyword, false);
    }
    std::string_view const kind = type;
    bool const popup = kind == "PickOne" || kind == "PickMany";
    if (!popup && kind != "Boolean") {
        return new PPDXErrorObj(kUnknownUIType, keyword, false);
    }
    CFRef<CFStringRef> const translation(CopyTranslation(text));
    return popup ? ParsePopupControl(keyword, translation, flags, group, kind == "PickMany")
                 : ParseBooleanControl(keyword, translation, flags, group);
}

PPDXErrorObj* ZUBPPD::ParseOpenUIZUB(PPDStream&, char const* keyword, PointerList&, PPDXGroup*) {
    AddError(kBlockSkipped, keyword, false);
    char text[PPDStream::kLineSize];
    char token[kTextSize];
    while (ReadLine(text)) {
        PPDStream line = StreamOf(text);
        if (NextToken(line, token, kKeywordDelimiters, true) && token == kSkippedCloser) {
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
    char text[PPDStream::kLineSize];
    char head[kTextSize];
    while (ReadLine(text)) {
        PPDStream line = StreamOf(text);
        for (bool first = true; NextToken(line, head, kTranslationDelimiters, true);
             first = false) {
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

void ZUBPPD::CutOptionHead(char const* head, OptionLine& option) {
    PPDStream stream = StreamOf(head);
    char word[kTextSize];
    NextToken(stream, word, kKeywordDelimiters, true);
    option.hasOption = NextToken(stream, option.option, kNameDelimiters, true);
    option.hasTranslation = NextToken(stream, option.translation, kTranslationDelimiters, true);
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
    BlockEnd const end = ReadBlock([&](PPDStream& line, char const* head) {
        return TakePopupHead(line, head, keyword, block);
    });
    if (end == BlockEnd::kFileEnded || block.secondDefault) {
        return new PPDXErrorObj(kSecondDefaultOrFileEnds, keyword, true);
    }
    if (block.defaultKeyword == nullptr) {
        AddError(kBlockWithoutDefault, keyword, false);
    }
    PPDXErrorObj* const error = WhyNoControl(keyword, translation, group);
    if (error != nullptr || !SeriesHasOptions()) {
        return error;
    }
    if (!block.defaultFound && block.defaultKeyword != nullptr) {
        block.defaultKeyword = std::move(block.firstOption);
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
    CStringSoup& texts = mConstraints->GetConstraintStrings();
    for (_PopupItem* item = popup->FirstItem(); item != nullptr; item = popup->NextItem()) {
        long const key = texts.Insert(keyword);
        mConstraints->KVSInsert(key, texts.Insert(item->Keyword()));
    }
    return nullptr;
}

ZUBPPD::HeadResult ZUBPPD::TakePopupHead(PPDStream& line, char const* head, char const* keyword,
                                         PopupBlock& block) {
    std::string_view const text = head;
    if (text == kOrder) {
        return HeadResult::kLineDone;
    }
    if (text.starts_with(kDefault)) {
        return TakePopupDefault(line, text == kDefault ? keyword : nullptr, block);
    }
    if (text.starts_with(keyword)) {
        return TakePopupOption(line, head, block);
    }
    return HeadResult::kIgnored;
}

// In the long form, "*Default: keyword: value", the line names the option that it is about.
ZUBPPD::HeadResult ZUBPPD::TakePopupDefault(PPDStream& line, char const* keyword,
                                            PopupBlock& block) {
    char text[kTextSize];
    if (keyword != nullptr &&
        (!NextToken(line, text, kNameDelimiters, true) || std::strcmp(text, keyword) != 0)) {
        return HeadResult::kLineDone;
    }
    if (!NextToken(line, text, keyword != nullptr ? kWordDelimiters : kNameDelimiters, true)) {
        return HeadResult::kTaken;
    }
    block.secondDefault |= block.defaultKeyword != nullptr;
    block.defaultKeyword = std::make_unique<CString>(text);
    return HeadResult::kTaken;
}

ZUBPPD::HeadResult ZUBPPD::TakePopupOption(PPDStream& line, char const* head, PopupBlock& block) {
    OptionLine option;
    CutOptionHead(head, option);
    if (!option.hasOption) {
        return HeadResult::kLineDone;
    }
    option.code = ReadCode(line);
    auto item = std::make_unique<_PopupItem>();
    item->mKeyword = new CString(option.option);
    if (block.firstOption == nullptr) {
        block.firstOption = std::make_unique<CString>(option.option);
    }
    block.defaultFound |= block.defaultKeyword != nullptr && *block.defaultKeyword == option.option;
    item->mLocalName = option.hasTranslation ? CopyTranslation(option.translation) : nullptr;
    item->mPSLength = static_cast<std::int32_t>(option.code.size);
    item->mPSCode = option.code.bytes.release();
    if (item->Keyword() == nullptr) {
        throw std::bad_alloc();
    }
    PushOwned(block.items, std::move(item));
    return HeadResult::kTaken;
}

// ---- Booleans ----

PPDXErrorObj* ZUBPPD::ParseBooleanControl(char const* keyword, CFStringRef translation,
                                          PointerList& flags, PPDXGroup* group) {
    BooleanBlock block;
    BlockEnd const end = ReadBlock([&](PPDStream& line, char const* head) {
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

ZUBPPD::HeadResult ZUBPPD::TakeBooleanHead(PPDStream& line, char const* head, char const* keyword,
                                           BooleanBlock& block) {
    std::string_view const text = head;
    if (text == kOrder) {
        return HeadResult::kLineDone;
    }
    if (text.starts_with(kDefault)) {
        char value[kTextSize];
        NextToken(line, value, kNameDelimiters, true);
        block.defaultSeen = true;
        block.defaultState = std::strcmp(value, "True") == 0;
        return HeadResult::kTaken;
    }
    if (!text.starts_with(keyword)) {
        return HeadResult::kIgnored;
    }
    OptionLine option;
    CutOptionHead(head, option);
    bool const isTrue = std::strcmp(option.option, "True") == 0;
    if (!isTrue && std::strcmp(option.option, "False") != 0) {
        return HeadResult::kFailed;
    }
    option.code = ReadCode(line);
    BooleanBlock::State& state = isTrue ? block.trueState : block.falseState;
    state.text.reset(option.hasTranslation ? new (std::nothrow) CString(option.translation)
                                           : nullptr);
    state.code = std::move(option.code);
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
