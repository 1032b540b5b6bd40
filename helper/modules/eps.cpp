#include <cstddef>
// Needs what the one before it brings.
#include <ghostscript/gdevdsp.h>
#include <ghostscript/iapi.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "helper/module.h"
#include "helper/modules/drawn_size.h"
#include "helper/modules/eps_file.h"

// Encapsulated PostScript, run by Ghostscript and drawn on white.
namespace helper {
namespace {

constexpr int kFormat = 16;
constexpr int kDisplayFormat =
    int{DISPLAY_COLORS_RGB} | int{DISPLAY_DEPTH_8} | int{DISPLAY_BIGENDIAN} | int{DISPLAY_TOPFIRST};

/// The interpreter, of which a process has one. It is made before the lock-down, as it reads its own programs
/// from disk, and is never ended.
class Interpreter {
 public:
  Interpreter();
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  /// Runs a few words of ours; tells how it ended.
  int Run(const std::string& words);
  /// Runs what the program's text says, read from where it lies. Faults stay within it, as the interpreter
  /// would not be usable after one.
  int RunProgram(const EpsFile& file);
  /// The picture as it is now, if it has that size.
  const std::uint8_t* Rows(int width, int height, std::ptrdiff_t& pitch) const;
  /// The name of the last fault, and in which operator; empty if it told none.
  std::string Fault() const;

 private:
  static int ReadInput(void* self, char* target, int most);
  static int TakeOutput(void* self, const char* text, int length);
  static int Callout(void* instance, void* self, const char* device, int id, int size, void* data);
  static int OnSize(void* self, void* device, int width, int height, int raster, unsigned format,
                    unsigned char* image);

  void* m_instance = nullptr;
  display_callback m_display{};
  const EpsFile* m_file = nullptr;
  std::int64_t m_offset = 0;
  std::string m_output;
  const std::uint8_t* m_image = nullptr;
  int m_width = 0;
  int m_height = 0;
  int m_raster = 0;
};

Interpreter::Interpreter() {
  m_display.size = sizeof m_display;
  m_display.version_major = DISPLAY_VERSION_MAJOR;
  m_display.version_minor = DISPLAY_VERSION_MINOR;
  const auto nothing = [](void*, void*) { return 0; };
  m_display.display_open = nothing;
  m_display.display_preclose = nothing;
  m_display.display_close = nothing;
  m_display.display_sync = nothing;
  m_display.display_presize = [](void*, void*, int, int, int, unsigned) { return 0; };
  m_display.display_size = OnSize;
  m_display.display_page = [](void*, void*, int, int) { return 0; };
  if (gsapi_new_instance(&m_instance, this) < 0) return;
  gsapi_set_stdio(m_instance, ReadInput, TakeOutput, TakeOutput);
  gsapi_set_arg_encoding(m_instance, GS_ARG_ENCODING_UTF8);
  gsapi_register_callout(m_instance, Callout, this);
  // A program that takes more than 1,000,000 KB is told so early, before the search for garbage takes
  // minutes. A picture that isn't kept whole goes to a file, of which the sandbox has none.
  std::string format = "-dDisplayFormat=" + std::to_string(kDisplayFormat);
  const std::array<const char*, 13> words = {"gs",
                                             "-dSAFER",
                                             "-K1000000",
                                             "-dNOPAUSE",
                                             "-dQUIET",
                                             "-sDEVICE=display",
                                             "-dMaxBitmap=500000000",
                                             format.c_str(),
                                             "-dDEVICEWIDTHPOINTS=8",
                                             "-dDEVICEHEIGHTPOINTS=8",
                                             "-r72",
                                             "-dTextAlphaBits=4",
                                             "-dGraphicsAlphaBits=4"};
  std::array<char*, words.size()> arguments;
  std::transform(words.begin(), words.end(), arguments.begin(),
                 [](const char* word) { return const_cast<char*>(word); });
  if (gsapi_init_with_args(m_instance, static_cast<int>(arguments.size()), arguments.data()) < 0)
    m_instance = nullptr;
}

int Interpreter::Run(const std::string& words) {
  if (m_instance == nullptr) throw Failure(Status::kUnsupported, "the interpreter of PostScript can't start");
  m_output.clear();
  int exit = 0;
  return gsapi_run_string_with_length(m_instance, words.data(), static_cast<unsigned>(words.size()), 0,
                                      &exit);
}

int Interpreter::RunProgram(const EpsFile& file) {
  m_file = &file;
  m_offset = 0;
  const int code =
      Run("$error /newerror false put {(%stdin) (r) file cvx exec} stopped {$error /newerror get {(Error: ) "
          "print "
          "$error /errorname get 200 string cvs print ( in ) print $error /command get 200 string cvs print "
          "(\n) print flush} if} if");
  m_file = nullptr;
  return code;
}

const std::uint8_t* Interpreter::Rows(int width, int height, std::ptrdiff_t& pitch) const {
  pitch = m_raster;
  return m_width == width && m_height == height ? m_image : nullptr;
}

std::string Interpreter::Fault() const {
  constexpr std::string_view kMark = "Error: ";
  const std::size_t start = m_output.find(kMark);
  if (start == std::string::npos) return {};
  const std::size_t end = m_output.find('\n', start);
  return m_output.substr(start + kMark.size(), end == std::string::npos ? end : end - start - kMark.size());
}

int Interpreter::ReadInput(void* self, char* target, int most) {
  auto& interpreter = *static_cast<Interpreter*>(self);
  if (interpreter.m_file == nullptr || most <= 0) return 0;
  const std::size_t got = interpreter.m_file->ReadAt(
      interpreter.m_offset, {reinterpret_cast<std::uint8_t*>(target), static_cast<std::size_t>(most)});
  interpreter.m_offset += static_cast<std::int64_t>(got);
  return static_cast<int>(got);
}

int Interpreter::TakeOutput(void* self, const char* text, int length) {
  constexpr std::size_t kMost = 4096;
  std::string& output = static_cast<Interpreter*>(self)->m_output;
  if (output.size() < kMost) output.append(text, static_cast<std::size_t>(std::max(length, 0)));
  return length;
}

int Interpreter::Callout(void*, void* self, const char* device, int id, int, void* data) {
  if (device == nullptr || std::string_view(device) != "display" || id != DISPLAY_CALLOUT_GET_CALLBACK)
    return -1;
  auto& target = *static_cast<gs_display_get_callback_t*>(data);
  target.callback = &static_cast<Interpreter*>(self)->m_display;
  target.caller_handle = self;
  return 0;
}

int Interpreter::OnSize(void* self, void*, int width, int height, int raster, unsigned,
                        unsigned char* image) {
  auto& interpreter = *static_cast<Interpreter*>(self);
  interpreter.m_width = width;
  interpreter.m_height = height;
  interpreter.m_raster = raster;
  interpreter.m_image = image;
  return 0;
}

/// One for the process, made in Prepare.
Interpreter* g_interpreter = nullptr;

std::string Numbers(const char* format, double first, double second) {
  std::array<char, 100> text{};
  std::snprintf(text.data(), text.size(), format, first, second);
  return text.data();
}

class Eps final : public Document {
 public:
  explicit Eps(const Input& input) : m_file(input) {}

  int CountPages() override { return 1; }

  PageRecord Describe(int, int resolution) override { return DrawnPage(SizeAt(resolution), kFormat, "EPS"); }

  Decoded Decode(int, int resolution, const Canvas& canvas) override {
    const DrawnSize size = SizeAt(resolution);
    SetUp(size);
    const int code = g_interpreter->RunProgram(m_file);
    const std::string fault = g_interpreter->Fault();
    TakeDown();
    if (code < 0 || !fault.empty()) throw Failure(Status::kCorrupt, "the PostScript can't be run: " + fault);
    std::ptrdiff_t pitch = 0;
    const std::uint8_t* rows = g_interpreter->Rows(size.width, size.height, pitch);
    if (rows == nullptr) throw Failure(Status::kCorrupt, "the PostScript can't be drawn");
    for (int y = 0; y < size.height; ++y)
      std::copy_n(rows + y * pitch, static_cast<std::size_t>(size.width) * 3, canvas.Row(y));
    return {size.height, 0};
  }

 private:
  DrawnSize SizeAt(int resolution) const {
    return SizeOfDrawing(m_file.Width(), m_file.Height(), resolution);
  }

  /// A point is a pixel, so that the page has exactly as many; what a program in another document may not do
  /// has no effect. Adobe Technical Note 5002, section 3.
  void SetUp(const DrawnSize& size) const {
    const std::string words =
        Numbers("<< /PageSize [%.0f %.0f] >> setpagedevice ", size.width, size.height) +
        "initgraphics erasepage "
        "/tessarelsave save def userdict begin "
        "/showpage {} def /setpagedevice {pop} def /quit {stop} def " +
        Numbers("%.9f %.9f scale ", size.width / m_file.Width(), size.height / m_file.Height()) +
        Numbers("%.6f %.6f translate ", -m_file.Left(), -m_file.Bottom()) +
        "false setstrokeadjust false setoverprint newpath";
    if (g_interpreter->Run(words) < 0) throw Failure(Status::kNoMemory, "there is no memory to draw in");
  }
  static void TakeDown() { g_interpreter->Run("flushpage clear cleardictstack tessarelsave restore"); }

  EpsFile m_file;
};

void Prepare() {
  static Interpreter interpreter;
  g_interpreter = &interpreter;
}

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Eps>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kFonts, helper::Prepare, helper::Open)
