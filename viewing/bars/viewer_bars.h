#pragma once

#include <array>

#include "library/resource_ids.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/status_bar.h"
#include "viewing/bars/combo_page_num.h"
#include "viewing/bars/combo_scale.h"

class CToolBar256;

// Toolbar and status bar of a viewer, which all its frames have in common: how they are made, and how page
// and scale are shown in them. Frames differ in what ToolBarLook holds.
namespace viewer_bars {

inline constexpr std::array<UINT, 24> kButtons = {ID_FILE_PRINT,
                                                  0,
                                                  ID_ZP_DRAG_MODE,
                                                  ID_ZP_ZOOM_IN_MODE,
                                                  ID_ZP_ZOOM_OUT_MODE,
                                                  0,
                                                  ID_ZP_PREV_PAGE,
                                                  0,  // becomes the page combo
                                                  ID_ZP_NEXT_PAGE,
                                                  0,
                                                  ID_ZP_ZOOM_OUT,
                                                  ID_ZP_ZOOM_IN,
                                                  0,  // becomes the scale combo
                                                  ID_ZP_ZOOM_SELECTED,
                                                  0,
                                                  ID_ZP_ZOOM_BEST_FIT,
                                                  ID_ZP_ZOOM_FIT_TO_WIDTH,
                                                  ID_ZP_ZOOM_FIT_TO_HEIGHT,
                                                  0,
                                                  ID_ZP_ROTATE_LEFT,
                                                  ID_ZP_ROTATE_RIGHT,
                                                  ID_ZP_ROTATE_180,
                                                  0,
                                                  ID_ZP_VIEW_THUMBNAILS};

struct ToolBarLook {
  UINT pictures;        ///< bitmap resource
  int scaleComboWidth;  ///< pixels
  int comboBottom;      ///< of both combos with their lists dropped, pixels from the bar's top
  int scaleCharacters;  ///< that can be typed
  bool highScales;      ///< the list goes on to 800 and 1000 percent
};

/// The members of a frame that its toolbar is made of.
struct ToolBarParts {
  CToolBar256& bar;
  CComboPageNum& page;
  CComboScale& scale;
  CFont& comboFont;
};

/// Where a frame shows page and scale; null where there is nothing. A host may make other bars, with or
/// without the combos.
struct ViewerBars {
  CStatusBar* status = nullptr;
  CComboPageNum* page = nullptr;
  CComboScale* scale = nullptr;
};

/// Those that are there as windows; null for the others.
ViewerBars Present(ViewerBars bars);

/// Makes the bar with its two combos, which start disabled, the scale combo with its entries. False if
/// a window could not be made; what was made stays.
bool CreateToolBar(CFrameWnd* frame, const ToolBarParts& parts, const ToolBarLook& look);
/// Panes for message, scale and page, the last two disabled.
bool CreateStatusBar(CFrameWnd* frame, CStatusBar& bar);
/// Lets a bar dock at all edges of the frame, and puts it at its first one.
void DockToolBar(CFrameWnd* frame, CToolBar256& bar);
/// Window class of a frame with an icon of the library.
LPCTSTR FrameClass(UINT icon);

// What isn't there is passed over.

/// Texts of the panes; update: on the screen at once.
void SetPane(CStatusBar& bar, UINT pane, const CString& text, BOOL update);
/// A pane that isn't enabled shows its text in grey.
void EnablePane(CStatusBar& bar, UINT pane, bool enable);
/// page from 1.
void ShowPagePane(CStatusBar& bar, int page, int pages, BOOL update);
/// percent 1 to 1000, in pane and combo.
void ShowScale(const ViewerBars& bars, int percent, BOOL update);

/// The numbers from 1 on in the place of the former list. None is selected.
void FillPageCombo(CComboPageNum& combo, int pages);
/// The text that the user has typed or picked; an empty field stands for the first entry. fromEntry: a picked
/// entry counts before what the field shows.
CString ChosenScale(CComboScale& combo, bool fromEntry);

// The strip of thumbnails tells of a pick by WM_COMMAND with this code.
inline constexpr UINT kPicked = 1024;
/// The picture's number, from 0, out of the record that comes with it.
inline int PickedIndex(LPARAM record) {
  return reinterpret_cast<const int*>(record)[2];
}

inline constexpr SIZE kPaneSize = {140, 0};  ///< of the splitter's panes, at first
inline constexpr int kLeastStripWidth = 60;  ///< of the column of thumbnails; narrower shows nothing of use

}  // namespace viewer_bars
