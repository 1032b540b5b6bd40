#include "library/resource_ids.h"
#include "library/resources.h"
#include "platform/framework/frame_wnd.h"

// The library's texts, as its users know them, the odd letters included. "\n" parts a command's prompt from
// its tool tip; %1!d! and the like are places of a message template.

namespace {

constexpr platform::StringResource kStrings[] = {
    {IDS_ZP_ONE_FILE_ONLY, "Applicazioni puâ aprire solo un file alla volta"},
    {ID_ZP_COMBO_PAGE, "Va alla pagina indicata\nNumero di Pagine"},
    {ID_ZP_COMBO_SCALE, "Zoom alla scala richiesta\nPercentuale Zoom"},
    {IDS_ZP_EXPORT_TITLE, "Export"},
    {IDS_ZP_PRINTING, "Stampa in corso..."},
    {IDS_ZP_OVERWRITE, "Il file ¨ gi\u00a0 esistente. Si desidera sovrascriverlo?"},
    {IDS_ZP_ZOOM_RULER, "Scale: 1000%"},
    {IDS_ZP_PAGE_RULER, "Pagina 99 di 100"},
    {IDS_ZP_NO_SUCH_PAGE, "Numero di pagina non valido. Deve essere compreso tra 1 e %1!d!"},
    {IDS_ZP_OPENING, "Apertura file ..."},
    {IDS_ZP_EXPORTING, "Esportazione file ..."},
    {IDS_ZP_SCALE_OUT_OF_RANGE,
     "La scala ¨ fuori dai limiti! Dovrebbe essere nel range da %1!d!%% a %2!d!%%."},
    {IDS_ZP_EXPORT_ONE_PAGE,
     "Il formato del file da esportare non supporta documenti multipagina. Vuoi "
     "esportare la sola pagina corrente?"},
    {IDS_ZP_EXPORT_DONE, "File convertito con successo"},
    {IDS_ZP_COPY_ERROR, "Errore imprevisto in fase di copia file."},
    {IDS_ZP_FILE_COPIED, "File %1!s!\ncopiato su\n%2!s!"},
    {IDS_ZP_PRINT_UNKNOWN, "Errore imprevisto durante la stampa\n\nDescrizione: \n"},
    {IDS_ZP_NOT_PRINTABLE,
     "L'immagine bitmap non puâ essere stampata dal dispositivo prescelto. Provare a "
     "usare un'altra stampante."},
    {IDS_ZP_NO_PRINTER_DC,
     "Errore in fase di stampa. L'applicazione non ha potuto ottenere il device "
     "context dalla stampante prescelta. Provare a usare un'altra stampante."},
    {IDS_ZP_NO_DEFAULT_PRINTER, "Non ¨ stata trovata una stampante predefinita!"},
    {IDS_ZP_NO_DEVICE_BITMAP, "Errore in creazione di bitmap device dependent in fase di stampa."},
    {IDS_ZP_SPOOLER_UNKNOWN,
     "Si ¨ verificato un errore in fase di spooling del lavoro di stampa\n\nDescrizione:\n"},
    {IDS_ZP_SPOOLER_NO_DETAILS, "Dettagli non disponibili"},
    {IDS_ZP_PRINT_NO_MEMORY, "Memoria insufficiente per lo spooling"},
    {IDS_ZP_PRINT_NO_DISK, "Spazio disco insufficiente per lo spooling\n"},
    {IDS_ZP_SPOOLER_ENDED, "Lavoro di stampa terminato dall'utente attraverso Print Manager."},
    {IDS_ZP_PRINT_ERROR, "Errore generale."},
    {IDS_ZP_NOT_AVAILABLE, "(non disponibile)"},
    {ID_ZP_INDICATOR_ZOOM, "Zoom 1:%1!d!"},
    {ID_ZP_INDICATOR_PAGE, "Pagina %1!d! of %2!d!"},
    {ID_ZP_ROTATE_LEFT, "Ruota la pagina di 90ø a sinistra (antiorario)\nRuota a sinistra"},
    {ID_ZP_ROTATE_RIGHT, "Ruota la pagina di 90ø a destra (orario)\nRuota a destra"},
    {ID_ZP_ROTATE_180, "Ruota la pagina di 180ø\nCapovolge"},
    {ID_ZP_FILE_EXPORT, "Esporta il file aperto in un diverso formato\nEsporta"},
    {ID_ZP_ZOOM_IN_MODE,
     "Attiva il modo zoom in. Per ingrandire usare il tasto sinistro (+Shift per "
     "rimpicciolire)\nModo Zoom In"},
    {ID_ZP_ZOOM_FIT_TO_WIDTH,
     "Ottimizza la visualizzazione sulla larghezza della pagina\nAdatta in larghezza"},
    {ID_ZP_ZOOM_FIT_TO_HEIGHT, "Ottimizza la visualizzazione sull'altezza della pagina\nAdatta in altezza"},
    {ID_ZP_ZOOM_BEST_FIT, "Ottimizza la visualizzazione per contenere l'intera pagina\nAdatta al meglio"},
    {ID_ZP_ZOOM_CUSTOM, "Zoom alla scala richiesta"},
    {ID_ZP_PAGE_PRINT, "Stampa la pagina corrente sulla stampante predefinita"},
    {ID_ZP_DRAG_MODE,
     "Attiva il modo trascinamento. Per trascinare usare il tasto sinistro\nModo trascinamento"},
    {ID_ZP_ZOOM_OUT_MODE,
     "Attiva il modo zoom out. Per rimpicciolire usare il tasto sinistro (+Shift per "
     "ingrandire)\nModo Zoom Out"},
    {ID_ZP_ZOOM_SELECTED, "Zoom su un'area selezionata\nZoom su selezione"},
    {ID_ZP_FIRST_PAGE, "Prima pagina\n"},
    {ID_ZP_LAST_PAGE, "Ultima pagina"},
    {ID_ZP_GOTO_PAGE, "Visualizza una pagina specifica"},
    {ID_ZP_ZOOM_OUT, "Zoom Out\nZoom Out"},
    {ID_ZP_ZOOM_IN, "Zoom In\nZoom In"},
    {ID_ZP_NEXT_PAGE, "Prossima pagina\nProssima pagina"},
    {ID_ZP_PREV_PAGE, "Pagina precedente\nPagina precedente"},
    {ID_ZP_PAGE_PROPERTIES, "Proprietà di pagina\nProprietà di pagina"},
    {ID_ZP_VIEW_THUMBNAILS, "Show or hide page thumbnails\nPage thumbnails"},
    {IDS_ZP_PRINT_ABORTED, "L'operazione di stampa ø stata annullata"},
    {IDS_ZP_NO_STRIP, "Image list control creating control"},
    {IDS_ZP_NO_DETAILS, "Dettagli non disponibili"},
    {IDS_ZP_PAGE_CAPTION, "Pagina %1!d!"},
    {IDS_ZP_PAGE_COMBO_NAME, "Pagina"},
    {IDS_ZP_SCALE_COMBO_NAME, "Scala"},
    {IDS_ZP_OPENING_PAGE, "Apertura file ... pagina %1!d! di %2!d!"},
    {IDS_ZP_EXPORTING_PAGE, "Esportazione file ... pagina %1!d! di %2!d!"},
    {IDS_ZP_PRINTING_PAGE, "Stampa in corso... pagina %1!d! di %2!d!"},
    {IDS_ZP_STRIP_PAGE, "Miniature delle pagine ... pagina %1!d! di %2!d!"},
    {IDS_ZP_PAGE_UNSUPPORTED, "The format of the page is wrong or not supported"},
    {IDS_ZP_PRINT_NO_ANSWER, "Il servizio di stampa non risponde. Il lavoro di stampa non è stato inviato."},
    {IDS_ZP_JOB_STOPPED, "La stampante \"%1!s!\" è ferma. Il lavoro di stampa attende in coda."},
    {IDS_ZP_JOB_CANCELLED, "Il lavoro di stampa inviato a \"%1!s!\" è stato annullato nella coda."},
    {IDS_ZP_JOB_REFUSED, "Il lavoro di stampa inviato a \"%1!s!\" non è stato stampato."},
    {AFX_IDS_IDLEMESSAGE, "Pronto"},
    {ID_FILE_OPEN, "Apertura di un file immagine\nApri file"},
    {ID_FILE_PRINT, "Stampa il file\nStampa"},
    {ID_APP_EXIT, "Uscita dall'applicazione\nUscita"},
    {ID_VIEW_TOOLBAR, "Mostra o nasconde la barra strumenti\nBarra strumenti"},
    {ID_VIEW_STATUS_BAR, "Mostra o nasconde la barra di stato\nBarra di stato"},
#include "library/imaging_texts.def"
};

}  // namespace

std::span<const platform::StringResource> LibraryStrings() {
  return kStrings;
}
