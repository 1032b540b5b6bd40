#include "resources.h"

// The application's texts. "\n" parts a command's prompt from its tool tip, "\t" a menu's text from the name
// of its key; %1!s! and the like are places of a message template.

namespace {

constexpr platform::StringResource kStrings[] = {
    {kReload, "Rilegge il file dal disco"},
    {kNextFile, "Apre il file successivo della cartella"},
    {kPreviousFile, "Apre il file precedente della cartella"},
    {kFullScreen, "Occupa tutto lo schermo, o torna alla finestra"},
    {kCopy, "Copia negli appunti la parte selezionata o l'intera pagina"},
    {kSelectArea, "Seleziona una parte della pagina con il mouse"},
    {kClearSelection, "Annulla la selezione"},
    {kTurnAtEnd, "Alla fine della pagina PagGiù passa alla successiva, PagSu all'inizio alla precedente"},
    {kKeepNoFit, "La scala resta quella scelta"},
    {kKeepWidth, "Ogni pagina è adattata in larghezza"},
    {kKeepHeight, "Ogni pagina è adattata in altezza"},
    {kKeepPage, "Ogni pagina è adattata per intero"},
    {MenuTextOf(kReload), "&Ricarica\tF5"},
    {MenuTextOf(kNextFile), "File successi&vo\tAlt+PgDown"},
    {MenuTextOf(kPreviousFile), "File &precedente\tAlt+PgUp"},
    {MenuTextOf(kFullScreen), "Schermo &intero\tF11"},
    {MenuTextOf(kCopy), "&Copia\tCtrl+C"},
    {MenuTextOf(kSelectArea), "&Seleziona una parte"},
    {MenuTextOf(kClearSelection), "&Annulla selezione\tEsc"},
    {MenuTextOf(kTurnAtEnd), "Pa&gSu e PagGiù voltano pagina"},
    {MenuTextOf(kKeepNoFit), "&Nessuno"},
    {MenuTextOf(kKeepWidth), "In &larghezza"},
    {MenuTextOf(kKeepHeight), "In &altezza"},
    {MenuTextOf(kKeepPage), "&Pagina intera"},
    {kDamagePane, ""},
    {kNamePane, ""},
    {kDpiPane, ""},
    {IDS_EDIT_MENU, "&Modifica"},
    {IDS_RECENT_MENU, "Fi&le recenti"},
    {IDS_KEEP_FIT_MENU, "Adattamento &costante"},
    {IDS_NO_RECENT, "(nessuno)"},
    {IDS_RECENT_ITEM, "&%1!d! %2!s!"},
    {IDS_DAMAGED_ROW, "1 riga non leggibile"},
    {IDS_DAMAGED_ROWS, "%1!d! righe non leggibili"},
    {IDS_DPI, "%1!d! dpi"},
    {IDS_DPI_BOTH, "%1!d! x %2!d! dpi"},
    {IDS_RELOADED, "Il file è cambiato ed è stato riletto"},
    {IDS_FILE_GONE, "Il file non c'è più"},
    {IDS_FILE_UNREADABLE, "Il file è cambiato e non è leggibile"},
    {IDS_COPIED_PAGE, "Pagina copiata negli appunti"},
    {IDS_COPIED_PART, "Selezione copiata negli appunti"},
    {IDS_COPY_FAILED, "Gli appunti non sono disponibili."},
    {IDS_SELECT_HINT, "Trascinare il mouse sulla parte da selezionare"},
    {IDS_ABOUT, "Tessarel %1!s!"},
    {IDS_IMAGES_FILTER, "Immagini"},
    {IDS_ALL_FILES_FILTER, "Tutti i file"},
};

}  // namespace

std::span<const platform::StringResource> AppStrings() {
  return kStrings;
}
