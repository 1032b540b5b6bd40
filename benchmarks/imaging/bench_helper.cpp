#include <spawn.h>
#include <sys/wait.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/ratio.h"
#include "imaging/ltwrap.h"

// Files that the helper reads. A page whose data the host decodes itself against the same data in TIFF; the
// first page of a file that was never seen, with the start of the helper, against the program that comes with
// the library and decodes to a file, or one of ours that calls the library (draw_pdf); pictures of 100 pages
// against that program at the pictures' size. Files are made, and where TESSAREL_CORPUS is set its real ones
// are measured as well. Lines of which the module or the program isn't there are left out.
namespace {

namespace fs = std::filesystem;

constexpr int kReportPages = 100;
constexpr std::chrono::milliseconds kUntilRemembered{200};  // files that just changed share no process
constexpr int kStripSide = 107;  // the room for a picture in the strip, and the height of one that stands
constexpr int kStripHeight = 79;

bool Load(const std::string& path) {
  struct_LEAD_Bitmap bitmap{};
  try {
    LEADTOOLS::LoadBitmapA(path.c_str(), &bitmap, 0, 0, nullptr, nullptr);
  } catch (CLeadtoolsException* exception) {
    std::fprintf(stderr, "  left out: %s\n",
                 static_cast<const char*>(CLeadtoolsException::GetErrorMessage(exception->m_nError)));
    exception->Delete();
    return false;
  }
  LEADTOOLS::FreeBitmap(&bitmap);
  return true;
}

bool Run(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  for (const int number : {1, 2}) posix_spawn_file_actions_addopen(&quiet, number, "/dev/null", 1, 0);
  pid_t process = 0;
  int status = 1;
  if (posix_spawnp(&process, arguments[0], &quiet, nullptr, arguments.data(), environ) == 0)
    waitpid(process, &status, 0);
  posix_spawn_file_actions_destroy(&quiet);
  return status == 0;
}

/// Objects as a file; the first is the catalogue.
void WriteObjects(const std::vector<std::string>& objects, const std::string& path) {
  std::string file = "%PDF-1.5\n";
  std::string table = "0000000000 65535 f \n";
  for (std::size_t i = 0; i < objects.size(); ++i) {
    char line[24];
    std::snprintf(line, sizeof line, "%010zu 00000 n \n", file.size());
    table += line;
    file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const std::string place = std::to_string(file.size());
  const std::string size = std::to_string(objects.size() + 1);
  file += "xref\n0 " + size + "\n" + table + "trailer << /Size " + size + " /Root 1 0 R >>\nstartxref\n" +
          place + "\n%%EOF\n";
  std::ofstream(path, std::ios::binary) << file;
}

std::string StreamOf(const std::string& entries, const std::string& data) {
  return "<< " + entries + " /Length " + std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream";
}

/// The strip of a page in TIFF as the only picture of a page in PDF.
void WritePdf(const std::string& tiffPath, const std::string& path) {
  TIFF* tiff = TIFFOpen(tiffPath.c_str(), "r");
  std::string strip(static_cast<std::size_t>(TIFFGetStrileByteCount(tiff, 0)), '\0');
  TIFFReadRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size()));
  TIFFClose(tiff);
  const std::string columns = std::to_string(kWidth);
  WriteObjects(
      {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
       "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R "
       "/Resources << /XObject << /I 5 0 R >> >> >>",
       StreamOf("", "q 595 0 0 842 0 0 cm /I Do Q"),
       StreamOf("/Type /XObject /Subtype /Image /Width " + columns + " /Height " + std::to_string(kHeight) +
                    " /BitsPerComponent 1 /ColorSpace /DeviceGray /Filter /CCITTFaxDecode /DecodeParms << "
                    "/K -1 /Columns " +
                    columns + " >>",
                strip)},
      path);
}

/// Different pages of a report: forty lines of text and a table with shaded cells.
std::string ReportPage(int number) {
  std::string page = "BT /F 11 Tf 13 TL 60 790 Td ";
  for (int line = 0; line < 40; ++line)
    page += "(Page " + std::to_string(number) + ", line " + std::to_string(line) +
            ": what was measured between the two readings of the day) Tj T* ";
  page += "ET ";
  for (int cell = 0; cell < 60; ++cell)
    page += std::to_string((cell + number) % 10 / 10.0) + " g " + std::to_string(60 + cell % 10 * 45) + " " +
            std::to_string(60 + cell / 10 * 25) + " 44 24 re f ";
  return page;
}

void WriteReport(int pages, const std::string& path) {
  std::string kids;
  std::vector<std::string> objects = {"<< /Type /Catalog /Pages 2 0 R >>", "",
                                      "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
  for (int page = 0; page < pages; ++page) {
    kids += std::to_string(objects.size() + 1) + " 0 R ";
    objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents " +
                      std::to_string(objects.size() + 2) + " 0 R /Resources << /Font << /F 3 0 R >> >> >>");
    objects.push_back(StreamOf("", ReportPage(page)));
  }
  objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages) + " >>";
  WriteObjects(objects, path);
}

void WaitUntil(std::chrono::steady_clock::time_point end) {
  while (std::chrono::steady_clock::now() < end) {
  }
}

void SaveJpeg(const std::string& from, const std::string& path) {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::LoadBitmapA(from.c_str(), &bitmap, 0, 0, nullptr, nullptr);
  LEADTOOLS::SaveBitmap(path.c_str(), &bitmap, 98, 0, 90, nullptr);
  LEADTOOLS::FreeBitmap(&bitmap);
}

/// A photograph's soft areas and noise, and a page of text, in the forms that the libraries' programs code.
void WritePictures(const std::string& color, const std::string& bilevel) {
  constexpr int kColorWidth = 1600;
  constexpr int kColorHeight = 1200;
  std::ofstream ppm(color, std::ios::binary);
  ppm << "P6\n" << kColorWidth << ' ' << kColorHeight << "\n255\n";
  unsigned seed = 7;
  for (int y = 0; y < kColorHeight; ++y)
    for (int x = 0; x < kColorWidth; ++x) {
      seed = seed * 1664525U + 1013904223U;
      const auto noise = static_cast<int>(seed >> 29);
      for (const int level : {x / 8, y / 8, (x / 64 + y / 64) % 2 * 90})
        ppm.put(static_cast<char>(level + noise));
    }
  const auto page = TextPage();
  std::ofstream pbm(bilevel, std::ios::binary);
  pbm << "P4\n" << kWidth << ' ' << kHeight << '\n';
  pbm.write(reinterpret_cast<const char*>(page.data()), std::ssize(page));
}

/// How a library's own program decodes; IN and OUT stand for the files.
struct Library {
  const char* name;
  std::vector<std::string> decode;
  const char* decodedEnding;
};

const Library kWebp = {"dwebp", {"dwebp", "IN", "-ppm", "-o", "OUT"}, ".ppm"};
const Library kJpeg2000 = {"opj_decompress", {"opj_decompress", "-i", "IN", "-o", "OUT"}, ".ppm"};
const Library kJbig = {"jbgtopbm", {"jbgtopbm", "IN", "OUT"}, ".pbm"};
// It writes the planes as they are, and so does less than a reader that is asked for colours.
const Library kHeic = {"heif_convert", {"heif-convert", "--quiet", "IN", "OUT"}, ".y4m"};
const Library kDicom = {"dcmj2pnm", {"dcmj2pnm", "+Wm", "IN", "OUT"}, ".ppm"};
const Library kDicomColor = {"dcmj2pnm", {"dcmj2pnm", "IN", "OUT"}, ".ppm"};
const Library kMedia = {"ffmpeg", {"ffmpeg", "-y", "-i", "IN", "-frames:v", "1", "OUT"}, ".ppm"};
const Library kPdf = {"qtpdf", {DRAW_PDF, "IN", "OUT"}, ".ppm"};

/// A file that a program makes of the picture, which is color.ppm unless it says otherwise.
struct Made {
  const char* name;
  const Library& library;
  const char* ending;
  std::vector<std::string> encode;
  const char* picture = "color.ppm";
};
const std::vector<Made> kMade = {
    {"webp", kWebp, ".webp", {"cwebp", "IN", "-o", "OUT"}},
    {"jpeg2000", kJpeg2000, ".jp2", {"opj_compress", "-i", "IN", "-o", "OUT"}},
    {"jbig", kJbig, ".jbg", {"pbmtojbg", "IN", "OUT"}, "text.pbm"},
    {"heic", kHeic, ".heic", {"heif-enc", "IN", "-o", "OUT"}, "color.jpg"},
    {"dicom", kDicomColor, ".dcm", {"img2dcm", "IN", "OUT"}, "color.jpg"},
    {"film",
     kMedia,
     ".avi",
     {"ffmpeg", "-y", "-loop", "1", "-i", "IN", "-frames:v", "25", "-c:v", "mjpeg", "OUT"}},
    {"report", kPdf, ".pdf", {"cp", "IN", "OUT"}, "report.pdf"},
};

/// A real file.
struct Real {
  const char* name;
  const Library& library;
  const char* path;
};
const std::vector<Real> kReal = {
    {"real_jpeg2000", kJpeg2000, "other-formats/test-card-lossless.jp2"},
    {"real_dicom", kDicomColor, "dicom/examples_ybr_color.dcm"},
    {"real_ct", kDicom, "other-formats/CT_small.dcm"},
    {"real_psd", kMedia, "other-formats/hopper.psd"},
    {"real_avi", kMedia, "other-formats/video/100_0306.AVI"},
    {"real_pdf", kPdf, "pdf/PDFBOX-3110-poems-beads-cropbox.pdf"},
};

std::vector<std::string> With(std::vector<std::string> words, const std::string& in, const std::string& out) {
  for (std::string& word : words) word = word == "IN" ? in : word == "OUT" ? out : word;
  return words;
}

void CompareFirstPage(const std::string& name, const Library& library, const fs::path& coded,
                      const fs::path& folder) {
  const std::string fresh = folder / ("fresh" + coded.extension().string());
  const auto decode = With(library.decode, coded, folder / (std::string("decoded") + library.decodedEnding));
  if (!Run(decode)) {
    std::fprintf(stderr, "  left out: %s can't be run\n", library.decode[0].c_str());
    return;
  }
  if (!Load(coded)) return;
  constexpr int kRepeats = 15;
  Ratio(("first_" + name + "_vs_" + library.name).c_str(), 1.5, [&] { Load(fresh); }, [&] { Run(decode); },
        [&] { fs::copy_file(coded, fresh, fs::copy_options::overwrite_existing); }, kRepeats);
}

void CompareFirstPages(const fs::path& folder) {
  for (const Made& made : kMade) {
    const std::string coded = folder / (std::string("coded") + made.ending);
    if (Run(With(made.encode, folder / made.picture, coded)))
      CompareFirstPage(made.name, made.library, coded, folder);
    else
      std::fprintf(stderr, "  left out: %s can't be run\n", made.encode[0].c_str());
  }
  const char* corpus = std::getenv("TESSAREL_CORPUS");
  if (corpus == nullptr) return;
  for (const Real& real : kReal)
    CompareFirstPage(real.name, real.library, fs::path(corpus) / real.path, folder);
}

void ShrinkToStrip(struct_LEAD_Bitmap* page) {
  const double factor = static_cast<double>(kStripHeight) / page->Height;
  LEADTOOLS::SizeBitmapExt(page, static_cast<int>(page->Width * factor), kStripHeight, 0);
}

/// As the strip of a window makes them.
void MakePictures(std::string path) {
  void* list = nullptr;
  LEADTOOLS::LoadBitmapList(path.data(), &list, 0, 1, nullptr, nullptr);
  LEADTOOLS::PrepareBitmapListPages(list, {kStripSide, &ShrinkToStrip, &ShrinkToStrip});
  for (unsigned page = 0; page < kReportPages; ++page) {
    struct_LEAD_Bitmap bitmap{};
    LEADTOOLS::GetBitmapListItem(list, page, &bitmap);
  }
  LEADTOOLS::DestroyBitmapList(list);
}

void ComparePictures(const fs::path& folder) {
  const std::string report = folder / "report.pdf";
  const std::string fresh = folder / "fresh_report.pdf";
  const std::vector<std::string> draw = {DRAW_PDF, report, folder / "drawn.ppm",
                                         std::to_string(kStripHeight)};
  if (!Load(report) || !Run(draw)) return;
  constexpr int kRepeats = 9;
  Ratio(
      "thumbnails_of_100_pdf_pages_vs_qtpdf", 1.2, [&] { MakePictures(fresh); }, [&] { Run(draw); },
      [&] {
        fs::copy_file(report, fresh, fs::copy_options::overwrite_existing);
        std::this_thread::sleep_for(kUntilRemembered);
      },
      kRepeats);
}

}  // namespace

int main() {
  const fs::path folder = fs::temp_directory_path() / ("bench_helper_" + std::to_string(getpid()));
  fs::create_directories(folder);
  const std::string tiff = folder / "one.tif";
  const std::string pdf = folder / "one.pdf";
  auto text = TextPage();
  WritePages(tiff, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, text, 1);
  WritePdf(tiff, pdf);
  WriteReport(kReportPages, folder / "report.pdf");
  WritePictures(folder / "color.ppm", folder / "text.pbm");
  SaveJpeg(folder / "color.ppm", folder / "color.jpg");
  std::this_thread::sleep_for(kUntilRemembered);
  if (Load(pdf)) {
    const auto tiffAndFive = [&] {
      Load(tiff);
      WaitUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(5));
    };
    Ratio(
        "pdf_g4_page_vs_tiff_and_5_ms", 1.0, [&] { Load(pdf); }, tiffAndFive, [] {}, 40);
  }
  CompareFirstPages(folder);
  ComparePictures(folder);
  fs::remove_all(folder);
}
