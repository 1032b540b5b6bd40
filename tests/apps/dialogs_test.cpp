// The dialogs of library and application as a screen reader finds them, each opened by its command.

#include <cstring>

#include "apps/viewer/resources.h"
#include "tests/apps/viewer_window_fixture.h"
#include "tests/library/dialog_room.h"

namespace {

class Dialogs : public ViewerWindow {
 protected:
  void SetUp() override {
    ViewerWindow::SetUp();
    platform::TestPrinter printer;
    printer.name = "Ufficio";
    printer.folder = folder;
    printer.isDefault = true;
    ui::SetTestPrinters({&printer, 1});
  }
  void TearDown() override {
    ui::SetTestPrinters({});
    ViewerWindow::TearDown();
  }
  /// What a command's dialog tells, or the one that a button of it opens.
  std::string TreeOf(UINT command, int button) {
    std::string tree;
    ui::OnNextDialog([&](HWND dialog) {
      if (button != 0) {
        ui::OnNextDialog([&](HWND inner) {
          tree = ui::AccessibleTree(inner);
          PostMessage(inner, WM_COMMAND, IDCANCEL);
        });
        SendMessage(dialog, WM_COMMAND, static_cast<WPARAM>(button));
      } else {
        tree = ui::AccessibleTree(dialog);
      }
      PostMessage(dialog, WM_COMMAND, IDCANCEL);
    });
    window->SendMessage(WM_COMMAND, command);
    Settle();
    return tree;
  }
};

/// The parts on one line each, the roles in short; a folder of the test's own is told as "~".
std::string Short(std::string tree, const fs::path& folder) {
  const std::pair<const char*, std::string> shorter[] = {{"~", folder.string()},
                                                         {"Text", "StaticText"},
                                                         {"Edit", "EditableText"},
                                                         {"Radio", "RadioButton"},
                                                         {"Check", "CheckBox"},
                                                         {"Combo", "ComboBox"},
                                                         {"Spin", "SpinBox"},
                                                         {"Group", "Grouping"},
                                                         {"", "Dialog "},
                                                         {"; ", "\n  "},
                                                         {"", "\n"}};
  for (const auto& [to, from] : shorter)
    for (std::size_t at = 0; (at = tree.find(from, at)) != std::string::npos; at += std::strlen(to))
      tree.replace(at, from.size(), to);
  return tree;
}

TEST_F(Dialogs, AreReadWhole) {
  Start({Fax("a.tif")});
  constexpr int kPrinterProperties = 1025;
  const struct {
    UINT command;
    int button;
    const char* tree;
  } rows[] = {
      {ID_ZP_GOTO_PAGE, 0,
       "'Vai a...'; Radio 'Prima pagina' disabled; Radio 'Ultima Pagina'; Radio 'Pagina' checked; "
       "Edit 'Pagina' = '1' by 'Pagina'; Spin 'Pagina' = 1 (1 to 3) by 'Pagina'; Button 'OK' default; "
       "Button 'Annulla'"},
      {ID_ZP_ZOOM_CUSTOM, 0,
       "'Zoom personalizzato'; Button 'OK'; Button 'Annulla'; Edit 'Zoom personalizzato' = '100%'"},
      {ID_ZP_PAGE_PROPERTIES, 0,
       "'Proprietà'; Button 'OK' default; Group 'Informazioni sul file'; Text 'Nome'; Edit 'Nome' = 'a.tif' "
       "by 'Nome' read-only; Text 'Percorso'; Edit 'Percorso' = '~/faxes' by 'Percorso' read-only; "
       "Text 'Dimensione'; Text '44911 bytes'; Text 'Num. di pagine'; Text '3'; Text 'Formato del file'; "
       "Text 'TIFF, compressed using CCITT, group 3, 1 dimension'; Group 'Informazioni generali sulla "
       "pagina'; "
       "Text 'Numero pagina'; Text '1'; Text 'Compressione'; Text 'CCITT G3 1D'; Text 'Bit per pixel'; "
       "Text '1'; Group 'Dimensioni della pagina'; Text 'Dimensioni in pixel'; Edit 'Dimensioni in pixel' = "
       "'1728 x 1078' by 'Dimensioni in pixel' read-only; Text 'Risoluzione'; Edit 'Risoluzione' = "
       "'204 x 98 dpi' by 'Risoluzione' read-only; Text 'Dimensioni reali'; Edit 'Dimensioni reali' = "
       "'8.47 x 11.00 inch = 21.52 x 27.94 cm' by 'Dimensioni reali' read-only"},
      {ID_FILE_PRINT, 0,
       "'Stampa'; Group 'Stampante'; Text 'Nome'; Combo 'Nome' = 'Ufficio' by 'Nome'; Button 'Proprietà'; "
       "Text 'Stato'; Text 'Pronta'; Text 'Tipo'; Text 'PDF'; Text 'Percorso'; Text 'file:~'; "
       "Text 'Commento'; Text ''; Check 'Stampa su file'; Group 'Intervallo di stampa'; Radio 'Tutto' "
       "checked; "
       "Radio 'Pagine'; Radio 'Selezione' disabled; Text 'da'; Edit 'da' = '1' by 'da'; Text 'a'; "
       "Edit 'a' = '3' by 'a'; Group 'Numero copie'; Text 'Numero copie'; Edit 'Numero copie' = '1' by "
       "'Numero copie'; Text ''; Check 'Fascicola' disabled; Button 'OK' default; Button 'Annulla'; "
       "Button 'Formato di stampa...'"},
      {ID_FILE_PRINT, IDC_ZP_PRINT_FORMAT,
       "'Formato di stampa'; Button 'OK' default; Button 'Annulla'; Radio 'Adatta alla pagina' checked; "
       "Radio 'Dimensioni reali'; Radio 'Pixel-pixel'; Separator ''"},
      {ID_FILE_PRINT, kPrinterProperties,
       "'Proprietà della stampante'; Text 'Formato carta'; Combo 'Formato carta' = 'A4' by 'Formato carta'; "
       "Group 'Orientamento'; Radio 'Verticale' checked; Radio 'Orizzontale'; Button 'OK' default; "
       "Button 'Annulla'"},
      {ID_ZP_FILE_EXPORT, 0,
       "'Esporta pagine'; Group 'Pagine'; Radio 'Tutte' checked; Radio 'Pagina corrente'; Radio 'Pagine'; "
       "Edit 'Pagine' by 'Pagine'; Text 'da 1 a 3, come 1-3,7'; Button 'OK' default; Button 'Annulla'"},
      {kPrintPages, 0,
       "'Stampa pagine'; Text 'Stampante'; Combo 'Stampante' = 'Ufficio' by 'Stampante'; Group 'Pagine'; "
       "Radio 'Tutte' checked; Radio 'Pagina corrente'; Radio 'Pagine'; Edit 'Pagine' by 'Pagine'; "
       "Text 'da 1 a 3, come 1-3,7'; Button 'OK' default; Button 'Annulla'"},
  };
  for (const auto& row : rows) EXPECT_EQ(Short(TreeOf(row.command, row.button), folder), row.tree);
}

TEST(AppDialogs, FitTheirControls) {
  RegisterAppResources();
  ExpectRoomForTexts(AppDialogs());
}

}  // namespace
