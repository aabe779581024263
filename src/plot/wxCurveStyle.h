// How one curve looks: colour, width, line style and symbol of its real and imaginary parts.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

class wxWaveExplorerAction;
class wxWaveExplorerCommand;

namespace vxDrawContext {
// What a drawer needs to make a pen; the toolkit's pen is made from it when drawing.
enum pen_kind : int { solid_pen = 1, dash_pen = 2, short_dash_pen = 3, dotted_pen = 5 };
struct cVxPen {
    unsigned colour = 0;  // 0xrrggbb
    int width = 1;
    int kind = solid_pen;
    bool operator==(const cVxPen& other) const = default;
};
}  // namespace vxDrawContext

namespace curveStyle {
// One entry of a style menu: what it reads, the command that applies it, and whether it is the
// present choice. Menus of the toolkit are built from these lists.
struct cMenuEntry {
    std::string text;
    std::string command;
    bool checked = false;
};
// The curve a style command addresses: of the store, or of one plot when plotName is set.
struct cStyleTarget {
    std::string plotName;
    uint64_t sectionId = 0;
    uint64_t curveIndex = 0;
    bool complex = false;  // the command carries the imaginary part too
};
}  // namespace curveStyle

class wxCurveStyle {
public:
    static constexpr unsigned kDefaultColour = 0x808080;
    static constexpr int kMinLineWidth = 1;
    static constexpr int kMaxLineWidth = 5;
    // Bytes written by serialize.
    static constexpr size_t kSerializedSize = 9 * 4;

    unsigned realColour = kDefaultColour;
    unsigned imagColour = kDefaultColour;
    int realLineWidth = 1;
    int imagLineWidth = 1;
    int realLineStyle = 0;  // curvePlotProperties::line_style_type
    int imagLineStyle = 0;
    int realSymbol = 0;  // curvePlotProperties::symbol_type
    int imagSymbol = 0;
    // Byte 0: the style is still the automatic one; bytes 1..3 are kept for digital display.
    std::array<unsigned char, 4> flags{1, 0, 0, 0};

    bool operator==(const wxCurveStyle& other) const = default;

    bool checkIsAutomatic() const { return flags[0] != 0; }
    void setAutomatic(bool flag) { flags[0] = flag ? 1 : 0; }

    // The nine fields in order, little-endian, four bytes each.
    void serialize(std::vector<unsigned char>& out) const;
    // Reads what serialize wrote from position on and moves position past it; false (style
    // untouched) when fewer bytes are left.
    bool deserialize(const std::vector<unsigned char>& in, size_t& position);

    // The pen of a part drawn with the given line style: dashes and dots have pens of their own,
    // everything else draws solid.
    vxDrawContext::cVxPen getRealPen(int lineStyle) const;
    vxDrawContext::cVxPen getImagPen(int lineStyle) const;
    vxDrawContext::cVxPen getRealPen() const { return getRealPen(realLineStyle); }
    vxDrawContext::cVxPen getImagPen() const { return getImagPen(imagLineStyle); }
    static int penKindOfLineStyle(int lineStyle);

    // From a set_curve_style... command or the action it became. False, style untouched, when
    // the arguments don't make a style. The style is no longer automatic afterwards.
    bool setStyle(const wxWaveExplorerCommand& command);
    bool setStyleFromAction(const wxWaveExplorerAction& action);
    // Where the style arguments of an action start among its numbers.
    static size_t getStyleArgumentStart(int actionType);

    // From the words of line_style_type_to_string and symbol_type_to_string ("_" for blanks
    // allowed); false for an unknown word.
    bool setSymbolReal(const std::string& text);
    bool setSymbolImag(const std::string& text);
    bool setLineStyleReal(const std::string& text);
    bool setLineStyleImag(const std::string& text);
    // The words of all line styles or symbols a user can choose (not "automatic", "default").
    static std::vector<std::string> getLineStylesAsStrings();
    static std::vector<std::string> getSymbolsAsStrings();

    // Copies of one part from another style, or from one part to the other.
    void copyRealStyle(const wxCurveStyle& other);
    void copyImagStyle(const wxCurveStyle& other);
    void copyImagToRealStyle();
    void copyRealToImagStyle();

    static int clampLineWidth(int width);

    // The words of the digital display kinds a user can choose (not "default").
    static std::vector<std::string> getDigitalDataAsStrings();
    // The command that gives target this style: set_curve_style_in_plot_by_id_and_index for a
    // plot, else set_curve_style_by_id_and_index, with the imaginary part for a complex curve.
    std::string getStyleCommand(const curveStyle::cStyleTarget& target) const;
    // Menus of widths 1 .. 5 and of symbols, for both parts, the real or the imaginary one: each
    // entry's command is this style with that one choice changed.
    void appendLineWidthMenu(std::vector<curveStyle::cMenuEntry>& menu, const curveStyle::cStyleTarget& target) const;
    void appendLineWidthMenuReal(std::vector<curveStyle::cMenuEntry>& menu, const curveStyle::cStyleTarget& target) const;
    void appendLineWidthMenuImag(std::vector<curveStyle::cMenuEntry>& menu, const curveStyle::cStyleTarget& target) const;
    void appendSymbolMenu(std::vector<curveStyle::cMenuEntry>& menu, const curveStyle::cStyleTarget& target) const;
    void appendSymbolMenuReal(std::vector<curveStyle::cMenuEntry>& menu, const curveStyle::cStyleTarget& target) const;
    void appendSymbolMenuImag(std::vector<curveStyle::cMenuEntry>& menu, const curveStyle::cStyleTarget& target) const;
};

}  // namespace vx3
