#include "library/resources.h"

#include <array>

// The library's texts, as its users know them, the odd letters included. "\n" parts a command's prompt from
// its tool tip; %1!d! and the like are places of a message template.

namespace {

constexpr std::array kStrings = {
    platform::StringResource{30002, "Applicazioni puâ aprire solo un file alla volta"},
    platform::StringResource{30019, "Va alla pagina indicata\nNumero di Pagine"},
    platform::StringResource{30020, "Zoom alla scala richiesta\nPercentuale Zoom"},
    platform::StringResource{30035, "Export"},
    platform::StringResource{30036, "Stampa in corso..."},
    platform::StringResource{30037, "Il file ¨ gi\u00a0 esistente. Si desidera sovrascriverlo?"},
    platform::StringResource{30038, "Scale: 1000%"},
    platform::StringResource{30039, "Pagina 99 di 100"},
    platform::StringResource{30040, "Numero di pagina non valido. Deve essere compreso tra 1 e %1!d!"},
    platform::StringResource{30041, "Apertura file ..."},
    platform::StringResource{30042, "Esportazione file ..."},
    platform::StringResource{30043,
                             "La scala ¨ fuori dai limiti! Dovrebbe essere nel range da %1!d!%% a %2!d!%%."},
    platform::StringResource{30044,
                             "Il formato del file da esportare non supporta documenti multipagina. Vuoi "
                             "esportare la sola pagina corrente?"},
    platform::StringResource{30045, "File convertito con successo"},
    platform::StringResource{30046, "Errore imprevisto in fase di copia file."},
    platform::StringResource{30047, "File %1!s!\ncopiato su\n%2!s!"},
    platform::StringResource{30048, "Errore imprevisto durante la stampa\n\nDescrizione: \n"},
    platform::StringResource{30049,
                             "L'immagine bitmap non puâ essere stampata dal dispositivo prescelto. Provare a "
                             "usare un'altra stampante."},
    platform::StringResource{30050,
                             "Errore in fase di stampa. L'applicazione non ha potuto ottenere il device "
                             "context dalla stampante prescelta. Provare a usare un'altra stampante."},
    platform::StringResource{30051, "Non ¨ stata trovata una stampante predefinita!"},
    platform::StringResource{30052, "Errore in creazione di bitmap device dependent in fase di stampa."},
    platform::StringResource{
        30053, "Si ¨ verificato un errore in fase di spooling del lavoro di stampa\n\nDescrizione:\n"},
    platform::StringResource{30054, "Dettagli non disponibili"},
    platform::StringResource{30055, "Memoria insufficiente per lo spooling"},
    platform::StringResource{30056, "Spazio disco insufficiente per lo spooling\n"},
    platform::StringResource{30057, "Lavoro di stampa terminato dall'utente attraverso Print Manager."},
    platform::StringResource{30058, "Errore generale."},
    platform::StringResource{30059, "(non disponibile)"},
    platform::StringResource{40000, "Zoom 1:%1!d!"},
    platform::StringResource{40001, "Pagina %1!d! of %2!d!"},
    platform::StringResource{40002, "Ruota la pagina di 90ø a sinistra (antiorario)\nRuota a sinistra"},
    platform::StringResource{40003, "Ruota la pagina di 90ø a destra (orario)\nRuota a destra"},
    platform::StringResource{40004, "Ruota la pagina di 180ø\nCapovolge"},
    platform::StringResource{40005, "Esporta il file aperto in un diverso formato\nEsporta"},
    platform::StringResource{40007,
                             "Attiva il modo zoom in. Per ingrandire usare il tasto sinistro (+Shift per "
                             "rimpicciolire)\nModo Zoom In"},
    platform::StringResource{
        40008, "Ottimizza la visualizzazione sulla larghezza della pagina\nAdatta in larghezza"},
    platform::StringResource{40009,
                             "Ottimizza la visualizzazione sull'altezza della pagina\nAdatta in altezza"},
    platform::StringResource{40010,
                             "Ottimizza la visualizzazione per contenere l'intera pagina\nAdatta al meglio"},
    platform::StringResource{40011, "Zoom alla scala richiesta"},
    platform::StringResource{40012, "Stampa la pagina corrente sulla stampante predefinita"},
    platform::StringResource{
        40013, "Attiva il modo trascinamento. Per trascinare usare il tasto sinistro\nModo trascinamento"},
    platform::StringResource{40014,
                             "Attiva il modo zoom out. Per rimpicciolire usare il tasto sinistro (+Shift per "
                             "ingrandire)\nModo Zoom Out"},
    platform::StringResource{40016, "Zoom su un'area selezionata\nZoom su selezione"},
    platform::StringResource{40019, "Prima pagina\n"},
    platform::StringResource{40020, "Ultima pagina"},
    platform::StringResource{40021, "Visualizza una pagina specifica"},
    platform::StringResource{40022, "Zoom Out\nZoom Out"},
    platform::StringResource{40023, "Zoom In\nZoom In"},
    platform::StringResource{40024, "Prossima pagina\nProssima pagina"},
    platform::StringResource{40025, "Pagina precedente\nPagina precedente"},
    platform::StringResource{40026, "Proprietà di pagina\nProprietà di pagina"},
    platform::StringResource{40027, "Show or hide page thumbnails\nPage thumbnails"},
    platform::StringResource{40030, "L'operazione di stampa ø stata annullata"},
    platform::StringResource{40031, "Image list control creating control"},
    platform::StringResource{40032, "Dettagli non disponibili"},
    platform::StringResource{40033, "Pagina %1!d!"},
    platform::StringResource{40034, "The format of the page is wrong or not supported"},
    platform::StringResource{57345, "Pronto"},
    platform::StringResource{57601, "Apertura di un file immagine\nApri file"},
    platform::StringResource{57607, "Stampa il file\nStampa"},
    platform::StringResource{57665, "Uscita dall'applicazione\nUscita"},
    platform::StringResource{59392, "Mostra o nasconde la barra strumenti\nBarra strumenti"},
    platform::StringResource{59393, "Mostra o nasconde la barra di stato\nBarra di stato"},
};

}  // namespace

std::span<const platform::StringResource> LibraryStrings() {
  return kStrings;
}
