#include "helper/modules/pdf_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <vector>

namespace helper {
namespace {

/// Maps (x, y) to (a x + c y + e, b x + d y + f).
struct Matrix {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
};

/// First one, then the other.
Matrix Then(const Matrix& first, const Matrix& next) {
  return {first.a * next.a + first.b * next.c,          first.a * next.b + first.b * next.d,
          first.c * next.a + first.d * next.c,          first.c * next.b + first.d * next.d,
          first.e * next.a + first.f * next.c + next.e, first.e * next.b + first.f * next.d + next.f};
}

struct Box {
  double left, bottom, right, top;
};

/// Where a rectangle comes to lie.
Box Mapped(const Matrix& matrix, double x, double y, double width, double height) {
  const std::array xs = {matrix.a * x + matrix.c * y, matrix.a * (x + width) + matrix.c * y,
                         matrix.a * x + matrix.c * (y + height),
                         matrix.a * (x + width) + matrix.c * (y + height)};
  const std::array ys = {matrix.b * x + matrix.d * y, matrix.b * (x + width) + matrix.d * y,
                         matrix.b * x + matrix.d * (y + height),
                         matrix.b * (x + width) + matrix.d * (y + height)};
  return {
      *std::min_element(xs.begin(), xs.end()) + matrix.e, *std::min_element(ys.begin(), ys.end()) + matrix.f,
      *std::max_element(xs.begin(), xs.end()) + matrix.e, *std::max_element(ys.begin(), ys.end()) + matrix.f};
}

constexpr double kTolerance = 1.0;  // points: writers round

bool Covers(const Box& outer, const Box& inner) {
  return outer.left <= inner.left + kTolerance && outer.bottom <= inner.bottom + kTolerance &&
         outer.right >= inner.right - kTolerance && outer.top >= inner.top - kTolerance;
}

std::optional<Box> BoxOf(QPDFObjectHandle array) {
  if (!array.isRectangle()) return std::nullopt;
  const auto box = array.getArrayAsRectangle();
  return Box{box.llx, box.lly, box.urx, box.ury};
}

struct Found {
  QPDFObjectHandle image;
  Matrix matrix;
};

/// Goes through the operators of a page; anything that shows beside one picture ends it.
class Contents final : public QPDFObjectHandle::ParserCallbacks {
 public:
  Contents(const QPDFObjectHandle& resources, const Matrix& matrix, const Box& page, int depth)
      : m_resources(resources), m_page(page), m_depth(depth), m_state{matrix} {}

  const std::vector<Found>& Pictures() const { return m_found; }
  bool OnlyPictures() const { return m_plain; }

  void handleObject(QPDFObjectHandle object) override {
    if (object.isOperator()) {
      Operate(object.getOperatorValue());
      m_operands.clear();
    } else if (object.isInlineImage() || m_operands.size() > kMostOperands) {
      Fail();
    } else {
      m_operands.push_back(object);
    }
    if (!m_plain) terminateParsing();
  }
  void handleEOF() override {}

 private:
  static constexpr std::size_t kMostOperands = 100;
  static constexpr std::size_t kMostStates = 100;
  static constexpr int kMostDepth = 4;

  struct State {
    Matrix matrix;
    bool hiddenText = false;
    bool blackFill = true;
  };

  void Fail() { m_plain = false; }

  double Number(std::size_t index) {
    if (index < m_operands.size() && m_operands[index].isNumber()) return m_operands[index].getNumericValue();
    Fail();
    return 0;
  }

  void Operate(const std::string& name) {
    // What sets something that pictures don't show, marks contents, or ends a path unpainted.
    static const std::set<std::string> kHarmless = {"w",  "J",  "j",  "M",  "d",  "ri", "i",   "n",   "W",
                                                    "W*", "BT", "ET", "Td", "TD", "Tm", "T*",  "Tc",  "Tw",
                                                    "Tz", "TL", "Tf", "Ts", "MP", "DP", "BMC", "BDC", "EMC",
                                                    "BX", "EX", "G",  "RG", "K",  "CS", "SC",  "SCN"};
    static const std::set<std::string> kFills = {"g", "rg", "k", "cs", "sc", "scn"};
    static const std::set<std::string> kTexts = {"Tj", "TJ", "'", "\""};
    if (name == "q" && m_saved.size() < kMostStates) {
      m_saved.push_back(m_state);
    } else if (name == "Q" && !m_saved.empty()) {
      m_state = m_saved.back();
      m_saved.pop_back();
    } else if (name == "cm") {
      m_state.matrix =
          Then({Number(0), Number(1), Number(2), Number(3), Number(4), Number(5)}, m_state.matrix);
    } else if (name == "Tr") {
      constexpr double kInvisible = 3;
      m_state.hiddenText = Number(0) == kInvisible;
    } else if (name == "Do") {
      Show();
    } else if (name == "gs") {
      SetGraphics();
    } else if (name == "re") {
      // As a path to clip by; one that is painted fails by its operator.
      if (!Covers(Mapped(m_state.matrix, Number(0), Number(1), Number(2), Number(3)), m_page)) Fail();
    } else if (kFills.contains(name)) {
      m_state.blackFill = (name == "g" && Number(0) == 0) ||
                          (name == "rg" && Number(0) == 0 && Number(1) == 0 && Number(2) == 0);
    } else if (kTexts.contains(name) ? !m_state.hiddenText : !kHarmless.contains(name)) {
      Fail();
    }
  }

  /// Transparency and the like change what the picture looks like.
  void SetGraphics() {
    static const std::set<std::string> kPlain = {"/Type", "/OP", "/op", "/OPM", "/SA", "/LW", "/LC",
                                                 "/LJ",   "/ML", "/D",  "/RI",  "/FL", "/SM", "/AIS"};
    if (m_operands.empty() || !m_operands[0].isName()) return Fail();
    QPDFObjectHandle state = m_resources.getKey("/ExtGState").getKeyIfDict(m_operands[0].getName());
    if (!state.isDictionary()) return Fail();
    for (const auto& [key, value] : state.ditems()) {
      QPDFObjectHandle item = value;
      const bool opaque = (key == "/ca" || key == "/CA") && item.isNumber() && item.getNumericValue() == 1;
      const bool none =
          (key == "/SMask" && item.isNameAndEquals("/None")) ||
          (key == "/BM" && (item.isNameAndEquals("/Normal") || item.isNameAndEquals("/Compatible")));
      if (!opaque && !none && !kPlain.contains(key)) Fail();
    }
  }

  void Show() {
    if (m_operands.empty() || !m_operands[0].isName()) return Fail();
    QPDFObjectHandle object = m_resources.getKey("/XObject").getKeyIfDict(m_operands[0].getName());
    if (!object.isStream()) return Fail();
    QPDFObjectHandle dictionary = object.getDict();
    if (dictionary.getKey("/Subtype").isNameAndEquals("/Form")) return ShowForm(object);
    const bool stencil =
        dictionary.getKey("/ImageMask").isBool() && dictionary.getKey("/ImageMask").getBoolValue();
    if (!dictionary.getKey("/Subtype").isNameAndEquals("/Image") || dictionary.hasKey("/SMask") ||
        dictionary.hasKey("/Mask") || dictionary.hasKey("/OC") || (stencil && !m_state.blackFill) ||
        !m_found.empty())
      return Fail();
    m_found.push_back({object, m_state.matrix});
  }

  void ShowForm(QPDFObjectHandle form) {
    QPDFObjectHandle dictionary = form.getDict();
    if (m_depth >= kMostDepth || dictionary.hasKey("/Group") || dictionary.hasKey("/OC")) return Fail();
    Matrix matrix = m_state.matrix;
    if (QPDFObjectHandle own = dictionary.getKey("/Matrix"); own.isMatrix()) {
      const auto m = own.getArrayAsMatrix();
      matrix = Then({m.a, m.b, m.c, m.d, m.e, m.f}, matrix);
    }
    const auto box = BoxOf(dictionary.getKey("/BBox"));
    if (!box ||
        !Covers(Mapped(matrix, box->left, box->bottom, box->right - box->left, box->top - box->bottom),
                m_page))
      return Fail();
    const QPDFObjectHandle resources =
        dictionary.hasKey("/Resources") ? dictionary.getKey("/Resources") : m_resources;
    Contents inner(resources, matrix, m_page, m_depth + 1);
    form.parseAsContents(&inner);
    m_plain = m_plain && inner.m_plain && m_found.size() + inner.m_found.size() <= 1;
    m_found.insert(m_found.end(), inner.m_found.begin(), inner.m_found.end());
  }

  QPDFObjectHandle m_resources;
  Box m_page;
  int m_depth;
  State m_state;
  std::vector<State> m_saved;
  std::vector<QPDFObjectHandle> m_operands;
  std::vector<Found> m_found;
  bool m_plain = true;
};

/// A direction on the display, where y runs down.
struct Direction {
  int x, y;
  bool operator==(const Direction&) const = default;
};
Direction TurnedRight(Direction direction) {
  return {-direction.y, direction.x};
}

/// What is at the right and the lower side of the picture as shown, in the order of the numbers 1 to 8.
int PerspectiveOf(Direction row, Direction column) {
  constexpr std::array<std::array<Direction, 2>, 8> kTurns = {{{{{1, 0}, {0, 1}}},
                                                               {{{-1, 0}, {0, 1}}},
                                                               {{{-1, 0}, {0, -1}}},
                                                               {{{1, 0}, {0, -1}}},
                                                               {{{0, 1}, {1, 0}}},
                                                               {{{0, 1}, {-1, 0}}},
                                                               {{{0, -1}, {-1, 0}}},
                                                               {{{0, -1}, {1, 0}}}}};
  for (std::size_t i = 0; i < kTurns.size(); ++i)
    if (kTurns[i][0] == row && kTurns[i][1] == column) return static_cast<int>(i) + 1;
  return 0;
}

int Sign(double value) {
  return value > 0 ? 1 : value < 0 ? -1 : 0;
}

/// Nothing for a picture that stands askew.
std::optional<PagePicture> Placed(const Found& found, int quarterTurns, double unit) {
  const Matrix& m = found.matrix;
  constexpr double kSkew = 1e-3;
  const bool upright = std::abs(m.b) <= kSkew * std::abs(m.a) && std::abs(m.c) <= kSkew * std::abs(m.d);
  const bool turned = std::abs(m.a) <= kSkew * std::abs(m.b) && std::abs(m.d) <= kSkew * std::abs(m.c);
  if (upright == turned) return std::nullopt;
  // A picture's rows run down the unit square, whose y runs up.
  Direction row = upright ? Direction{Sign(m.a), 0} : Direction{0, -Sign(m.b)};
  Direction column = upright ? Direction{0, Sign(m.d)} : Direction{-Sign(m.c), 0};
  for (int i = 0; i < quarterTurns; ++i) {
    row = TurnedRight(row);
    column = TurnedRight(column);
  }
  return PagePicture{found.image, PerspectiveOf(row, column), std::hypot(m.a, m.b) * unit,
                     std::hypot(m.c, m.d) * unit};
}

int QuarterTurns(QPDFObjectHandle rotate) {
  if (!rotate.isInteger()) return 0;
  const long long degrees = rotate.getIntValue();
  return static_cast<int>(((degrees / 90) % 4 + 4) % 4);
}

/// Forms and notes that are shown on the page.
bool HasAnnotations(QPDFPageObjectHelper& page) {
  QPDFObjectHandle notes = page.getAttribute("/Annots", false);
  if (!notes.isArray()) return false;
  for (auto note : notes.aitems())
    if (note.isDictionary() && note.hasKey("/AP")) return true;
  return false;
}

}  // namespace

std::optional<PagePicture> FindPagePicture(QPDFPageObjectHelper page) {
  const auto box = BoxOf(page.getCropBox());
  if (!box || HasAnnotations(page)) return std::nullopt;
  Contents contents(page.getAttribute("/Resources", false), Matrix(), *box, 0);
  page.parseContents(&contents);
  if (!contents.OnlyPictures() || contents.Pictures().size() != 1) return std::nullopt;
  const Found& found = contents.Pictures()[0];
  const Box place = Mapped(found.matrix, 0, 0, 1, 1);
  if (!Covers(place, *box) || !Covers(*box, place)) return std::nullopt;
  QPDFObjectHandle unit = page.getObjectHandle().getKey("/UserUnit");
  return Placed(found, QuarterTurns(page.getAttribute("/Rotate", false)),
                unit.isNumber() && unit.getNumericValue() > 0 ? unit.getNumericValue() : 1.0);
}

}  // namespace helper
