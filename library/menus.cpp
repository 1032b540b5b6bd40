#include <array>

#include "library/resource_ids.h"
#include "library/resources.h"

// The menus, odd spellings included: hosts and users know them so. The names of keys behind the tabs are only
// shown; binding them to the commands is the host's matter.

namespace {

using platform::MenuLine;

constexpr MenuLine Popup(const char* text) {
  return {MenuLine::Kind::Popup, text};
}
constexpr MenuLine Item(const char* text, UINT id) {
  return {MenuLine::Kind::Item, text, id};
}
constexpr MenuLine kSeparator{MenuLine::Kind::Separator};
constexpr MenuLine kEnd{MenuLine::Kind::End};

// clang-format off
constexpr std::array kViewer = {
    Popup("&File"),
      Item("&Esporta...\tCtrl+E", ID_ZP_FILE_EXPORT),
      Item("&Stampa...\tCtrl+S", ID_FILE_PRINT),
      kSeparator,
      Item("&Uscita", ID_APP_EXIT),
    kEnd,
    Popup("&Visualizza"),
      Item("Barra &Strumenti", ID_VIEW_TOOLBAR),
      Item("Barra di S&tato", ID_VIEW_STATUS_BAR),
      Item("Thumb&nails", ID_ZP_VIEW_THUMBNAILS),
      kSeparator,
      Popup("&Mouse Mode"),
        Item("&Trascina", ID_ZP_DRAG_MODE),
        Item("Zoom &In", ID_ZP_ZOOM_IN_MODE),
        Item("Zoom &Out", ID_ZP_ZOOM_OUT_MODE),
      kEnd,
    kEnd,
    Popup("&Pagina"),
      Item("&Avanti\tCtrl+PgDown", ID_ZP_NEXT_PAGE),
      Item("&Indietro\tCtrl+PgUp", ID_ZP_PREV_PAGE),
      Item("&Prima", ID_ZP_FIRST_PAGE),
      Item("&Ultimo", ID_ZP_LAST_PAGE),
      Item("&Vai a ...", ID_ZP_GOTO_PAGE),
      kSeparator,
      Item("S&tampa pagina", ID_ZP_PAGE_PRINT),
      kSeparator,
      Item("Ruota a &Sinistra", ID_ZP_ROTATE_LEFT),
      Item("Ruota a &Destra", ID_ZP_ROTATE_RIGHT),
      Item("&Capovolgi", ID_ZP_ROTATE_180),
      kSeparator,
      Item("P&roprieta", ID_ZP_PAGE_PROPERTIES),
    kEnd,
    Popup("&Zoom"),
      Item("Zoom &In\tCtrl+FrecciaSu", ID_ZP_ZOOM_IN),
      Item("Zoom &Out\tCtrl+FrecciaGiù", ID_ZP_ZOOM_OUT),
      Item("Zoom su &Selezione", ID_ZP_ZOOM_SELECTED),
      kSeparator,
      Item("Adatta in &Altezza", ID_ZP_ZOOM_FIT_TO_HEIGHT),
      Item("Adatta in &Larghezza", ID_ZP_ZOOM_FIT_TO_WIDTH),
      Item("&Adatta al meglio", ID_ZP_ZOOM_BEST_FIT),
      kSeparator,
      Item("&Personalizza...", ID_ZP_ZOOM_CUSTOM),
    kEnd,
    Popup("&Aiuto"),
      Item("&Indice contenuti", ID_HELP_FINDER),
      kSeparator,
      Item("I&nformazioni su...", ID_APP_ABOUT),
    kEnd,
};

// One unnamed popup: a context menu is the first popup of what is loaded.
constexpr std::array kContext = {
    Popup(""),
      Item("Pagina &Avanti", ID_ZP_NEXT_PAGE),
      Item("Pagina &Indietro", ID_ZP_PREV_PAGE),
      Item("&Prima Pagina", ID_ZP_FIRST_PAGE),
      Item("&Ultima Pagina", ID_ZP_LAST_PAGE),
      Item("&Vai a ...", ID_ZP_GOTO_PAGE),
      kSeparator,
      Popup("&Zoom"),
        Item("Zoom &In", ID_ZP_ZOOM_IN),
        Item("Zoom &Out", ID_ZP_ZOOM_OUT),
        Item("Zoom &Personalizzato...", ID_ZP_ZOOM_CUSTOM),
        kSeparator,
        Item("Adata in &Altezza", ID_ZP_ZOOM_FIT_TO_HEIGHT),
        Item("Adatta in &Larghezza", ID_ZP_ZOOM_FIT_TO_WIDTH),
        Item("Adatta al &Meglio", ID_ZP_ZOOM_BEST_FIT),
      kEnd,
      kSeparator,
      Item("Ruota a &Sinistra", ID_ZP_ROTATE_LEFT),
      Item("Ruota a  &Destra", ID_ZP_ROTATE_RIGHT),
      Item("&Capovolgi", ID_ZP_ROTATE_180),
      kSeparator,
      Item("&Stampa pagina", ID_ZP_PAGE_PRINT),
      kSeparator,
      Item("P&roprietà", ID_ZP_PAGE_PROPERTIES),
    kEnd,
};
// clang-format on

/// The lines with one more behind the first, at the head of the first popup.
template <std::size_t count>
constexpr std::array<MenuLine, count + 1> WithFirstItem(const std::array<MenuLine, count>& lines,
                                                        const MenuLine& item) {
  std::array<MenuLine, count + 1> longer{};
  longer[0] = lines[0];
  longer[1] = item;
  for (std::size_t i = 1; i < count; ++i) longer[i + 1] = lines[i];
  return longer;
}

// Nothing in this library loads it: it is there for the main frame of a host that opens files.
constexpr auto kHost = WithFirstItem(kViewer, Item("&Apri...\tCtrl+A", ID_FILE_OPEN));

constexpr std::array kMenus = {
    platform::MenuResource{IDR_ZP_VIEWER, kViewer},
    platform::MenuResource{IDR_ZP_HOST, kHost},
    platform::MenuResource{IDR_ZP_CONTEXT, kContext},
};

}  // namespace

std::span<const platform::MenuResource> LibraryMenus() {
  return kMenus;
}
