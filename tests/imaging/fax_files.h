#pragma once

#include "tests/imaging/codec_files.h"

// Fax data, and the files that hold it beside TIFF. The coder is libtiff's.
namespace codec_test {

/// Rows of random runs, most of which lie within three columns of the row above; a set bit is black.
std::vector<Bytes> RandomFaxRows(int width, int count, unsigned seed);
void ToggleFaxPixels(Bytes& row, int from, int to);

/// The strip of a TIFF page.
Bytes EncodeFax(const std::vector<Bytes>& rows, int width, int compression = COMPRESSION_CCITTFAX4,
                int g3Options = 0);
/// A page in group 3 coding with a byte limit before each row, so that rows can be told apart.
std::vector<Bytes> EncodeFaxRows(const std::vector<Bytes>& rows, int width);
/// Six end-of-line codes.
Bytes ReturnToControl(bool twoDimensional = false);
void ReverseFaxBits(Bytes& bytes);

/// What differs, for a message: the first pixel of a black and white page that isn't the row's; empty if
/// none.
std::string FaxDifference(const Loaded& page, const std::vector<Bytes>& rows);

Bytes MakeCals(const std::string& fields, const Bytes& coded);

struct CalsTileForm {
  int side = 0;  ///< 0: in one piece
  std::vector<int>
      types;  ///< 0 white, 1 black, 2 group 4 coding, 3 plain; none: all coded, and the file tells none
  bool cut = false;      ///< tiles on the edge end there
  bool endless = false;  ///< elements don't tell their lengths
};
/// A document of tiles. White and black ones must be so.
Bytes MakeTiledCals(const std::vector<Bytes>& rows, int width, const CalsTileForm& form);

struct IocaForm {
  int width = 300;
  int height = 200;
  int coding = 0x82;
  int bits = 1;
  bool reversed = false;
  bool subtractive = false;
};
/// An image segment; its data stands in pieces of that many bytes.
Bytes MakeIoca(const IocaForm& form, const Bytes& data, std::size_t piece = 1000);
/// A document with an image object of each segment, whose data fields hold so many bytes.
Bytes MakeModca(const std::vector<Bytes>& segments, std::size_t fieldBytes = 700);

struct IntergraphForm {
  int type = 9;
  int width = 0;
  int height = 0;
  int scanLines = 4;
  int tile = 0;  ///< pixels of a side; the data is then one block for each tile
  bool palette = false;
};
Bytes MakeIntergraph(const IntergraphForm& form, const std::vector<Bytes>& data);

Bytes MakeEps(const Bytes& preview, bool metafile = false);

/// Files with something of everything in them.
std::vector<Bytes> MakeArchiveSamples();

}  // namespace codec_test
