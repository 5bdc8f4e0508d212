// SPDX-License-Identifier: Apache-2.0
#include "platform/Nibs.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "platform/Controls.h"
#include "platform/Menus.h"
#include "platform/internal/CFURLObject.h"
#include "platform/internal/Desktop.h"

namespace platform {

template <>
constexpr HandleKey kTagOf<IBNibRef> = kNibTag;

namespace {

struct Nib {
    CFRef<CFTypeRef> contents;
};

HandleTable<Nib>& Nibs() {
    static HandleTable<Nib>& sNibs = *new HandleTable<Nib>;
    return sNibs;
}

// The window is described in a way that makes no window.
struct WrongDescription : std::exception {};

CFRef<CFTypeRef> ReadNib(CFBundleRef bundle, CFStringRef name) {
    CFRef<CFURLRef> const url(CFBundleCopyBundleURL(bundle));
    std::string file;
    if (!GetUTF8(name, file) || file.find('/') != file.npos) {
        return {};
    }
    std::string bytes;
    if (ReadWholeFile(AbsolutePath(url) + "/Contents/Resources/" + file + ".nib", bytes) != 0) {
        return {};
    }
    CFRef<CFDataRef> const data(CFDataCreate(nullptr,
                                             reinterpret_cast<std::uint8_t const*>(bytes.data()),
                                             static_cast<CFIndex>(bytes.size())));
    return CFRef<CFTypeRef>(
        CFPropertyListCreateFromXMLData(nullptr, data, kCFPropertyListImmutable, nullptr));
}

// One dictionary of a nib. What is there but of another type is a wrong description; what isn't
// there is null, or the value that stands for nothing said.
class Description {
  public:
    explicit Description(CFTypeRef dictionary)
        : mDictionary(Typed<CFDictionaryRef>(dictionary, kDictionaryTypeID)) {
        if (mDictionary == nullptr) {
            throw WrongDescription();
        }
    }

    CFStringRef Text(char const* key) const { return Value<CFStringRef>(key, kStringTypeID); }
    CFArrayRef List(char const* key) const { return Value<CFArrayRef>(key, kArrayTypeID); }
    bool Truth(char const* key) const {
        return CFBooleanGetValue(Value<CFBooleanRef>(key, kBooleanTypeID));
    }
    std::int32_t Number(char const* key, std::int32_t fallback) const {
        auto const number = Value<CFNumberRef>(key, kNumberTypeID);
        return number == nullptr ? fallback : NumberOf(number);
    }
    std::int16_t Short(char const* key, std::int16_t fallback) const {
        return ClampedCoordinate(Number(key, fallback));
    }
    OSType Code(char const* key) const {
        CFStringRef const text = Text(key);
        if (text == nullptr) {
            return 0;
        }
        std::string letters;
        if (!GetUTF8(text, letters) || letters.size() != 4) {
            throw WrongDescription();
        }
        OSType code = 0;
        for (char const letter : letters) {
            code = (code << 8) | static_cast<unsigned char>(letter);
        }
        return code;
    }
    Rect Bounds() const {
        constexpr CFIndex kEdges = 4;
        CFArrayRef const list = List("Bounds");
        if (CFArrayGetCount(list) != kEdges) {
            throw WrongDescription();
        }
        std::int16_t edges[kEdges];
        for (CFIndex at = 0; at < kEdges; ++at) {
            auto const number = Typed<CFNumberRef>(CFArrayGetValueAtIndex(list, at), kNumberTypeID);
            if (number == nullptr) {
                throw WrongDescription();
            }
            edges[at] = ClampedCoordinate(NumberOf(number));
        }
        return {edges[0], edges[1], edges[2], edges[3]};
    }

  private:
    template <typename Ref>
    static Ref Typed(CFTypeRef value, CFTypeID type) {
        return CFGetTypeID(value) == type ? static_cast<Ref>(value) : nullptr;
    }
    template <typename Ref>
    Ref Value(char const* key, CFTypeID type) const {
        CFTypeRef const value = CFDictionaryGetValue(mDictionary, CFStringConstant(key));
        if (value != nullptr && CFGetTypeID(value) != type) {
            throw WrongDescription();
        }
        return static_cast<Ref>(value);
    }
    static std::int32_t NumberOf(CFNumberRef number) {
        std::int32_t value = 0;
        if (!CFNumberGetValue(number, kCFNumberSInt32Type, &value)) {
            throw WrongDescription();
        }
        return value;
    }

    CFDictionaryRef mDictionary;
};

// An operation that fails here has run out of memory.
void Check(OSStatus status) {
    if (status != noErr) {
        throw std::bad_alloc();
    }
}

void GiveItems(ControlNode& node, CFArrayRef items) {
    MenuRef const menu = GetControlPopupMenuHandle(node.Ref());
    if (items != nullptr && menu == nullptr) {
        throw WrongDescription();
    }
    for (CFIndex at = 0; at < CFArrayGetCount(items); ++at) {
        CFTypeRef const item = CFArrayGetValueAtIndex(items, at);
        if (CFGetTypeID(item) != kStringTypeID) {
            throw WrongDescription();
        }
        Check(AppendMenuItemTextWithCFString(menu, static_cast<CFStringRef>(item), 0, 0, nullptr));
    }
}

void GiveColumns(ControlNode& node, CFArrayRef columns) {
    auto* const list = node.As<ItemList>();
    if (columns != nullptr && list == nullptr) {
        throw WrongDescription();
    }
    for (CFIndex at = 0; at < CFArrayGetCount(columns); ++at) {
        Description const column(CFArrayGetValueAtIndex(columns, at));
        OSType const code = column.Code("Code");
        list->columns.push_back(
            {code, CFRef<CFStringRef>::Retained(column.Text("Title")), column.Truth("Fixed")});
        if (column.Truth("Disclosure")) {
            list->disclosureColumn = code;
        }
    }
}

void GiveText(ControlNode& node, Description const& from) {
    CFStringRef const title = from.Text("Title");
    if (auto* const field = node.As<FieldText>(); field != nullptr) {
        SetText(node, std::u16string(TextOf(title)));
        field->isPassword = from.Truth("Password");
    } else if (title != nullptr) {
        Check(SetControlTitleWithCFString(node.Ref(), title));
    }
    ControlFontStyleRec const font = {node.font.flags, node.font.font,
                                      from.Short("Size", node.font.size), from.Short("Style", 0),
                                      from.Short("Justification", 0)};
    Check(SetControlFontStyle(node.Ref(), &font));
}

// Called behind GiveItems: a menu that doesn't say otherwise can stand at each of its items.
void GiveValue(ControlNode& node, Description const& from) {
    auto const items = static_cast<std::int32_t>(CFArrayGetCount(from.List("Items")));
    node.minimum = from.Number("Minimum", 0);
    node.maximum = from.Number("Maximum", std::max(items, 1));
    SetValue(node, from.Number("Value", node.minimum));
}

void GiveButtonRole(ControlNode const& node, Description const& from) {
    if (from.Truth("Default")) {
        node.window->defaultButton = node.Ref();
    }
    if (from.Truth("Cancel")) {
        node.window->cancelButton = node.Ref();
    }
}

ControlNode& MakeControl(Description const& from, ControlNode& container) {
    KindTraits const* const traits = TraitsOf(from.Code("Kind"));
    if (traits == nullptr) {
        throw WrongDescription();
    }
    ControlNode& node = *NewControl(*traits, from.Bounds(), &container);
    SetIdentifier(node, {from.Code("Signature"), from.Number("ID", 0)});
    node.command = from.Code("Command");
    node.isVisible = !from.Truth("Hidden");
    node.isEnabled = !from.Truth("Disabled");
    GiveText(node, from);
    GiveItems(node, from.List("Items"));
    GiveValue(node, from);
    GiveColumns(node, from.List("Columns"));
    GiveButtonRole(node, from);
    return node;
}

// Property lists are nested some hundred deep at most.
void MakeControls(CFArrayRef descriptions, ControlNode& container) {
    for (CFIndex at = 0; at < CFArrayGetCount(descriptions); ++at) {
        Description const from(CFArrayGetValueAtIndex(descriptions, at));
        MakeControls(from.List("Controls"), MakeControl(from, container));
    }
}

WindowRef MakeWindow(Description const& from, CFStringRef name) {
    auto const windowClass = static_cast<WindowClass>(from.Number("Class", kDocumentWindowClass));
    WindowNode* const window = NewWindow(windowClass, from.Bounds());
    try {
        Check(SetWindowName(window->Ref(), name));
        Check(SetWindowTitleWithCFString(window->Ref(), from.Text("Title")));
        MakeControls(from.List("Controls"), *window->root);
    } catch (...) {
        DeleteWindow(window);
        throw;
    }
    return window->Ref();
}

}  // namespace
}  // namespace platform

OSStatus CreateNibReferenceWithCFBundle(CFBundleRef bundle, CFStringRef name, IBNibRef* nib) {
    if (nib == nullptr) {
        return paramErr;
    }
    *nib = nullptr;
    return platform::Guarded([&]() -> OSStatus {
        auto contents = platform::ReadNib(bundle, name);
        if (!contents) {
            return kIBCarbonRuntimeCantFindNibFile;
        }
        auto* const made = platform::NewObject<platform::Nib>(platform::Nib{std::move(contents)});
        if (made == nullptr) {
            return memFullErr;
        }
        try {
            *nib = platform::MakeRef<IBNibRef>(platform::Nibs().Add(made));
        } catch (...) {
            platform::DeleteObject(made);
            throw;
        }
        return noErr;
    });
}

void DisposeNibReference(IBNibRef nib) {
    platform::HandleKey const key = platform::KeyOf(nib);
    platform::Nib* const found = platform::Nibs().Find(key);
    platform::Nibs().Remove(key);
    platform::DeleteObject(found);
}

OSStatus CreateWindowFromNib(IBNibRef nib, CFStringRef name, WindowRef* window) {
    if (window == nullptr) {
        return paramErr;
    }
    *window = nullptr;
    platform::Nib const* const found = platform::Nibs().Find(platform::KeyOf(nib));
    if (found == nullptr || name == nullptr) {
        return paramErr;
    }
    try {
        auto const windows = CFGetTypeID(found->contents) == CFDictionaryGetTypeID()
                                 ? static_cast<CFDictionaryRef>(found->contents.Get())
                                 : nullptr;
        CFTypeRef const description = CFDictionaryGetValue(windows, name);
        if (description == nullptr) {
            return kIBCarbonRuntimeCantFindObject;
        }
        *window = platform::MakeWindow(platform::Description(description), name);
        return noErr;
    } catch (platform::WrongDescription const&) {
        return kIBCarbonRuntimeObjectNotOfRequestedType;
    } catch (std::exception const&) {
        return memFullErr;
    }
}
