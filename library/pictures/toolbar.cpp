#include <array>

#include "library/resource_ids.h"
#include "library/resources.h"

// The pictures of the toolbars, 16 by 16. One family: pages and tools in a dark outline of one pixel, light
// from the top left, and blue for what happens to the page. Of a disabled button only the dark colours,
// outline and blue, are left, so they alone have to tell the pictures apart. Magenta is the transparent
// colour of the toolbars.

namespace {

// clang-format off
constexpr std::array kColours = {
    platform::PictureColour{'.', 0xff00ff, true},
    platform::PictureColour{'#', 0x202a38},  // outline
    platform::PictureColour{'o', 0xffffff},  // paper
    platform::PictureColour{'-', 0xdbe1ea},  // shade of paper
    platform::PictureColour{'=', 0xa3adbb},  // text
    platform::PictureColour{'b', 0xbfdcf7},  // glass
    platform::PictureColour{'B', 0x2f6bb8},  // arrows and signs
    platform::PictureColour{'g', 0x8db9ea},  // the light on them
    platform::PictureColour{'h', 0xe3a73c},  // handle
    platform::PictureColour{'t', 0xe9d3b0},  // shade of the hand
};

// A printer with a sheet going through.
constexpr std::array kPrintRows = {
    "................",
    "....########....",
    "....#oooooo#....",
    "....#o====o#....",
    "....#oooooo#....",
    "....#o====o#....",
    ".##############.",
    "#oooooooooooooo#",
    "#o--------BB--=#",
    "#-------------=#",
    "#-############=#",
    "#==#oooooooo#==#",
    ".###o======o###.",
    "...#oooooooo#...",
    "...##########...",
    "................",
};

// The open hand of the drag mode's cursor.
constexpr std::array kDragRows = {
    ".......##.......",
    "...##.#oo###....",
    "..#oo##oo#oo#...",
    "..#oo##oo#oo#.#.",
    "...#oo#oo#oo##o#",
    "...#oo#oo#oo#oo#",
    ".##.#ooooooooot#",
    "#oo##ooooooooot#",
    "#ooo#oooooooot#.",
    ".#ooooooooooot#.",
    "..#oooooooooot#.",
    "..#ooooooooot#..",
    "...#ooooooott#..",
    "....#ooooott#...",
    "....#tttttt#....",
    "....########....",
};

// The magnifiers of the zoom modes' cursors.
constexpr std::array kZoomInModeRows = {
    "....####........",
    "..##oobb##......",
    ".#oobbbbbb#.....",
    ".#obb##bbb#.....",
    "#obbb##bbbb#....",
    "#ob######bb#....",
    "#bb######bb#....",
    "#bbbb##bbbb#....",
    ".#bbb##bbb#.....",
    ".#bbbbbbbb##....",
    "..##bbbb##hh#...",
    "....####.#hhh#..",
    "..........#hhh#.",
    "...........#hhh#",
    "............#hh#",
    ".............##.",
};

constexpr std::array kZoomOutModeRows = {
    "....####........",
    "..##oobb##......",
    ".#oobbbbbb#.....",
    ".#obbbbbbb#.....",
    "#obbbbbbbbb#....",
    "#ob######bb#....",
    "#bb######bb#....",
    "#bbbbbbbbbb#....",
    ".#bbbbbbbb#.....",
    ".#bbbbbbbb##....",
    "..##bbbb##hh#...",
    "....####.#hhh#..",
    "..........#hhh#.",
    "...........#hhh#",
    "............#hh#",
    ".............##.",
};

// A page and the way to the one before it.
constexpr std::array kPrevRows = {
    "................",
    ".....########...",
    ".....#ooooo#-#..",
    ".....#o===o#--#.",
    ".....#ooooo####.",
    "....##o=====oo#.",
    "...#B#oooooooo#.",
    "..#gB########o#.",
    ".#gBBggggggB#o#.",
    "#BBBBBBBBBBB#o#.",
    ".#BBBBBBBBBB#o#.",
    "..#BB########o#.",
    "...#B#o=====oo#.",
    "....##oooooooo#.",
    ".....##########.",
    "................",
};

constexpr std::array kNextRows = {
    "................",
    ".########.......",
    ".#ooooo#-#......",
    ".#o===o#--#.....",
    ".#ooooo####.....",
    ".#o=====oo##....",
    ".#oooooooo#g#...",
    ".#o########Bg#..",
    ".#o#BggggggBBg#.",
    ".#o#BBBBBBBBBBB#",
    ".#o#BBBBBBBBBB#.",
    ".#o########BB#..",
    ".#o=====oo#B#...",
    ".#oooooooo##....",
    ".##########.....",
    "................",
};

// The page itself gets smaller or larger: no magnifier, that is the mode.
constexpr std::array kZoomOutRows = {
    "................",
    ".########.......",
    ".#ooooo#-#......",
    ".#o===o#--#.....",
    ".#ooooo####.....",
    ".#o=====oo#.....",
    ".#ooooooo####...",
    ".#o====##gggB##.",
    ".#ooooo#gBBBBB#.",
    ".#o===#gBBBBBBB#",
    ".#oooo#gooooooB#",
    ".#o===#BooooooB#",
    ".#oooo#BBBBBBBB#",
    ".#######BBBBBB#.",
    ".......##BBBB##.",
    ".........####...",
};

constexpr std::array kZoomInRows = {
    "................",
    ".########.......",
    ".#ooooo#-#......",
    ".#o===o#--#.....",
    ".#ooooo####.....",
    ".#o=====oo#.....",
    ".#ooooooo####...",
    ".#o====##gggB##.",
    ".#ooooo#gBooBB#.",
    ".#o===#gBBooBBB#",
    ".#oooo#gooooooB#",
    ".#o===#BooooooB#",
    ".#oooo#BBBooBBB#",
    ".#######BBooBB#.",
    ".......##BBBB##.",
    ".........####...",
};

// A marked area under the magnifier.
constexpr std::array kZoomSelectedRows = {
    "##.###.###.##...",
    "#...........#...",
    "................",
    "#...........#...",
    "#...........#...",
    ".......####.....",
    "#.....#oobb#....",
    "#....#oobbbb#...",
    ".....#obbbbb#...",
    "#....#bbbbbb#...",
    "#....#bbbbbb#...",
    "......#bbbb##...",
    "##.##..####hh#..",
    "..........#hhh#.",
    "...........#hhh#",
    "............###.",
};

// The whole page between the corners of the window.
constexpr std::array kBestFitRows = {
    "BBBB........BBBB",
    "BBBB........BBBB",
    "BB..######....BB",
    "BB..#ooo#-#...BB",
    "....#ooo#--#....",
    "....#ooo####....",
    "....#o====o#....",
    "....#oooooo#....",
    "....#o====o#....",
    "....#oooooo#....",
    "....#o====o#....",
    "....#oooooo#....",
    "BB..#oooooo#..BB",
    "BB..########..BB",
    "BBBB........BBBB",
    "BBBB........BBBB",
};

// The page and the measure that it is fitted to.
constexpr std::array kFitWidthRows = {
    "..#########.....",
    "..#ooooooo#-#...",
    "..#o=====o#--#..",
    "..#ooooooo####..",
    "..#o========o#..",
    "..#oooooooooo#..",
    "..#o========o#..",
    "..#oooooooooo#..",
    "..############..",
    "................",
    "..BB........BB..",
    ".BBB........BBB.",
    "BBBBBBBBBBBBBBBB",
    "BBBBBBBBBBBBBBBB",
    ".BBB........BBB.",
    "..BB........BB..",
};

constexpr std::array kFitHeightRows = {
    "............BB..",
    "#######....BBBB.",
    "#oooo#-#..BBBBBB",
    "#o==o#--#.BBBBBB",
    "#oooo####...BB..",
    "#ooooooo#...BB..",
    "#o=====o#...BB..",
    "#ooooooo#...BB..",
    "#o=====o#...BB..",
    "#ooooooo#...BB..",
    "#o=====o#...BB..",
    "#ooooooo#...BB..",
    "#o=====o#.BBBBBB",
    "#ooooooo#.BBBBBB",
    "#########..BBBB.",
    "............BB..",
};

// The page and which way it turns.
constexpr std::array kRotateLeftRows = {
    "................",
    ".....BBBBB......",
    "...BBBBBBBBB....",
    "..BBBB...BBBB...",
    "..BBB......BB...",
    "..BB............",
    "BBBBBB########..",
    ".BBBB.#oooooo#..",
    "..BB..#o====o#..",
    "......#oooooo#..",
    "......#o====o#..",
    "......#oooooo#..",
    "......#o====o#..",
    "......#oooooo#..",
    "......########..",
    "................",
};

constexpr std::array kRotateRightRows = {
    "................",
    "......BBBBB.....",
    "....BBBBBBBBB...",
    "...BBBB...BBBB..",
    "...BB......BBB..",
    "............BB..",
    "..########BBBBBB",
    "..#oooooo#.BBBB.",
    "..#o====o#..BB..",
    "..#oooooo#......",
    "..#o====o#......",
    "..#oooooo#......",
    "..#o====o#......",
    "..#oooooo#......",
    "..########......",
    "................",
};

constexpr std::array kRotate180Rows = {
    "................",
    "....BBBBBBBB....",
    "...BBBBBBBBBB...",
    "..BB........BB..",
    "..B..######.BB..",
    ".....#oooo#BBBB.",
    ".....#o==o#.BB..",
    ".....#oooo#.....",
    ".....#o==o#.....",
    "..BB.#oooo#.....",
    ".BBBB#o==o#.....",
    "..BB.######..B..",
    "..BB........BB..",
    "...BBBBBBBBBB...",
    "....BBBBBBBB....",
    "................",
};

// A window with a column of small pages.
constexpr std::array kThumbnailsRows = {
    "................",
    "################",
    "#-----#oooooooo#",
    "#-BBB-#o======o#",
    "#-BoB-#oooooooo#",
    "#-BoB-#o======o#",
    "#-BBB-#oooooooo#",
    "#-----#o======o#",
    "#-###-#oooooooo#",
    "#-#o#-#o======o#",
    "#-#o#-#oooooooo#",
    "#-###-#o===oooo#",
    "#-----#oooooooo#",
    "#-----#oooooooo#",
    "################",
    "................",
};

// clang-format on

constexpr platform::Picture kPrint{kColours, kPrintRows};
constexpr platform::Picture kDrag{kColours, kDragRows};
constexpr platform::Picture kZoomInMode{kColours, kZoomInModeRows};
constexpr platform::Picture kZoomOutMode{kColours, kZoomOutModeRows};
constexpr platform::Picture kPrev{kColours, kPrevRows};
constexpr platform::Picture kNext{kColours, kNextRows};
constexpr platform::Picture kZoomOut{kColours, kZoomOutRows};
constexpr platform::Picture kZoomIn{kColours, kZoomInRows};
constexpr platform::Picture kZoomSelected{kColours, kZoomSelectedRows};
constexpr platform::Picture kBestFit{kColours, kBestFitRows};
constexpr platform::Picture kFitWidth{kColours, kFitWidthRows};
constexpr platform::Picture kFitHeight{kColours, kFitHeightRows};
constexpr platform::Picture kRotateLeft{kColours, kRotateLeftRows};
constexpr platform::Picture kRotateRight{kColours, kRotateRightRows};
constexpr platform::Picture kRotate180{kColours, kRotate180Rows};
constexpr platform::Picture kThumbnails{kColours, kThumbnailsRows};

// In the order of the buttons, separators left out. The toolbars of the viewer frames and of the document's
// frames have the same buttons.
constexpr std::array kStrip = {
    &kPrint,      &kDrag,        &kZoomInMode,   &kZoomOutMode, &kPrev,     &kNext,
    &kZoomOut,    &kZoomIn,      &kZoomSelected, &kBestFit,     &kFitWidth, &kFitHeight,
    &kRotateLeft, &kRotateRight, &kRotate180,    &kThumbnails,
};

constexpr std::array kBitmaps = {
    platform::BitmapResource{IDB_ZP_VIEWER_TOOLBAR, kStrip},
    platform::BitmapResource{IDB_ZP_DOCUMENT_TOOLBAR, kStrip},
};

}  // namespace

std::span<const platform::BitmapResource> LibraryBitmaps() {
  return kBitmaps;
}
