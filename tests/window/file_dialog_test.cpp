// The file dialog on the screen, worked by its own widgets.

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "platform/framework/file_dialog.h"
#include "platform/window/pump.h"
#include "tessarel12_testing.h"

namespace {

int g_boxes = 0;
int Refuse(const CString&, UINT) {
  ++g_boxes;
  return IDNO;
}

QFileDialog* OpenDialog() {
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* dialog = qobject_cast<QFileDialog*>(widget); dialog != nullptr && dialog->isVisible())
      return dialog;
  return nullptr;
}

void Later(int milliseconds, const std::function<void(QFileDialog&)>& act) {
  QTimer::singleShot(milliseconds, [act] {
    if (QFileDialog* dialog = OpenDialog()) act(*dialog);
  });
}

void Accept(QFileDialog& dialog, const std::string& name) {
  dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(name));
  for (auto* button : dialog.findChildren<QPushButton*>())
    if (button->text() == "Apri" || button->text() == "Salva") button->click();
}

TEST(FileDialogOnScreen, StaysOpenUntilTheNameIsGood) {
  platform::EnsureApplication();
  char name[] = "/tmp/file_dialogXXXXXX";
  const std::string folder = mkdtemp(name);
  std::filesystem::create_directory(folder + "/sub");
  std::ofstream(folder + "/fax.tif") << "x";
  platform::testing::SetMessageBoxAnswer(&Refuse);
  g_boxes = 0;
  CFileDialog dialog(FALSE);
  dialog.m_ofn.lpstrInitialDir = folder.c_str();
  dialog.m_ofn.lpstrFilter = "TIFF file\0*.tif\0Windows bitmap\0*.bmp\0";
  dialog.m_ofn.lpstrTitle = "Export";
  std::string title;
  Later(50, [&](QFileDialog& d) {
    title = d.windowTitle().toStdString();
    if (const char* pictures = std::getenv("TESSAREL_PICTURES"))
      d.grab().save(QString::fromUtf8(pictures) + "/file_dialog.png");
    Accept(d, "fax.tif");  // there already, and the answer is No
  });
  Later(100, [](QFileDialog& d) {
    auto* types = d.findChild<QComboBox*>("fileTypeCombo");
    types->setCurrentIndex(1);
    Q_EMIT types->activated(1);
    Accept(d, "nuovo");
  });
  QTimer::singleShot(3000, [] {
    if (QFileDialog* open = OpenDialog()) open->reject();
  });
  EXPECT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(title, "Export");
  EXPECT_EQ(g_boxes, 1);
  EXPECT_EQ(dialog.m_ofn.lpstrFile, folder + "/nuovo") << "no extension is put on";
  EXPECT_EQ(dialog.m_ofn.nFilterIndex, 2U);
  platform::testing::SetMessageBoxAnswer(nullptr);
  std::filesystem::remove_all(folder);
}

std::string AcceptText(const QFileDialog& dialog) {
  return dialog.findChild<QDialogButtonBox*>()->buttons().front()->text().toStdString();
}

// A folder of files that look into nothing but themselves, one of which has no end; and a folder that is
// named.
TEST(FileDialogOnScreen, LooksIntoNoFileAndSpeaksOneLanguage) {
  platform::EnsureApplication();
  char name[] = "/tmp/file_dialogXXXXXX";
  const std::string folder = mkdtemp(name);
  std::filesystem::create_directory(folder + "/sub");
  std::ofstream(folder + "/picture.tif") << "%PDF-1.4";
  std::ofstream(folder + "/plain") << "GIF89a";
  for (const bool open : {true, false}) {
    CFileDialog dialog(open);
    dialog.m_ofn.lpstrInitialDir = folder.c_str();
    std::string texts;
    std::string kinds;
    bool namesGetTheRest = false;
    Later(300, [&](QFileDialog& d) {
      const auto* list = d.findChild<QTreeView*>("treeView");
      namesGetTheRest = list->header()->length() == list->viewport()->width();
      const QAbstractItemModel& files = *list->model();
      for (int row = 0; row < files.rowCount(list->rootIndex()); ++row)
        kinds += files.index(row, 2, list->rootIndex()).data().toString().toStdString() + ";";
      d.findChild<QLineEdit*>("fileNameEdit")->setText("sub");
    });
    Later(400, [&](QFileDialog& d) {
      texts = AcceptText(d);
      d.findChild<QLineEdit*>("fileNameEdit")->setText("picture.tif");
    });
    Later(500, [&](QFileDialog& d) {
      texts += " " + AcceptText(d);
      d.reject();
    });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(texts, open ? "Apri Apri" : "Apri Salva");
    EXPECT_EQ(kinds, "Cartella;File TIF;File;");
    EXPECT_TRUE(namesGetTheRest);
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
