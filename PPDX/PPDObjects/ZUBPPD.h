// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/PPDX.h"
#include "ZUBUtils/PPDUtils/Arena.h"
#include "ZUBUtils/PPDUtils/PointerList.h"
#include "ZUBUtils/PPDUtils/TextHash.h"

class GroupName;
class PPDXControl;
class PPDXControls;
class PPDXCustomPageSizeControl;
class PPDXGroup;
class PPDXGroups;
class PPDXPopupControl;
class PPDXProperties;
class PPDXRollDown;
class PPDXShortcuts;
class UIConstraints;
struct CodeBlock;
struct _PopupItem;

// What a parse takes in beside visible elements that have a parent.
enum _PARSE_OPTIONS_ : std::int32_t {
    kParsePlacedAndVisible = 0,
    kParseOrphans = 1,
    kParseHidden = 2,
    kParseAll = 3
};

// Which rows of the job note flags a file may use: -1 all of them, 0, 1 and 2 fewer.
enum _EXTENSIONS_SUPPORT_ : std::int32_t {
    kExtensionsAll = -1,
    kExtensionsLevel0 = 0,
    kExtensionsLevel1 = 1,
    kExtensionsLevel2 = 2
};

// A parsed PPD: the root of the option tree, and the owner of every element and control in it.
//
// A file is read once, in a single pass, while the object is constructed; what stood in the way is
// in GetErrors(). An option exists only where a *%ZUBFlags line introduces its block.
class ZUBPPD : public PPDX, public DisplayOptions {
  public:
    // An empty tree without a file.
    explicit ZUBPPD(_PARSE_OPTIONS_ options);
    // Read the file. `acceptedNames` holds the *PCFileName fragments that are served, is borrowed
    // for the length of the construction, and accepts every file when null. A file that isn't
    // accepted is not parsed: IsValidPrinterName() tells.
    ZUBPPD(CFURLRef url, _PARSE_OPTIONS_ options, CFArrayRef acceptedNames);
    ZUBPPD(FSSpec const& file, _PARSE_OPTIONS_ options, CFArrayRef acceptedNames);
    // Rebuilds the tree that Save put into an archive, without reading the file at `url`, of which
    // only the name is checked. What the archive lacks is missing here: there are no rules, so
    // nothing is constrained, and no errors. A damaged archive gives a smaller tree.
    ZUBPPD(Settings& settings, CFURLRef url, CFArrayRef acceptedNames);
    ~ZUBPPD() override;

    // Whether both were made from the same file and its *PCFileName hasn't changed in between.
    // False for a reader without a file.
    bool operator==(ZUBPPD const& other) const;

    void Parse() override;
    PPDXErrorObj* ParsePSKeywords(PPDStream& line, char const* keyword) override;
    // Adds a popup to a tree at run time. The items and the default pass to it unless the result
    // is null, as it is when a name doesn't convert or the text converter is missing.
    virtual PPDXControl* PPDCreatePopupMenu(char const* groupName, char const* keyword,
                                            char const* translation, PointerList& items,
                                            CString* defaultItem);
    // Gives an existing popup a new list; false when there is no such popup. Items and default
    // pass to the popup when the result is true.
    virtual bool PPDReconcilePopupMenu(char const* keyword, char const* name, PointerList& items,
                                       CString* defaultItem);

    // Adds header, tree and values to an archive, hidden elements and orphans too. False at the
    // first entry that is refused: the archive is no good then.
    bool Save(Settings& settings);
    // Takes the values of all controls from an archive of this very PPD, in which each is found by
    // its place in the list. False at the first value that isn't there; those before it are taken.
    bool Restore(Settings& settings);

    PPDXControls* GetControls() const { return mControls; }
    PPDXGroups* GetGroups() const { return mGroups; }
    PPDXProperties* GetProperties() const { return mProperties; }
    PPDXShortcuts* GetShortcuts() const { return mShortcuts; }
    UIConstraints* GetUIConstraints() const { return mConstraints; }

    // The text of *%ZUVersion; its first byte gates options and parts of the job. Null when the
    // keyword wasn't seen.
    char const* ZUVersion() const;
    char const* ZUFileVersion() const;

    // ---- Values by keyword ----

    // Null when no control has exactly this keyword, and for keys of more than 40 characters or
    // with one beyond ASCII. Sees every control, whatever the display option.
    PPDXControl* GetPPDXControlForKey(CFStringRef key) const;
    // A preset's value for a control: an unknown key, or a null value, changes nothing.
    void SetValueForKey(CFStringRef key, CFStringRef value);
    // The caller releases the value; null for an unknown key and for a control without a value.
    CFStringRef CopyValueForKey(CFStringRef key) const;
    // The values by keyword of the controls that a walk shows; one without a value is left out, and
    // of controls with the same keyword the first counts. The caller releases the dictionary; null
    // without memory.
    CFDictionaryRef CopyAllValues();
    // Gives the controls that a walk shows their values from such a dictionary. Installable options
    // stay as they are: what is built into the printer is no matter of a preset.
    void SetAllValues(CFDictionaryRef values);

    // Whether selecting this option would conflict with what is selected now; ids are those of
    // GetUIConstraints(). See UIConstraints for unknown ones.
    bool IsKVConstrained(long key, long option);
    // The same by text, as the panel asks. While *ZUPrintSize stands at "SameAsPageSize" the
    // question is asked with the size that this comes to: the control has it meanwhile, and
    // whoever follows changes of values hears of both.
    bool IsKVConstrained(char const* key, char const* option);

    // The paper of the page format is no paper of this PPD.
    bool CustomPaper() const { return mCustomPaper; }
    void SetCustomPaper(bool custom) { mCustomPaper = custom; }

    bool ParseOrphans() const { return (mParseOptions & kParseOrphans) != 0; }
    bool ParseHidden() const { return (mParseOptions & kParseHidden) != 0; }

    static _EXTENSIONS_SUPPORT_ GetExtensions() { return sExtensionsSupport; }
    static void SetExtensions(_EXTENSIONS_SUPPORT_ level) { sExtensionsSupport = level; }
    static _EXTENSIONS_SUPPORT_ sExtensionsSupport;

    // Turns the parent names that an archive left in the elements into links. An element whose
    // parent isn't there becomes an orphan. Reaches what the display option lets through: the
    // caller sets it to 3.
    void ResolveHeirarchy();

    // Puts a control into its roll-down and into the tree, which owns it from here on. With `warn`
    // a control that ends up without a parent is reported as error 29.
    void SetupControl(PPDXGroup* group, PPDXControl* control, bool warn);

    // ---- The grammar of the option lines ----
    //
    // Each takes a line behind its keyword, and the lines of a block from the stream that Parse
    // reads: outside of it a block ends at once. What comes out is added to the tree. The error,
    // which the caller then owns, or null.

    // Layout, rules and shortcuts.
    PPDXErrorObj* ParsePropertyPage(PPDStream& line);
    PPDXErrorObj* ParseGroupName(PPDStream& line);
    PPDXErrorObj* ParseParent(PPDStream& line);
    PPDXErrorObj* ParseUIConstraint(PPDStream& line, bool requirement);
    PPDXErrorObj* ParseShortcut(PPDStream& line);

    // Controls. `flags` holds the words of the flags line (CString*): a control takes them and
    // leaves the list empty, otherwise they stay the caller's; with nodes in an arena they are
    // there too, and nobody's. `group` is borrowed and may be null;
    // `translation` is the control's display name.
    PPDXErrorObj* ParseControl(PPDStream& line);
    PPDXErrorObj* ParseGroup(PPDStream& line, char const* keyword, PointerList& flags);
    PPDXErrorObj* ParseOpenUI(PPDStream& line, char const* keyword, PointerList& flags,
                              PPDXGroup* group);
    PPDXErrorObj* ParseOpenUIZUB(PPDStream& line, char const* keyword, PointerList& flags,
                                 PPDXGroup* group);
    PPDXErrorObj* ParsePopupControl(char const* keyword, CFStringRef translation,
                                    PointerList& flags, PPDXGroup* group, bool const& pickMany);
    PPDXErrorObj* ParseBooleanControl(char const* keyword, CFStringRef translation,
                                      PointerList& flags, PPDXGroup* group);
    PPDXErrorObj* ParseRange(PPDStream& line, char const* keyword, PointerList& flags,
                             PPDXGroup* group);
    PPDXErrorObj* ParseFloatRange(PPDStream& line, char const* keyword, PointerList& flags,
                                  PPDXGroup* group);
    // A note on a line of its own, and one with a flags line. The line behind it, which may give a
    // default or code, belongs to it: always for a note with flags, otherwise when it is one.
    PPDXErrorObj* ParseJobNote(PPDStream& line);
    PPDXErrorObj* ParseJobNote(PPDStream& line, char const* keyword, PointerList& flags,
                               PPDXGroup* group);
    // `keyword` is the line's own; the control is always the one that holds the custom size.
    PPDXErrorObj* ParseCustomPageSize(PPDStream& line, char const* keyword);
    PPDXErrorObj* ParseSpecialOption(PPDStream& line);

  protected:
    // For a class that takes note of what is read, whose functions aren't the object's yet while
    // this one is constructed: it starts empty and then reads a file, once, which is its own then.
    void Read(PPDFile* file);
    // A rule, and a control, of the file.
    virtual void TakeRule(std::string_view key1, std::string_view option1, std::string_view key2,
                          std::string_view option2, bool requirement);
    virtual void ControlTaken(PPDXControl&) {}

  private:
    struct RangeLine;
    struct NoteLine;
    struct OptionHead;
    struct PopupBlock;
    struct BooleanBlock;
    enum class BlockEnd { kClosed, kFileEnded, kFailed };
    // What a head of a line meant: its value was taken and the line goes on, it and the rest of
    // its line are done with, it is nobody's, or it breaks the block.
    enum class HeadResult { kTaken, kLineDone, kIgnored, kFailed };

    void Build();
    void BuildFromSettings(Settings& settings);
    bool SaveTree(Settings& settings);
    void RebuildTree(Settings& settings);
    void AddErrorsOfEmptyLists();
    void RefuseForLackOfMemory();
    void ParseFile();
    void ReadLines();
    // The file's next line; false at its end, and outside of a parse. It and what is cut from it
    // are good until the next line is read, for code and values of several lines too.
    bool ReadLine(PPDStream& line);
    // The next line and its first token, with `line` behind it; false without one.
    bool NextLine(PPDStream& line, std::string_view& token);
    PPDXErrorObj* Dispatch(PPDStream& line, std::string_view keyword);
    void SettleForwardReferences();
    PPDXErrorObj* ParseFileVersion(PPDStream& line);
    PPDXErrorObj* ParseVersion(PPDStream& line);
    PPDXErrorObj* ParseOpenGroup(PPDStream& line);
    PPDXErrorObj* ParseCloseGroup(PPDStream& line);

    // ---- Layout ----
    PPDXErrorObj* AddScrollPane(GroupName const& name, char const* parent, bool visible);
    PPDXErrorObj* AddRollDown(GroupName const& name, char const* parent, bool visible);
    void AddGroupNameToList(char const* keyword, CFStringRef translation, bool visible);
    GroupName const* FindGroupNameFromList(char const* keyword) const;
    void ClearGroupNameList();
    static void ClearStringList(PointerList& strings);
    PPDXGroup* FindAndCreateParent(char const* name);
    PPDXGroup* AddPlainGroup(GroupName const& name);
    void CollectOrphanGroups();

    // ---- Controls ----
    using BlockParser = PPDXErrorObj* (ZUBPPD::*)(PPDStream& line, char const* keyword,
                                                  PointerList& flags, PPDXGroup* group);
    // What reads the block that this token opens, right behind a flags line or behind a group
    // line; null for a token that opens none there.
    static BlockParser BlockParserOf(std::string_view token, bool inGroup);
    PPDXErrorObj* ParseFlaggedBlock(char const* keyword, PointerList& flags);
    PPDXErrorObj* ParseGroupedBlock(char const* keyword, PointerList& flags, PPDXGroup* group);
    static PPDXErrorObj* NoBlock(short code, char const* keyword, long announced);
    template <typename TakeHead>
    BlockEnd ReadBlock(TakeHead takeHead);
    HeadResult TakePopupHead(PPDStream& line, std::string_view head, std::string_view keyword,
                             PopupBlock& block);
    // For a default in its long form, which names the option that it is about.
    HeadResult TakeNamedDefault(PPDStream& line, std::string_view keyword, PopupBlock& block);
    HeadResult TakePopupDefault(PPDStream& line, Delimiters const& delimiters, PopupBlock& block);
    HeadResult TakePopupOption(PPDStream& line, OptionHead const& option, PopupBlock& block);
    // Tells the store of rules the options that a popup of the file has.
    void InternOptions(std::string_view keyword, PPDXPopupControl const& popup);
    void NameItem(_PopupItem& item, std::string_view name);
    void ReadItemCode(PPDStream& line, _PopupItem& item);
    HeadResult TakeBooleanHead(PPDStream& line, std::string_view head, std::string_view keyword,
                               BooleanBlock& block);
    // `head` ends in front of a colon and starts with the block's keyword, in which is no blank.
    static OptionHead CutOptionHead(std::string_view head, std::size_t keywordSize);
    CodeBlock ReadCode(PPDStream& line);
    // The error that keeps a block, read to its end, from making its control; null for none.
    PPDXErrorObj* WhyNoControl(char const* keyword, CFStringRef translation,
                               PPDXGroup const* group) const;
    // Files of older versions have no popups and booleans.
    bool SeriesHasOptions() const;
    PPDXControl* FindControl(char const* keyword) const;  // exact, whatever the display option

    // ---- Options of one line, and shortcuts ----
    // The same for both kinds of number; `number` reads one from its text.
    template <typename Range, typename Convert>
    PPDXErrorObj* ParseNumber(PPDStream& line, char const* keyword, PointerList& flags,
                              PPDXGroup* group, Convert number);
    bool ReadRange(PPDStream& line, RangeLine& range);
    // Reads what follows a note's keyword; false without a name or a length. A word that isn't to
    // be used, or a name that doesn't convert, is in the line's error.
    bool ReadNote(PPDStream& line, bool grouped, NoteLine& note);
    void ReadNoteWords(PPDStream& line, bool grouped, NoteLine& note);
    void PeekNoteCompanion(NoteLine& note);
    void TakeNoteCompanion(char const* keyword, NoteLine& note);
    PPDXErrorObj* PlaceNote(NoteLine& note, PointerList& flags, PPDXGroup* group);
    void AddNoteToShortcuts(char const* keyword);
    void ReadSizeLimits(PPDStream& line, PPDXCustomPageSizeControl& size);
    void ResolveShortcuts();

    // What *ZUPrintSize comes to when it follows the page size; null when that has no value. The
    // caller releases it.
    CFStringRef CopyRealPrintSize();
    void LinkGroup(PPDXGroup& group);

    _PARSE_OPTIONS_ mParseOptions;
    PPDXProperties* mProperties = nullptr;  // owned, with the pages in it
    PPDXGroups* mGroups = nullptr;          // owned, with every group of any kind
    PPDXControls* mControls = nullptr;      // owned, with every control
    PPDXShortcuts* mShortcuts = nullptr;    // owned; the controls in it are not
    bool mInsideInstallableOptions = false;
    PPDXRollDown* mInstallableRollDown = nullptr;  // in mGroups
    CString* mDriverFileVersion = nullptr;         // owned
    CString* mExtensionVersion = nullptr;          // owned
    PointerList mShortcutNames;                    // CString*, owned; emptied after a parse
    std::vector<long> mShortcutPlaces;             // of mShortcutNames
    PointerList mGroupNames;                       // GroupName*, owned; emptied after a parse
    // The first of mGroupNames of each keyword.
    std::unordered_map<std::string_view, GroupName const*, TextHash> mGroupNamesByKeyword;
    bool mCustomPaper = false;
    UIConstraints* mConstraints = nullptr;  // owned
    Arena mArena;                           // what a parse made of flags lines and items
};
