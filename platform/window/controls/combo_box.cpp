#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QProxyStyle>
#include <QStyleOptionComplex>
#include <QTimer>
#include <algorithm>
#include <optional>
#include <utility>

#include "platform/window/controls/detail/control.h"
#include "platform/window/controls/detail/line_field.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

class ComboControl;

/// Gives the text of a narrow combo, as toolbars hold them, all the room there is: themes draw for wide ones.
class NarrowComboStyle : public QProxyStyle {
 public:
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override {
    const QRect all = option->rect;
    if (control != CC_ComboBox || all.width() >= kWide)
      return QProxyStyle::subControlRect(control, option, part, widget);
    if (part == SC_ComboBoxArrow) return {all.right() - kArrow, all.top(), kArrow, all.height()};
    if (part == SC_ComboBoxEditField) return {1, 1, all.width() - kArrow - 2, all.height() - 2};
    return QProxyStyle::subControlRect(control, option, part, widget);
  }

 private:
  enum : int { kWide = 72, kArrow = 11 };
};

/// Tells its control when the list opens and goes.
class ComboWidget : public QComboBox {
 public:
  explicit ComboWidget(QWidget* parent) : QComboBox(parent) {}
  void SetControl(ComboControl* control) { m_control = control; }
  void showPopup() override;

 private:
  ComboControl* m_control = nullptr;
};

class ComboControl : public Control {
 public:
  ComboControl(HWND window, QWidget* parent) : Control(window, new ComboWidget(parent)) {
    const bool editable = (Style() & CBS_TYPEMASK) != CBS_DROPDOWNLIST;
    Combo().SetControl(this);
    auto* style = new NarrowComboStyle;  // the widget's, which may outlive this
    style->setParent(&Combo());
    Combo().setStyle(style);
    Combo().setEditable(editable);
    // Long lists: nothing that looks at every item.
    Combo().setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto* list = new QListView(&Combo());
    list->setUniformItemSizes(true);
    Combo().setView(list);
    Combo().view()->window()->installEventFilter(&m_listFilter);
    QObject::connect(&Combo(), &QComboBox::activated, Context(), [this](int index) { Picked(index); });
    if (editable) SetUpField();
  }
  ~ComboControl() override {
    if (Widget() != nullptr) Combo().SetControl(nullptr);
  }
  ComboControl(const ComboControl&) = delete;
  ComboControl& operator=(const ComboControl&) = delete;

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool KeepsFocus() const override { return IsDropped(); }
  bool ListKey(int virtualKey) override;

  void ListOpens();

 protected:
  QString Text() const override { return Combo().currentText(); }
  void SetText(const QString& text) override {
    if (!Combo().isEditable()) return;
    Combo().setEditText(text);
    // What is typed next takes the place of a text that came while the user is in the field. Else a text
    // wider than the field shows its beginning.
    if (GetFocus() == Window())
      Combo().lineEdit()->selectAll();
    else
      Combo().lineEdit()->setCursorPosition(0);
  }
  void KeyDown(int key, Qt::KeyboardModifiers modifiers) override;
  void Char(char32_t c) override {
    if (m_field) m_field->Char(c);
  }
  void FocusChanged(bool gained) override {
    if (gained && m_field) Combo().lineEdit()->selectAll();
    if (!gained) TakeMovesBack();
    Notify(gained ? CBN_SETFOCUS : CBN_KILLFOCUS);
  }
  void FontChanged() override { FitHeight(); }
  int DialogCode() const override {
    const int code = m_field ? DLGC_WANTARROWS | DLGC_HASSETSEL | DLGC_WANTCHARS : DLGC_WANTARROWS;
    return IsDropped() ? code | DLGC_WANTALLKEYS : code;
  }
  void Resized(int width, int height) override;

 private:
  /// Sees the end of the list, however it comes about.
  class ListFilter : public QObject {
   public:
    explicit ListFilter(ComboControl& control) : m_control(control) {}
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Hide) m_control.ListGone();
      return false;
    }

   private:
    ComboControl& m_control;
  };

  ComboWidget& Combo() const { return *static_cast<ComboWidget*>(Widget()); }
  bool IsDropped() const { return Combo().view()->window()->isVisible(); }
  int Count() const { return Combo().count(); }

  void SetUpField();
  void FitHeight();
  void Picked(int index);
  void ListGone();
  void SelectQuietly(int index, const QString& text);
  void TakeMovesBack();
  void Edited();
  LRESULT Add(LPARAM text);
  LRESULT Select(int index);
  LRESULT TextOfItem(int index, LPARAM buffer, bool copy) const;
  LRESULT Find(WPARAM after, LPARAM text, bool whole) const;
  LRESULT HandleList(UINT message, WPARAM wParam, LPARAM lParam);

  ListFilter m_listFilter{*this};
  std::unique_ptr<LineField> m_field;  ///< of an editable one
  int m_selection = -1;                ///< typing takes it away, while Qt keeps its own
  /// Entry and text when the list opened, until it goes or the keyboard does.
  std::optional<std::pair<int, QString>> m_atOpening;
  bool m_closing = false;  ///< the list has gone and it isn't known yet whether by a pick
};

void ComboWidget::showPopup() {
  if (m_control == nullptr) return;
  const QPointer<ComboWidget> alive = this;
  m_control->ListOpens();
  if (alive && m_control != nullptr) QComboBox::showPopup();
}

void ComboControl::SetUpField() {
  QLineEdit& line = *Combo().lineEdit();
  Combo().setCompleter(nullptr);
  Combo().setInsertPolicy(QComboBox::NoInsert);
  // Leaving the field is no pick, even when its text stands in the list.
  QObject::disconnect(&line, &QLineEdit::editingFinished, &Combo(), nullptr);
  QObject::disconnect(&line, &QLineEdit::returnPressed, &Combo(), nullptr);
  constexpr int kTakenBack = -2;  // the field's own margin
  line.setTextMargins(kTakenBack, 0, kTakenBack, 0);
  m_field = std::make_unique<LineField>(line);
  QObject::connect(&line, &QLineEdit::textEdited, Context(), [this] { m_field->CutExcess(); });
  QObject::connect(&line, &QLineEdit::textEdited, Context(), [this] { Edited(); });
  QObject::connect(&line, &QLineEdit::textChanged, Context(), [this] { m_field->Settle(); });
}

void ComboControl::Edited() {
  if (!m_field->Settle()) return;
  m_selection = -1;
  Notify(CBN_EDITCHANGE);
}

void ComboControl::FitHeight() {
  const WindowRecord* record = FindWindowRecord(Window());
  if (record == nullptr || !record->frame) return;
  constexpr int kAroundText = 8;
  const int height = QFontMetrics(Combo().font()).height() + kAroundText;
  if (record->frame->height() != height) record->frame->resize(record->frame->width(), height);
}

void ComboControl::Resized(int width, int height) {
  constexpr int kFewestItems = 10;
  const int line = std::max(1, QFontMetrics(Combo().font()).height());
  const int closed = line + 8;
  if (height > closed + line)  // the height with the list
    Combo().setMaxVisibleItems(std::max(kFewestItems, (height - closed) / line));
  FitHeight();
  Control::Resized(width, closed);
}

void ComboControl::KeyDown(int key, Qt::KeyboardModifiers modifiers) {
  struct ListKeyPair {
    int virtualKey;
    int qt;
  };
  constexpr ListKeyPair kListKeys[] = {{VK_UP, Qt::Key_Up},
                                       {VK_DOWN, Qt::Key_Down},
                                       {VK_PRIOR, Qt::Key_PageUp},
                                       {VK_NEXT, Qt::Key_PageDown},
                                       {VK_F1 + 3, Qt::Key_F4}};
  for (const ListKeyPair& pair : kListKeys)
    if (pair.virtualKey == key) {
      GiveKey(Combo(), QEvent::KeyPress, pair.qt, modifiers);
      return;
    }
  if (m_field) m_field->KeyDown(key, modifiers);
}

void ComboControl::Picked(int index) {
  const std::shared_ptr<Control> alive = KeepAlive();
  const bool closing = std::exchange(m_closing, false);
  m_selection = index;
  Notify(CBN_SELENDOK);
  if (IsWindow(Window()) != 0) Notify(CBN_SELCHANGE);
  if (closing && IsWindow(Window()) != 0) Notify(CBN_CLOSEUP);
}

/// Keeps the text, which Qt would take from the entry.
void ComboControl::SelectQuietly(int index, const QString& text) {
  m_selection = index;
  Combo().setCurrentIndex(index);
  if (!m_field || Combo().currentText() == text) return;
  Combo().setEditText(text);
  if (GetFocus() == Window()) Combo().lineEdit()->selectAll();
}

void ComboControl::ListOpens() {
  const QString text = Combo().currentText();
  if (m_field) SelectQuietly(Combo().findText(text, Qt::MatchFixedString), text);
  m_atOpening = {m_selection, text};
  Notify(CBN_DROPDOWN);
}

/// Moving in the list has selected as it went; until something is picked that is only a look.
void ComboControl::TakeMovesBack() {
  const auto before = std::exchange(m_atOpening, std::nullopt);
  if (before && Combo().isVisible()) SelectQuietly(before->first, before->second);
}

void ComboControl::ListGone() {
  TakeMovesBack();  // a pick, told in a moment, selects anew
  m_closing = true;
  // A pick is told right after the list has gone; without one it was given up.
  QTimer::singleShot(0, Context(), [this] {
    if (!std::exchange(m_closing, false)) return;
    const std::shared_ptr<Control> alive = KeepAlive();
    Notify(CBN_SELENDCANCEL);
    if (IsWindow(Window()) != 0) Notify(CBN_CLOSEUP);
  });
}

/// Moving in the open list selects as it goes.
bool ComboControl::ListKey(int virtualKey) {
  const int page = std::max(1, Combo().maxVisibleItems() - 1);
  int index = std::max(m_selection, -1);
  switch (virtualKey) {
    case VK_UP:
      index -= 1;
      break;
    case VK_DOWN:
      index += 1;
      break;
    case VK_PRIOR:
      index -= page;
      break;
    case VK_NEXT:
      index += page;
      break;
    default:
      return false;
  }
  if (Count() == 0) return true;
  index = std::clamp(index, 0, Count() - 1);
  if (index == m_selection) return true;
  Select(index);
  Combo().view()->setCurrentIndex(Combo().model()->index(index, 0));
  Notify(CBN_SELCHANGE);
  return true;
}

LRESULT ComboControl::Add(LPARAM text) {
  const auto* chars = reinterpret_cast<const char*>(text);
  if (chars == nullptr) return CB_ERR;
  const QString item = QString::fromUtf8(chars);
  int index = Count();
  if ((Style() & CBS_SORT) != 0)
    for (index = 0; index < Count(); ++index)
      if (Combo().itemText(index).localeAwareCompare(item) > 0) break;
  const bool first = Count() == 0;
  const QString field = Combo().currentText();
  Combo().insertItem(index, item);
  if (first) {  // Qt selects the first item by itself
    Combo().setCurrentIndex(-1);
    SetText(field);
  }
  if (m_selection >= index) ++m_selection;
  return index;
}

LRESULT ComboControl::Select(int index) {
  m_selection = index >= 0 && index < Count() ? index : -1;
  Combo().setCurrentIndex(m_selection);
  if (Combo().isEditable()) {
    Combo().setEditText(m_selection < 0 ? QString() : Combo().itemText(m_selection));
    if (GetFocus() == Window()) Combo().lineEdit()->selectAll();
  }
  return m_selection;
}

LRESULT ComboControl::TextOfItem(int index, LPARAM buffer, bool copy) const {
  if (index < 0 || index >= Count()) return CB_ERR;
  const std::string text = Combo().itemText(index).toStdString();
  if (copy && buffer == 0) return CB_ERR;
  if (copy) text.copy(reinterpret_cast<char*>(buffer), text.size());
  if (copy) reinterpret_cast<char*>(buffer)[text.size()] = 0;
  return static_cast<LRESULT>(text.size());
}

/// From the item after a given one, round to it.
LRESULT ComboControl::Find(WPARAM after, LPARAM text, bool whole) const {
  const QString wanted = QString::fromUtf8(reinterpret_cast<const char*>(text));
  const int start = static_cast<int>(after) + 1;
  for (int i = 0; i < Count(); ++i) {
    const int index = (start + i) % Count();
    const QString item = Combo().itemText(index);
    if (whole ? item.compare(wanted, Qt::CaseInsensitive) == 0 : item.startsWith(wanted, Qt::CaseInsensitive))
      return index;
  }
  return CB_ERR;
}

LRESULT ComboControl::HandleList(UINT message, WPARAM wParam, LPARAM lParam) {
  const int index = static_cast<int>(wParam);
  switch (message) {
    case CB_ADDSTRING:
      return Add(lParam);
    case CB_RESETCONTENT:
      m_selection = -1;
      Combo().clear();
      SetText({});
      return CB_OKAY;
    case CB_GETLBTEXT:
      return TextOfItem(index, lParam, true);
    case CB_GETLBTEXTLEN:
      return TextOfItem(index, 0, false);
    case CB_FINDSTRINGEXACT:
      return Find(wParam, lParam, true);
    case CB_SELECTSTRING: {
      const LRESULT found = Find(wParam, lParam, false);
      return found < 0 ? found : Select(static_cast<int>(found));
    }
    default:
      return Control::Handle(message, wParam, lParam);
  }
}

LRESULT ComboControl::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case CB_GETCOUNT:
      return Count();
    case CB_GETCURSEL:
      return m_selection;
    case CB_SETCURSEL:
      return Select(static_cast<int>(wParam));
    case CB_LIMITTEXT:
      if (m_field) m_field->SetLimit(static_cast<int>(wParam));
      return TRUE;
    case CB_GETEDITSEL:
      if (!m_field) return CB_ERR;
      return m_field->Selection(reinterpret_cast<DWORD*>(wParam), reinterpret_cast<DWORD*>(lParam));
    case CB_SETEDITSEL:
      if (!m_field) return CB_ERR;
      m_field->Select(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
      return TRUE;
    case CB_SHOWDROPDOWN:
      if (wParam == 0)
        Combo().hidePopup();
      else if (!IsDropped())
        Combo().showPopup();
      return TRUE;
    case CB_GETDROPPEDSTATE:
      return IsDropped() ? TRUE : FALSE;
    case WM_CONTEXTMENU:
      if (!m_field) return Control::Handle(message, wParam, lParam);
      m_field->ShowMenu(lParam);
      return 0;
    default:
      return HandleList(message, wParam, lParam);
  }
}

}  // namespace

std::shared_ptr<Control> MakeComboBox(HWND window, QWidget* parent) {
  return std::make_shared<ComboControl>(window, parent);
}

}  // namespace platform
