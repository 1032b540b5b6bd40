#pragma once

#include <span>

#include "platform/base/export.h"
#include "platform/base/geometry.h"
#include "platform/base/translation.h"
#include "platform/base/types.h"

// How a library carries its resources and how they are found: it gives its tables once, under its module, and
// they are found for as long as the module stands in the framework's list (CDynLinkLibrary), whichever module
// asks. Everything that a table points to must live as long as the module.

/// Kinds of resources, the group kinds for cursors and icons.
enum : UINT {
  RT_BITMAP = 2,
  RT_MENU = 4,
  RT_DIALOG = 5,
  RT_STRING = 6,
  RT_GROUP_CURSOR = 12,
  RT_GROUP_ICON = 14
};

namespace platform {

/// One line of a menu. A Popup holds the lines up to its End.
struct MenuLine {
  enum class Kind { Item, Separator, Popup, End };
  Kind kind;
  const char* text = "";  ///< "&" before the access key; behind "\t" the name of a key, shown only
  UINT id = 0;
};

struct MenuResource {
  UINT id;
  std::span<const MenuLine> lines;
};

/// A control of a dialog, its place in dialog units.
struct DialogItem {
  enum class Kind { PushButton, DefaultPushButton, RadioButton, CheckBox, GroupBox, Static, Edit, ComboBox };
  Kind kind;
  const char* text;
  int id;
  int x;
  int y;
  int cx;
  int cy;
  /// Styles beside those of the kind: WS_GROUP, WS_DISABLED, ES_..., SS_.... WS_CHILD is always there, and
  /// WS_VISIBLE unless hidden is set.
  DWORD style = 0;
  bool hidden = false;
};

struct DialogResource {
  UINT id;           ///< 0 for one that has a name
  const char* name;  ///< null for one that has a number
  const char* caption;
  int cx;  ///< of the client area, in dialog units
  int cy;
  DWORD style;
  std::span<const DialogItem> items;
  const char* font = "MS Sans Serif";
  int fontPoints = 8;
};

/// A colour of a picture, under the character that stands for it in the rows.
struct PictureColour {
  char symbol;
  std::uint32_t rgb;         ///< 0xRRGGBB
  bool transparent = false;  ///< of a cursor or icon; a bitmap takes rgb all the same
};

/// A small picture, one character for each pixel. All rows have the same length.
struct Picture {
  std::span<const PictureColour> colours;
  std::span<const char* const> rows;
};

struct CursorResource {
  UINT id;
  POINT hotSpot;
  const Picture* picture;
};

struct IconResource {
  UINT id;
  const Picture* picture;
};

/// A bitmap of 8 bits per pixel, made of pictures of one size side by side.
struct BitmapResource {
  UINT id;
  std::span<const Picture* const> pictures;
};

struct ResourceTables {
  std::span<const StringResource> strings;
  std::span<const MenuResource> menus;
  std::span<const DialogResource> dialogs;
  std::span<const CursorResource> cursors;
  std::span<const IconResource> icons;
  std::span<const BitmapResource> bitmaps;
};

/// Takes a module's resources, in the place of those given before.
PLATFORM_API void RegisterResources(HMODULE module, const ResourceTables& tables);

}  // namespace platform

/// The module that has a resource of this number (MAKEINTRESOURCE) or name and type; null if none has it.
PLATFORM_API HINSTANCE AfxFindResourceHandle(LPCSTR name, UINT type);
/// Copies the string's text, cut to fit; its length in the buffer. Null stands for every module.
PLATFORM_API int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int bufferSize);
