#include "platform/window/detail/show_file_dialog.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QTreeView>
#include <algorithm>

#include "platform/base/translation.h"
#include "platform/window/detail/modal_widget.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/pump.h"

namespace platform {
namespace {

QString Utf8(const std::string& text) {
  return QString::fromStdString(text);
}

/// In the language of the product.
QString Text(const char* text) {
  return QString::fromUtf8(Localized(text));
}

/// The list of files with the product's texts: Qt's own would need a translation in the host's application.
class ProductsFiles : public QIdentityProxyModel {
 public:
  using QIdentityProxyModel::QIdentityProxyModel;

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    static const char* const kHeaders[] = {"Nome", "Dimensione", "Tipo", "Data di modifica"};
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < 4)
      return Text(kHeaders[section]);
    return QIdentityProxyModel::headerData(section, orientation, role);
  }
};

/// Kinds by the name alone. Qt's own looks into the files, which takes long over a network, and for ever
/// where a read waits for something to come.
class KindsByName : public QFileIconProvider {
 public:
  QIcon icon(const QFileInfo& file) const override {
    return QFileIconProvider::icon(file.isDir() ? Folder : File);
  }
  QString type(const QFileInfo& file) const override {
    if (file.isDir()) return Text("Cartella");
    return (Text("File ") + file.suffix().toUpper()).trimmed();
  }
};

/// Lets the program look at the path before the dialog goes.
class ProgramsFileDialog : public QFileDialog {
 public:
  ProgramsFileDialog(QWidget* parent, const std::function<bool(const std::string&)>& accepts)
      : QFileDialog(parent), m_accepts(accepts) {}

  void accept() override {
    const QStringList files = selectedFiles();
    const bool folder = files.isEmpty() || QFileInfo(files.front()).isDir();
    const QPointer<QFileDialog> alive = this;  // the program may ask, and this may end meanwhile
    const bool accepted = folder || m_accepts(files.front().toStdString());
    if (alive && accepted) QFileDialog::accept();
  }

 private:
  const std::function<bool(const std::string&)>& m_accepts;
};

/// Qt calls the button "Open", once for all, when a folder is named: it then opens the folder.
void KeepAcceptText(QFileDialog& dialog, const QString& text) {
  auto* buttons = dialog.findChild<QDialogButtonBox*>("buttonBox");
  auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
  if (buttons == nullptr || name == nullptr) return;
  const auto mend = [&dialog, buttons, text] {
    const auto shown = buttons->buttons();
    const bool opens = std::any_of(shown.begin(), shown.end(),
                                   [](const QAbstractButton* button) { return button->text() == u"&Open"; });
    dialog.setLabelText(QFileDialog::Accept, opens ? Text("Apri") : text);
  };
  QObject::connect(name, &QLineEdit::textChanged, &dialog, mend, Qt::QueuedConnection);
  QObject::connect(&dialog, &QFileDialog::currentChanged, &dialog, mend, Qt::QueuedConnection);
}

struct ItemText {
  const char* object;  // Qt's name of it
  const char* text;
};

void SetTexts(QFileDialog& dialog, bool open) {
  dialog.setLabelText(QFileDialog::LookIn, Text("Cerca in:"));
  dialog.setLabelText(QFileDialog::FileName, Text("Nome file:"));
  dialog.setLabelText(QFileDialog::FileType, Text("Tipo file:"));
  dialog.setLabelText(QFileDialog::Accept, open ? Text("Apri") : Text("Salva"));
  dialog.setLabelText(QFileDialog::Reject, Text("Annulla"));
  constexpr ItemText kButtons[] = {
      {"backButton", "Indietro"},
      {"forwardButton", "Avanti"},
      {"toParentButton", "Cartella superiore"},
      {"newFolderButton", "Crea nuova cartella"},
      {"listModeButton", "Elenco"},
      {"detailModeButton", "Dettagli"},
  };
  for (const ItemText& button : kButtons)
    if (auto* widget = dialog.findChild<QToolButton*>(button.object)) {
      widget->setToolTip(Text(button.text));
      widget->setAccessibleName(Text(button.text));
    }
  constexpr ItemText kActions[] = {
      {"qt_rename_action", "&Rinomina"},
      {"qt_delete_action", "&Elimina"},
      {"qt_show_hidden_action", "Mostra file &nascosti"},
      {"qt_new_folder_action", "&Nuova cartella"},
  };
  for (const ItemText& action : kActions)
    if (auto* item = dialog.findChild<QAction*>(action.object)) item->setText(Text(action.text));
  // Deleting would ask in English, and isn't this dialog's business.
  if (auto* item = dialog.findChild<QAction*>("qt_delete_action")) item->setVisible(false);
}

/// Room for the headers and for a day with its time.
void SetWidths(QFileDialog& dialog) {
  constexpr int kWidth = 760;
  constexpr int kHeight = 460;
  dialog.resize(kWidth, kHeight);
  auto* list = dialog.findChild<QTreeView*>("treeView");
  if (list == nullptr) return;
  const int letter = list->fontMetrics().averageCharWidth();
  constexpr int kLetters[] = {30, 14, 16, 26};
  for (int column = 0; column < 4; ++column) list->header()->resizeSection(column, kLetters[column] * letter);
  list->header()->setStretchLastSection(false);
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);  // names get what is left
}

QStringList NameFilters(const FileDialogRequest& request) {
  QStringList filters;
  for (const FileDialogRequest::Filter& filter : request.filters) {
    QStringList patterns = Utf8(filter.patterns).split(';', Qt::SkipEmptyParts);
    for (QString& pattern : patterns) {
      pattern = pattern.trimmed();
      if (pattern == u"*.*") pattern = QStringLiteral("*");  // every file, one without a dot too
    }
    filters << Utf8(filter.text) + " (" + patterns.join(' ') + ")";
  }
  return filters;
}

}  // namespace

bool ShowFileDialog(HWND owner, FileDialogRequest& request,
                    const std::function<bool(const std::string& path)>& accepts) {
  EnsureApplication();
  const WindowRecord* record = FindWindowRecord(owner);
  const ModalWidget<ProgramsFileDialog> guarded(
      new ProgramsFileDialog(record == nullptr ? nullptr : record->frame.data(), accepts));
  ProgramsFileDialog& dialog = *guarded.Get();
  // Qt's own, whose every text and check is in our hands.
  dialog.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::DontConfirmOverwrite |
                    QFileDialog::HideNameFilterDetails);
  dialog.setAcceptMode(request.open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  KindsByName kinds;
  dialog.setIconProvider(&kinds);
  dialog.setProxyModel(new ProductsFiles(&dialog));  // NOLINT: the dialog owns it
  SetTexts(dialog, request.open);
  KeepAcceptText(dialog, dialog.labelText(QFileDialog::Accept));
  SetWidths(dialog);
  const char* title = request.open ? "Apri" : "Salva con nome";
  dialog.setWindowTitle(request.title.empty() ? Text(title) : Utf8(request.title));
  const QStringList filters = NameFilters(request);
  if (!filters.isEmpty()) {
    dialog.setNameFilters(filters);
    const qsizetype index = std::min<qsizetype>(request.filterIndex, filters.size());
    dialog.selectNameFilter(filters[index - 1]);
  }
  if (!request.folder.empty()) dialog.setDirectory(Utf8(request.folder));
  if (!request.path.empty()) dialog.selectFile(Utf8(request.path));
  if (guarded.Exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
  request.path = dialog.selectedFiles().front().toStdString();
  // By place: the texts shown needn't be unique once their patterns are left out.
  const auto* types = dialog.findChild<QComboBox*>("fileTypeCombo");
  const int filter = types == nullptr ? -1 : types->currentIndex();
  if (filter >= 0) request.filterIndex = static_cast<unsigned>(filter) + 1;
  return true;
}

}  // namespace platform
