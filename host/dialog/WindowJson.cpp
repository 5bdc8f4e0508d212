// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/WindowJson.h"

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace {

std::string CodeText(OSType code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text.push_back(static_cast<char>((code >> shift) & 0xFF));
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return JsonText::BytesToUTF8(text);
}

Json Identifier(ControlID id) {
    return id.signature == 0 && id.id == 0
               ? Json()
               : Json(CodeText(id.signature) + ":" + std::to_string(id.id));
}

Json IdentifierOf(ControlRef control) {
    ControlID id = {0, 0};
    GetControlID(control, &id);
    return Identifier(id);
}

Json Bounds(Rect const& rect) {
    return Json::array({rect.top, rect.left, rect.bottom, rect.right});
}

Json Font(ControlFontStyleRec const& font) {
    return {{"size", font.size}, {"style", font.style}, {"just", font.just}};
}

// A picture's path below its bundle's resources.
Json Picture(CFStringRef path) {
    constexpr std::string_view kResources = "/Contents/Resources/";
    if (path == nullptr) {
        return {};
    }
    std::string const text = JsonText::ToUTF8(path);
    std::size_t const at = text.rfind(kResources);
    return at == std::string::npos ? text : text.substr(at + kResources.size());
}

Json Items(ControlView const& view) {
    Json items = Json::array();
    for (ItemView const& item : view.items) {
        items.push_back({{"title", JsonText::Text(item.title)},
                         {"enabled", item.isEnabled},
                         {"why", item.isEnabled ? Json() : Json::array()}});
    }
    return items;
}

Json Columns(ListView const& list) {
    Json columns = Json::array();
    for (ColumnView const& column : list.columns) {
        columns.push_back(WindowJson::Code(column.code));
    }
    return columns;
}

Json Rows(ListView const& list) {
    Json rows = Json::array();
    for (RowView const& row : list.rows) {
        Json cells = Json::array();
        for (auto const& cell : row.cells) {
            cells.push_back(JsonText::Text(cell));
        }
        rows.push_back({{"item", row.item},
                        {"parent", row.container},
                        {"container", row.isContainer},
                        {"open", row.isOpen},
                        {"selected", row.isSelected},
                        {"cells", cells}});
    }
    return rows;
}

// ---- What a kind has besides ----

void AddItems(ControlView const& view, Json& json) {
    json["items"] = Items(view);
}
void AddText(ControlView const& view, Json& json) {
    json["text"] = JsonText::Text(view.text);
}
void AddField(ControlView const& view, Json& json) {
    AddText(view, json);
    json["selection"] = Json::array({view.selection.selStart, view.selection.selEnd});
    json["password"] = view.isPassword;
}
void AddList(ControlView const& view, Json& json) {
    ListView list;
    DescribeList(view.control, &list);
    json["columns"] = Columns(list);
    json["sort"] = WindowJson::Code(list.sortColumn);
    json["rows"] = Rows(list);
}
void AddPicture(ControlView const& view, Json& json) {
    json["picture"] = Picture(view.picture);
}

struct KindFields {
    OSType kind;
    void (*add)(ControlView const& view, Json& json);
};
constexpr KindFields kKindFields[] = {
    {"popb"_code, AddItems}, {"rgrp"_code, AddItems}, {"stxt"_code, AddText},
    {"edit"_code, AddField}, {"list"_code, AddList},  {"pane"_code, AddPicture},
};

Json Embedded(ControlRef control) {
    Json controls = Json::array();
    for (ControlRef const embedded : EmbeddedControls(control)) {
        controls.push_back(WindowJson::Control(embedded));
    }
    return controls;
}

Json Window(WindowView const& view) {
    return {{"window", view.number},
            {"name", JsonText::Text(view.name)},
            {"kind", view.isSheet ? "sheet" : "window"},
            {"title", JsonText::Text(view.title)},
            {"parent", WindowJson::Number(view.parent)},
            {"visible", view.isVisible},
            {"modal", view.isModal},
            {"bounds", Bounds(view.bounds)},
            {"focus", IdentifierOf(view.focus)},
            {"default", IdentifierOf(view.defaultButton)},
            {"cancel", IdentifierOf(view.cancelButton)},
            {"controls", Embedded(view.root)}};
}

}  // namespace

Json WindowJson::Windows() {
    Json windows = Json::array();
    for (WindowRef const window : WindowsInOrder()) {
        WindowView view;
        if (DescribeWindow(window, &view) && view.number > 0) {
            windows.push_back(Window(view));
        }
    }
    return windows;
}

Json WindowJson::Control(ControlRef control) {
    ControlView view;
    if (!DescribeControl(control, &view)) {
        return {};
    }
    Json json = {{"id", Identifier(view.id)},
                 {"kind", CodeText(view.kind)},
                 {"title", JsonText::Text(view.title)},
                 {"value", view.value},
                 {"minimum", view.minimum},
                 {"maximum", view.maximum},
                 {"enabled", view.isEnabled},
                 {"visible", view.isVisible},
                 {"bounds", Bounds(view.bounds)},
                 {"command", Code(view.command)},
                 {"font", Font(view.font)}};
    for (KindFields const& row : kKindFields) {
        if (row.kind == view.kind) {
            row.add(view, json);
        }
    }
    json["controls"] = Embedded(control);
    return json;
}

Json WindowJson::Code(OSType code) {
    return code == 0 ? Json() : Json(CodeText(code));
}

Json WindowJson::Number(WindowRef window) {
    WindowView view;
    return DescribeWindow(window, &view) && view.number > 0 ? Json(view.number) : Json();
}
