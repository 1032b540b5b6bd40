#include <array>

#include "library/resource_ids.h"
#include "library/resources.h"
#include "platform/window/window.h"

// The dialogs. Sizes and places are in dialog units, with room for the texts at the font's size; the first
// control that takes the focus has it when the dialog opens.

namespace {

using platform::DialogItem;
using enum platform::DialogItem::Kind;

// Styles of dialogs and controls that matter here.
constexpr DWORD kModalFrame = 0x80;
constexpr DWORD kCentred = 0x01;         // a static's text
constexpr DWORD kOneLine = 0x0c;         // a static's text: never wrapped
constexpr DWORD kPlainAmpersand = 0x80;  // a static's text: "&" is a letter, file names have it
constexpr DWORD kUpright = 0x11;         // a static that is an etched upright line
constexpr DWORD kScrolls = 0x80;         // an edit field's text
constexpr DWORD kReadOnly = 0x800;
constexpr DWORD kDigits = 0x2000;
constexpr DWORD kDropDownList = 0x03;
constexpr DWORD kSorted = 0x100;

constexpr DWORD kDialog = WS_POPUP | WS_CAPTION | WS_SYSMENU | kModalFrame;
constexpr DWORD kInput = WS_TABSTOP | WS_BORDER | kScrolls;
// Values that can be marked and copied. They lie off the tab key's way: there is nothing to fill in.
constexpr DWORD kValue = kReadOnly | kScrolls;
constexpr DWORD kLine = kOneLine | kPlainAmpersand;

constexpr int kOk = 1;
constexpr int kCancel = 2;

constexpr std::array kGoToPage = {
    DialogItem{RadioButton, "&Prima pagina               ", IDC_ZP_GOTO_FIRST, 7, 7, 103, 10,
               WS_GROUP | WS_TABSTOP},
    DialogItem{RadioButton, "&Ultima Pagina", IDC_ZP_GOTO_LAST, 7, 20, 103, 10, WS_TABSTOP},
    DialogItem{RadioButton, "Pagina:", IDC_ZP_GOTO_NUMBER, 7, 34, 44, 10, WS_TABSTOP},
    DialogItem{Edit, "", IDC_ZP_GOTO_EDIT, 54, 32, 44, 14, WS_GROUP | kInput | kDigits},
    DialogItem{DefaultPushButton, "OK", kOk, 7, 53, 50, 14, WS_GROUP | WS_TABSTOP},
    DialogItem{PushButton, "Annulla", IDC_ZP_CANCEL, 60, 53, 50, 14, WS_TABSTOP},
    DialogItem{Static, "", IDC_ZP_GOTO_SPIN_PLACE, 99, 32, 11, 14, 0, true},
};

constexpr std::array kCustomZoom = {
    DialogItem{PushButton, "OK", IDC_ZP_ZOOM_OK, 7, 29, 52, 14, WS_TABSTOP},
    DialogItem{PushButton, "Annulla", IDC_ZP_CANCEL, 63, 29, 52, 14, WS_TABSTOP},
    DialogItem{Edit, "", IDC_ZP_ZOOM_PERCENT, 7, 8, 108, 14, kInput},
};

/// A line of the properties: what it is, left.
constexpr DialogItem Label(const char* text, int y) {
  return {Static, text, IDC_ZP_STATIC, 10, y, 66, 8};
}
/// Its value, right, where it can be marked.
constexpr DialogItem ValueEdit(int id, int y) {
  return {Edit, "", id, 77, y - 2, 131, 12, kValue};
}
/// Its value as a text, of that many lines if it's too long for one.
constexpr DialogItem ValueText(int id, int y, int lines = 1) {
  return {Static, "Static", id, 79, y, 129, lines == 1 ? 8 : 9 * lines, lines == 1 ? kLine : kPlainAmpersand};
}

// OK comes first, so that the focus isn't in one of the values, with its text marked. Names of formats are up
// to 94 letters long.
constexpr std::array kProperties = {
    DialogItem{DefaultPushButton, "OK", kOk, 162, 228, 50, 14, WS_GROUP | WS_TABSTOP},
    DialogItem{GroupBox, "Informazioni sul file", IDC_ZP_STATIC, 5, 5, 207, 96},
    Label("Nome:", 20),
    ValueEdit(IDC_ZP_FILE_NAME, 20),
    Label("Percorso:", 34),
    ValueEdit(IDC_ZP_FILE_PATH, 34),
    Label("Dimensione:", 47),
    ValueText(IDC_ZP_FILE_SIZE, 47),
    Label("Num. di pagine:", 59),
    ValueText(IDC_ZP_FILE_PAGES, 59),
    Label("Formato del file:", 71),
    ValueText(IDC_ZP_FILE_FORMAT, 71, 3),
    DialogItem{GroupBox, "Informazioni generali sulla pagina", IDC_ZP_STATIC, 5, 104, 207, 56},
    Label("Numero pagina:", 118),
    ValueText(IDC_ZP_PAGE_NUMBER, 118),
    Label("Compressione:", 129),
    ValueText(IDC_ZP_PAGE_COMPRESSION, 129, 2),
    Label("Bit per pixel:", 148),
    ValueText(IDC_ZP_PAGE_BITS, 148),
    DialogItem{GroupBox, "Dimensioni della pagina", IDC_ZP_STATIC, 5, 164, 207, 57},
    Label("Dimensioni in pixel:", 179),
    ValueEdit(IDC_ZP_PAGE_PIXELS, 179),
    Label("Risoluzione:", 193),
    ValueEdit(IDC_ZP_PAGE_RESOLUTION, 193),
    Label("Dimensioni reali:", 207),
    ValueEdit(IDC_ZP_PAGE_REAL_SIZE, 207),
};

constexpr std::array kPrintFormat = {
    DialogItem{DefaultPushButton, "OK", kOk, 106, 7, 50, 14, WS_GROUP | WS_TABSTOP},
    DialogItem{PushButton, "Annulla", kCancel, 106, 25, 50, 14, WS_TABSTOP},
    DialogItem{RadioButton, "&Adatta alla pagina", IDC_ZP_FORMAT_FIT, 7, 11, 88, 10, WS_GROUP | WS_TABSTOP},
    DialogItem{RadioButton, "Dimensioni &reali", IDC_ZP_FORMAT_REAL, 7, 29, 88, 10, WS_TABSTOP},
    DialogItem{RadioButton, "&Pixel-pixel", IDC_ZP_FORMAT_PIXELS, 7, 47, 88, 10, WS_TABSTOP},
    DialogItem{Static, "", IDC_ZP_STATIC, 99, 7, 1, 55, WS_GROUP | kUpright},
};

constexpr std::array kPrintAbort = {
    DialogItem{PushButton, "Annulla", IDC_ZP_ABORT_CANCEL, 40, 31, 50, 14, WS_TABSTOP},
    DialogItem{Static, "Premere 'Annulla' per abortire la stampa...", IDC_ZP_STATIC, 7, 7, 117, 18, kCentred},
};

// The ids are those that the print dialog of the system looks for, but for the button of the format.
constexpr std::array kPrint = {
    DialogItem{GroupBox, "Stampante", 1075, 8, 4, 272, 84, WS_GROUP},
    DialogItem{Static, "&Nome:", 1093, 16, 20, 42, 8},
    // The height of a drop-down list is that of the opened list; closed, it is a line high.
    DialogItem{ComboBox, "", 1139, 60, 18, 146, 152,
               WS_GROUP | WS_TABSTOP | WS_VSCROLL | kDropDownList | kSorted},
    DialogItem{PushButton, "&Proprietà", 1025, 212, 17, 60, 14, WS_GROUP | WS_TABSTOP},
    DialogItem{Static, "Stato:", 1095, 16, 36, 42, 8},
    DialogItem{Static, "", 1099, 60, 36, 212, 8, kLine},
    DialogItem{Static, "Tipo:", 1094, 16, 48, 42, 8},
    DialogItem{Static, "", 1098, 60, 48, 212, 8, kLine},
    DialogItem{Static, "Percorso:", 1097, 16, 60, 42, 8},
    DialogItem{Static, "", 1101, 60, 60, 212, 8, kLine},
    DialogItem{Static, "Commento:", 1096, 16, 72, 42, 8},
    DialogItem{Static, "", 1100, 60, 72, 134, 8, kLine},
    DialogItem{CheckBox, "Stampa su fi&le", 1040, 200, 71, 72, 10, WS_GROUP | WS_TABSTOP},
    DialogItem{GroupBox, "Intervallo di stampa", 1072, 8, 92, 146, 64, WS_GROUP},
    DialogItem{RadioButton, "&Tutto", 1056, 16, 108, 60, 10, WS_GROUP | WS_TABSTOP},
    DialogItem{RadioButton, "Pagin&e", 1058, 16, 123, 46, 10, WS_TABSTOP},
    DialogItem{RadioButton, "&Selezione", 1057, 16, 138, 60, 10, WS_TABSTOP},
    DialogItem{Static, "&da:", 1089, 62, 124, 18, 8, WS_GROUP},
    DialogItem{Edit, "", 1152, 81, 121, 27, 14, WS_GROUP | kInput | kDigits},
    DialogItem{Static, "&a:", 1090, 111, 124, 12, 8, WS_GROUP},
    DialogItem{Edit, "", 1153, 123, 121, 26, 14, WS_GROUP | kInput | kDigits},
    DialogItem{GroupBox, "Numero copie", 1073, 160, 92, 120, 64, WS_GROUP},
    DialogItem{Static, "N&umero copie:", 1092, 168, 110, 60, 8},
    DialogItem{Edit, "", 1154, 236, 107, 36, 14, WS_GROUP | kInput | kDigits},
    DialogItem{Static, "", 1086, 168, 127, 42, 24, WS_GROUP},
    DialogItem{CheckBox, "&Fascicola", 1041, 214, 134, 58, 10, WS_GROUP | WS_TABSTOP},
    DialogItem{DefaultPushButton, "OK", kOk, 176, 164, 50, 14, WS_GROUP | WS_TABSTOP},
    DialogItem{PushButton, "Annulla", kCancel, 230, 164, 50, 14, WS_TABSTOP},
    DialogItem{PushButton, "&Formato di stampa...", IDC_ZP_PRINT_FORMAT, 8, 164, 90, 14, WS_TABSTOP},
};

constexpr std::array kDialogs = {
    platform::DialogResource{IDD_ZP_GOTO_PAGE, nullptr, "Vai a...", 117, 74, kDialog, kGoToPage},
    platform::DialogResource{IDD_ZP_CUSTOM_ZOOM, nullptr, "Zoom personalizzato", 122, 50, kDialog,
                             kCustomZoom},
    platform::DialogResource{IDD_ZP_PROPERTIES, nullptr, "Proprietà", 217, 249, kDialog, kProperties},
    platform::DialogResource{IDD_ZP_PRINT_FORMAT, nullptr, "Formato di stampa", 163, 69, kDialog,
                             kPrintFormat},
    // Created without being run, so it has to show itself; it has no text in its caption and can't be closed.
    platform::DialogResource{IDD_ZP_PRINT_ABORT, nullptr, "", 131, 52,
                             WS_POPUP | WS_VISIBLE | WS_CAPTION | kModalFrame, kPrintAbort},
    platform::DialogResource{0, "PRINT_DLG", "Stampa", 288, 186, kDialog | WS_VISIBLE, kPrint},
};

}  // namespace

std::span<const platform::DialogResource> LibraryDialogs() {
  return kDialogs;
}
