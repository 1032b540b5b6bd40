#include <spawn.h>
#include <sys/wait.h>
#include <tiffio.h>

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
// the library and decodes to a file. Lines of which the module or the program isn't there are left out.
namespace {

namespace fs = std::filesystem;

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

/// The strip of a page in TIFF as the only picture of a page in PDF.
void WritePdf(const std::string& tiffPath, const std::string& path) {
  TIFF* tiff = TIFFOpen(tiffPath.c_str(), "r");
  std::string strip(static_cast<std::size_t>(TIFFGetStrileByteCount(tiff, 0)), '\0');
  TIFFReadRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size()));
  TIFFClose(tiff);
  const std::string contents = "q 595 0 0 842 0 0 cm /I Do Q";
  const std::string size = "/Width " + std::to_string(kWidth) + " /Height " + std::to_string(kHeight);
  const std::vector<std::string> objects = {
      "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
      "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R "
      "/Resources << /XObject << /I 5 0 R >> >> >>",
      "<< /Length " + std::to_string(contents.size()) + " >>\nstream\n" + contents + "\nendstream",
      "<< /Type /XObject /Subtype /Image " + size +
          " /BitsPerComponent 1 /ColorSpace /DeviceGray /Filter /CCITTFaxDecode /DecodeParms << /K -1 "
          "/Columns " +
          std::to_string(kWidth) + " >> /Length " + std::to_string(strip.size()) + " >>\nstream\n" + strip +
          "\nendstream"};
  std::string file = "%PDF-1.5\n";
  std::string table = "0000000000 65535 f \n";
  for (std::size_t i = 0; i < objects.size(); ++i) {
    char line[24];
    std::snprintf(line, sizeof line, "%010zu 00000 n \n", file.size());
    table += line;
    file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const std::string place = std::to_string(file.size());
  file += "xref\n0 6\n" + table + "trailer << /Size 6 /Root 1 0 R >>\nstartxref\n" + place + "\n%%EOF\n";
  std::ofstream(path, std::ios::binary) << file;
}

void WaitUntil(std::chrono::steady_clock::time_point end) {
  while (std::chrono::steady_clock::now() < end) {
  }
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

struct Library {
  const char* name;
  std::vector<std::string> encode;  ///< all with IN and OUT for the files
  std::vector<std::string> decode;
  const char* ending;
  const char* decodedEnding;
  bool bilevel;
};

std::vector<std::string> With(std::vector<std::string> words, const std::string& in, const std::string& out) {
  for (std::string& word : words) word = word == "IN" ? in : word == "OUT" ? out : word;
  return words;
}

void CompareFirstPage(const Library& library, const fs::path& folder) {
  const std::string coded = folder / (std::string("coded") + library.ending);
  const std::string fresh = folder / (std::string("fresh") + library.ending);
  const std::string decoded = folder / (std::string("decoded") + library.decodedEnding);
  const std::string picture = folder / (library.bilevel ? "text.pbm" : "color.ppm");
  const auto decode = With(library.decode, coded, decoded);
  if (!Run(With(library.encode, picture, coded)) || !Run(decode)) {
    std::fprintf(stderr, "  left out: no %s\n", library.decode[0].c_str());
    return;
  }
  if (!Load(coded)) return;
  constexpr int kRepeats = 10;
  Ratio(
      library.name, 1.5, [&] { Load(fresh); }, [&] { Run(decode); },
      [&] { fs::copy_file(coded, fresh, fs::copy_options::overwrite_existing); }, kRepeats);
}

}  // namespace

int main() {
  const fs::path folder = fs::temp_directory_path() / ("bench_helper_" + std::to_string(std::rand()));
  fs::create_directories(folder);
  const std::string tiff = folder / "one.tif";
  const std::string pdf = folder / "one.pdf";
  auto text = TextPage();
  WritePages(tiff, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, text, 1);
  WritePdf(tiff, pdf);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // files that just changed aren't remembered
  if (Load(pdf)) {
    const auto tiffAndFive = [&] {
      Load(tiff);
      WaitUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(5));
    };
    Ratio(
        "pdf_g4_page_vs_tiff_and_5_ms", 1.0, [&] { Load(pdf); }, tiffAndFive);
  }

  WritePictures(folder / "color.ppm", folder / "text.pbm");
  const std::vector<Library> libraries = {
      {"first_webp_vs_dwebp",
       {"cwebp", "IN", "-o", "OUT"},
       {"dwebp", "IN", "-ppm", "-o", "OUT"},
       ".webp",
       ".ppm",
       false},
      {"first_jpeg2000_vs_opj_decompress",
       {"opj_compress", "-i", "IN", "-o", "OUT"},
       {"opj_decompress", "-i", "IN", "-o", "OUT"},
       ".jp2",
       ".ppm",
       false},
      {"first_jbig_vs_jbgtopbm", {"pbmtojbg", "IN", "OUT"}, {"jbgtopbm", "IN", "OUT"}, ".jbg", ".pbm", true},
  };
  for (const Library& library : libraries) CompareFirstPage(library, folder);
  fs::remove_all(folder);
}
