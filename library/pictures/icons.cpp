#include <array>

#include "library/resource_ids.h"
#include "library/resources.h"

// The icons of the frames, 32 by 32, in colours of the 16 that every display has: a scanned page under a
// magnifier, and the same with several pages.

namespace {

// clang-format off
constexpr std::array kColours = {
    platform::PictureColour{'.', 0x000000, true},
    platform::PictureColour{'#', 0x000000},
    platform::PictureColour{'o', 0xffffff},
    platform::PictureColour{'-', 0xc0c0c0},  // shade of paper
    platform::PictureColour{'=', 0x808080},  // text
    platform::PictureColour{'B', 0x000080},  // text under the lens
    platform::PictureColour{'b', 0x00ffff},  // glass
    platform::PictureColour{'h', 0x808000},  // handle
    platform::PictureColour{'y', 0xffff00},  // the light on it
};

constexpr std::array kViewerRows = {
    "................................",
    "...###############..............",
    "...#ooooooooooooo##.............",
    "...#ooooooooooooo#-#............",
    "...#ooooooooooooo#--#...........",
    "...#oo========ooo#---#..........",
    "...#ooooooooooooo#----#.........",
    "...#ooooooooooooo#######........",
    "...#oo========oooooooo-#........",
    "...#oooooooooooooooooo-#........",
    "...#oooooooooooo#####o-#........",
    "...#oo========###ooo####........",
    "...#ooooooooo#ooobobooo#........",
    "...#oooooooo#ooobobobobb#.......",
    "...#oo=====#ooobobobobobb#......",
    "...#ooooooo#ooBBBBBBBBbob#......",
    "...#oooooo##obBBBBBBBBobb##.....",
    "...#oo====#obobobobobobobb#.....",
    "...#oooooo#oobobobobobobob#.....",
    "...#oooooo#oboBBBBBBbobobb#.....",
    "...#oo====##obBBBBBBobobb##.....",
    "...#ooooooo#oobobobobobob#......",
    "...#ooooooo#obobobobobobb#......",
    "...#oo======#bbobobobobb###.....",
    "...#ooooooooo#bbbbobbbb#yh##....",
    "...#oooooooooo###bbb####hyh##...",
    "...#oo==========#####o-##hyh##..",
    "...#oooooooooooooooooo-###hyh##.",
    "...#-------------------#.##hyh##",
    "...#####################..##hh##",
    "...........................####.",
    "............................##..",
};

constexpr std::array kDocumentRows = {
    "................................",
    ".........##################.....",
    ".........#ooooooooooooooo-#.....",
    ".........#ooooooooooooooo-#.....",
    "......##################o-#.....",
    "......#ooooooooooooooo-#o-#.....",
    "......#ooooooooooooooo-#o-#.....",
    "...#############oooooo-#o-#.....",
    "...#ooooooooooo##ooooo-#o-#.....",
    "...#ooooooooooo#-#oooo-#o-#.....",
    "...#ooooooooooo######o-#o-#.....",
    "...#oo=======o###ooo####o-#.....",
    "...#ooooooooo#ooobobooo#o-#.....",
    "...#oooooooo#ooobobobobb#-#.....",
    "...#oo=====#ooobobobobobb##.....",
    "...#ooooooo#ooBBBBBBBBbob##.....",
    "...#oooooo##obBBBBBBBBobb##.....",
    "...#oo====#obobobobobobobb#.....",
    "...#oooooo#oobobobobobobob#.....",
    "...#oooooo#oboBBBBBBbobobb#.....",
    "...#oo====##obBBBBBBobobb##.....",
    "...#ooooooo#oobobobobobob##.....",
    "...#ooooooo#obobobobobobb##.....",
    "...#oo======#bbobobobobb###.....",
    "...#ooooooooo#bbbbobbbb#yh##....",
    "...#oooooooooo###bbb####hyh##...",
    "...#oo==========#########hyh##..",
    "...#ooooooooooooooo-#...##hyh##.",
    "...#----------------#....##hyh##",
    "...##################.....##hh##",
    "...........................####.",
    "............................##..",
};

// clang-format on

constexpr platform::Picture kViewer{kColours, kViewerRows};
constexpr platform::Picture kDocument{kColours, kDocumentRows};

constexpr std::array kIcons = {
    platform::IconResource{IDR_ZP_VIEWER, &kViewer},
    platform::IconResource{IDR_ZP_HOST, &kDocument},
};

}  // namespace

std::span<const platform::IconResource> LibraryIcons() {
  return kIcons;
}
