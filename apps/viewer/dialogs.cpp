#include <array>

#include "resources.h"

// The application's dialogs, in dialog units, with room for longer texts of other languages.

namespace {

using platform::DialogItem;
using enum platform::DialogItem::Kind;

constexpr DWORD kModalFrame = 0x80;
constexpr DWORD kDialog = DWORD{WS_POPUP} | DWORD{WS_CAPTION} | DWORD{WS_SYSMENU} | kModalFrame;
constexpr DWORD kScrolls = 0x80;  // an edit field's text
constexpr DWORD kInput = DWORD{WS_TABSTOP} | DWORD{WS_BORDER} | kScrolls;
constexpr DWORD kFirst = DWORD{WS_GROUP} | DWORD{WS_TABSTOP};
constexpr DWORD kDropDownList = 0x03;
constexpr int kWidth = 190;

/// The choice of pages, with its top at y.
constexpr DialogItem Box(int y) {
  return {GroupBox, "Pagine", -1, 7, y, kWidth - 14, 72, WS_GROUP};
}
constexpr DialogItem All(int y) {
  return {RadioButton, "&Tutte", IDC_PAGES_ALL, 15, y + 13, 160, 10, kFirst};
}
constexpr DialogItem Current(int y) {
  return {RadioButton, "Pagina &corrente", IDC_PAGES_CURRENT, 15, y + 27, 160, 10, WS_TABSTOP};
}
constexpr DialogItem Some(int y) {
  return {RadioButton, "Pagin&e:", IDC_PAGES_SOME, 15, y + 41, 58, 10, WS_TABSTOP};
}
constexpr DialogItem PagesEdit(int y) {
  return {Edit, "", IDC_PAGES_EDIT, 75, y + 39, 100, 14, DWORD{WS_GROUP} | kInput};
}
constexpr DialogItem Hint(int y) {
  return {Static, "", IDC_PAGES_HINT, 75, y + 57, 102, 8};
}
constexpr DialogItem Ok(int y) {
  return {DefaultPushButton, "OK", IDOK, kWidth - 111, y, 50, 14, kFirst};
}
constexpr DialogItem Cancel(int y) {
  return {PushButton, "Annulla", IDCANCEL, kWidth - 57, y, 50, 14, WS_TABSTOP};
}

constexpr std::array kExport = {Box(7),       All(7),  Current(7), Some(7),
                                PagesEdit(7), Hint(7), Ok(86),     Cancel(86)};
constexpr std::array kPrint = {
    DialogItem{Static, "&Stampante:", -1, 7, 10, 48, 8},
    // The height of a drop-down list is that of the opened list.
    DialogItem{ComboBox, "", IDC_PAGES_PRINTER, 57, 8, kWidth - 64, 120,
               kFirst | DWORD{WS_VSCROLL} | kDropDownList},
    Box(28),
    All(28),
    Current(28),
    Some(28),
    PagesEdit(28),
    Hint(28),
    Ok(107),
    Cancel(107),
};

constexpr std::array kDialogs = {
    platform::DialogResource{IDD_EXPORT_PAGES, nullptr, "Esporta pagine", kWidth, 107, kDialog, kExport},
    platform::DialogResource{IDD_PRINT_PAGES, nullptr, "Stampa pagine", kWidth, 128, kDialog, kPrint},
};

}  // namespace

std::span<const platform::DialogResource> AppDialogs() {
  return kDialogs;
}
