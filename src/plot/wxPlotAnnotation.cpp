#include "plot/wxPlotAnnotation.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <sstream>

#include "base/cVxString.h"
#include "base/cVxLogger.h"

namespace vx3::singlePlotWidgetAnnotations {

namespace {

constexpr const char* kNoValue = "no value defined";

const std::array<const char*, nb_annotation_types> kTypeNames{
    "",      "Text",          "Point",       "",          "Delta",     "Delta",
    "Delta X", "Delta X",     "Difference",  "Deviation", "X Interval", "Tangent Line",
    "Rise Time", "Fall Time", "Linear Interpolation", "Spline Interpolation", "Polynomial Interpolation",
    "Linear Extrapolation", "Spline Extrapolation", "Polynomial Extrapolation"};

const std::array<const char*, nb_annotation_info_types> kInfoNames{
    "Deviation",        "Gradient",           "Expression",         "X Value",
    "Y Value",          "XY Value",           "Reference X Value",  "Reference Y Value",
    "Reference XY Value", "Delta X Value",    "Delta Y Value",      "Simple Curve Name",
    "Reduced Curve Name", "Full Curve Name",  "Run Parameters",     "Reference Run Parameters",
    "Complete Curve Information", "All Points", "",                 "Simple Reference Curve Name",
    "Reduced Reference Curve Name", "Full Reference Curve Name"};

std::string lower(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Lower case without blanks and underscores: "rise_time", "Rise Time" and "risetime" match.
std::string squeezed(const std::string& text)
{
    std::string out;
    for (char c : text)
        if (c != ' ' && c != '_' && c != '\t')
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string plainNumber(double value)
{
    std::ostringstream stream;
    stream.precision(12);
    stream << value;
    return stream.str();
}

std::string shortNumber(double value)
{
    std::ostringstream stream;
    stream.precision(5);
    stream << value;
    return stream.str();
}


// Line ends too, so that a multi-line text survives an attribute value.
std::string xmlEscaped(const std::string& text)
{
    return vxString::replace_string_all(vxString::escape_markup(text), "\n", "&#10;");
}

// Natural cubic spline through sorted points: second derivatives by the tridiagonal system.
std::vector<double> splineSecondDerivatives(const std::vector<double>& xs, const std::vector<double>& ys)
{
    const size_t n = xs.size();
    std::vector<double> m(n, 0.0), c(n, 0.0), d(n, 0.0);
    if (n < 3)
        return m;
    // Rows 1..n-2: h[i-1] m[i-1] + 2 (h[i-1] + h[i]) m[i] + h[i] m[i+1] = 6 (slope[i] - slope[i-1]).
    for (size_t i = 1; i + 1 < n; ++i) {
        const double h0 = xs[i] - xs[i - 1], h1 = xs[i + 1] - xs[i];
        const double rhs = 6.0 * ((ys[i + 1] - ys[i]) / h1 - (ys[i] - ys[i - 1]) / h0);
        const double diag = 2.0 * (h0 + h1) - (i > 1 ? h0 * c[i - 1] : 0.0);
        c[i] = h1 / diag;
        d[i] = (rhs - (i > 1 ? h0 * d[i - 1] : 0.0)) / diag;
    }
    for (size_t i = n - 2; i >= 1; --i) {
        m[i] = d[i] - c[i] * m[i + 1];
        if (i == 1)
            break;
    }
    return m;
}

}  // namespace

std::string getAnnotationTypeAsString(int type)
{
    return type >= 0 && type < nb_annotation_types ? kTypeNames[type] : "";
}

int getTypeFromString(const std::string& text)
{
    const std::string key = squeezed(text);
    if (key.empty())
        return no_annotation;
    if (std::all_of(key.begin(), key.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); })) {
        const int value = key.size() < 4 ? std::stoi(key) : -1;
        return value > 0 && value < nb_annotation_types && !getAnnotationTypeAsString(value).empty() ? value
                                                                                                     : no_annotation;
    }
    // The first of two types with one name is the one between two curves.
    for (int type = 1; type < nb_annotation_types; ++type)
        if (kTypeNames[type][0] != 0 && squeezed(kTypeNames[type]) == key)
            return type;
    return no_annotation;
}

std::string getCurveInformationName(int info)
{
    return info >= 0 && info < nb_annotation_info_types ? kInfoNames[info] : "";
}

size_t getMinimumPoints(int type)
{
    switch (type) {
    case text_annotation:
    case point_annotation:
    case tangent_line_annotation: return 1;
    case spline_interpolation_annotation:
    case polynomial_interpolation_annotation:
    case spline_extrapolation_annotation:
    case polynomial_extrapolation_annotation: return 3;
    default: return 2;
    }
}

size_t getMaximumPoints(int type)
{
    if (checkIsInterpolationType(type) || checkIsExtrapolationType(type))
        return 0;
    return getMinimumPoints(type);
}

bool checkIsInterpolationType(int type)
{
    return type >= linear_interpolation_annotation && type <= polynomial_interpolation_annotation;
}

bool checkIsExtrapolationType(int type)
{
    return type >= linear_extrapolation_annotation && type <= polynomial_extrapolation_annotation;
}

std::string getDefaultText(int type)
{
    switch (type) {
    case point_annotation: return "<XY Value>";
    case delta_annotation:
    case delta_same_curve_annotation: return "dx: <Delta X Value>\\ndy: <Delta Y Value>";
    case delta_x_annotation:
    case delta_x_same_curve_annotation:
    case x_interval_annotation: return "dx: <Delta X Value>";
    case difference_annotation: return "dy: <Delta Y Value>";
    case deviation_annotation: return "dev: <Deviation>";
    case tangent_line_annotation: return "slope: <Gradient>";
    case rise_time_annotation: return "rise: <Delta X Value>";
    case fall_time_annotation: return "fall: <Delta X Value>";
    default: return "<Expression>";
    }
}

// ---- wxAnnotation ---------------------------------------------------------------------------------

std::string wxAnnotation::normaliseText(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r') {
            out += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        } else if (c == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
            out += '\n';
            ++i;
        } else {
            out += c;
        }
    }
    return out;
}

bool wxAnnotation::setType(int type)
{
    if (getAnnotationTypeAsString(type).empty())
        return false;
    mType = type;
    return true;
}

bool wxAnnotation::createAnnotation(int type, const std::string& text, const std::vector<double>& points,
                                    const cVxLogger& logger, int curveIndex)
{
    const std::string prefix = "Creating annotation : ";
    if (getAnnotationTypeAsString(type).empty()) {
        logger.errorMsg(prefix + "Unsupported annotation type.");
        return false;
    }
    std::vector<double> valid;
    size_t ignored = 0;
    for (size_t i = 0; i + 1 < points.size(); i += 2) {
        if (std::isfinite(points[i]) && std::isfinite(points[i + 1]) && std::fabs(points[i]) < 1e300 &&
            std::fabs(points[i + 1]) < 1e300) {
            valid.push_back(points[i]);
            valid.push_back(points[i + 1]);
        } else {
            ++ignored;
        }
    }
    ignored += points.size() % 2;  // a lone x without its y
    const size_t maximum = getMaximumPoints(type);
    if (maximum && valid.size() / 2 > maximum) {
        ignored += valid.size() / 2 - maximum;
        valid.resize(2 * maximum);
    }
    if (ignored)
        logger.warnMsg(prefix + std::to_string(ignored) + " data points were ignored.");
    if (valid.size() / 2 < getMinimumPoints(type)) {
        logger.errorMsg(prefix + "Not enough valid points for defining an annotation.");
        return false;
    }
    const std::string normal = normaliseText(text);
    const bool blank = normal.find_first_not_of(" \t\n") == std::string::npos;
    if (type == text_annotation && blank) {
        logger.errorMsg(prefix + "The text is empty.");
        return false;
    }
    if (normal.size() > max_text_length ||
        static_cast<size_t>(std::count(normal.begin(), normal.end(), '\n')) >= max_text_lines) {
        logger.errorMsg(prefix + "The text is too long (at most " + std::to_string(max_text_length) +
                        " characters in " + std::to_string(max_text_lines) + " lines).");
        return false;
    }
    mType = type;
    mText = blank ? normaliseText(getDefaultText(type)) : normal;
    mPoints = std::move(valid);
    mCurveIndex = type == text_annotation ? -1 : curveIndex;
    if (type == difference_annotation)
        mPoints[2] = mPoints[0];  // both points at one x
    if (checkIsInterpolationType(type) || checkIsExtrapolationType(type)) {
        std::vector<double> given = std::move(mPoints);
        mPoints.clear();
        for (size_t i = 0; i + 1 < given.size(); i += 2)
            appendOrReplaceInterpolationPoint(given[i], given[i + 1]);
        if (getNbPoints() < getMinimumPoints(type)) {
            logger.errorMsg(prefix + "Not enough valid points for defining an annotation.");
            *this = wxAnnotation();
            return false;
        }
    }
    resetIntegerShift();
    return true;
}

void wxAnnotation::appendOrReplaceInterpolationPoint(double x, double y)
{
    size_t i = 0;
    while (i < getNbPoints() && getX(i) < x)
        ++i;
    if (i < getNbPoints() && getX(i) == x) {
        mPoints[2 * i + 1] = y;
        return;
    }
    mPoints.insert(mPoints.begin() + static_cast<std::ptrdiff_t>(2 * i), {x, y});
}

bool wxAnnotation::removeOrReplaceInterpolationPoint(double x)
{
    if (getNbPoints() <= getMinimumPoints(mType) || getNbPoints() == 0)
        return false;
    size_t best = 0;
    for (size_t i = 1; i < getNbPoints(); ++i)
        if (std::fabs(getX(i) - x) < std::fabs(getX(best) - x))
            best = i;
    mPoints.erase(mPoints.begin() + static_cast<std::ptrdiff_t>(2 * best),
                  mPoints.begin() + static_cast<std::ptrdiff_t>(2 * best + 2));
    return true;
}

double wxAnnotation::evaluateInterpolation(double x) const
{
    const size_t n = getNbPoints();
    if (n < 2 || !std::isfinite(x))
        return NAN;
    std::vector<double> xs(n), ys(n);
    for (size_t i = 0; i < n; ++i)
        xs[i] = getX(i), ys[i] = getY(i);
    const bool extrapolate = checkIsExtrapolationType(mType);
    // The ends belong to the points even after rounding of a computed x.
    const double slack = 1e-12 * (xs.back() - xs.front());
    if (!extrapolate && (x < xs.front() - slack || x > xs.back() + slack))
        return NAN;
    const int kind = (mType - linear_interpolation_annotation) % 3;  // 0 linear, 1 spline, 2 polynomial
    if (kind == 2) {
        // Lagrange's form: few points, and exact at every one of them.
        double sum = 0.0;
        for (size_t i = 0; i < n; ++i) {
            double term = ys[i];
            for (size_t j = 0; j < n; ++j)
                if (j != i)
                    term *= (x - xs[j]) / (xs[i] - xs[j]);
            sum += term;
        }
        return sum;
    }
    size_t k = 0;  // the interval [xs[k], xs[k+1]] holding x, the end ones outside
    while (k + 2 < n && x > xs[k + 1])
        ++k;
    const double h = xs[k + 1] - xs[k];
    if (kind == 0 || n < 3)
        return ys[k] + (ys[k + 1] - ys[k]) * (x - xs[k]) / h;
    const std::vector<double> m = splineSecondDerivatives(xs, ys);
    const double a = (xs[k + 1] - x) / h, b = (x - xs[k]) / h;
    return a * ys[k] + b * ys[k + 1] + ((a * a * a - a) * m[k] + (b * b * b - b) * m[k + 1]) * h * h / 6.0;
}

std::string wxAnnotation::formatPoint(size_t i, const cCurveInformationContext& context) const
{
    if (i >= getNbPoints() || !context.formatX || !context.formatY)
        return kNoValue;
    return "(" + context.formatX(getX(i)) + ", " + context.formatY(getY(i)) + ")";
}

std::string wxAnnotation::getCurveInformation(int info, const cCurveInformationContext& context) const
{
    const size_t n = getNbPoints();
    auto orNone = [](const std::string& text) { return text.empty() ? std::string(kNoValue) : text; };
    auto x = [&](size_t i) { return i < n && context.formatX ? context.formatX(getX(i)) : std::string(kNoValue); };
    auto y = [&](size_t i) { return i < n && context.formatY ? context.formatY(getY(i)) : std::string(kNoValue); };
    // The reference is the second point of a two-point annotation.
    const bool hasReference = n >= 2 && mType != text_annotation && mType != point_annotation &&
                              mType != tangent_line_annotation;
    switch (info) {
    case info_x_value: return x(0);
    case info_y_value: return y(0);
    case info_xy_value: return formatPoint(0, context);
    case info_reference_x_value: return hasReference ? x(1) : kNoValue;
    case info_reference_y_value: return hasReference ? y(1) : kNoValue;
    case info_reference_xy_value: return hasReference ? formatPoint(1, context) : kNoValue;
    case info_delta_x_value:
        return hasReference && context.formatX ? context.formatX(getX(1) - getX(0)) : kNoValue;
    case info_delta_y_value:
    case info_deviation:
        return hasReference && context.formatY ? context.formatY(getY(1) - getY(0)) : kNoValue;
    case info_gradient: {
        if (!context.formatY)
            return kNoValue;
        // A slope is in units of y per x, so neither axis's printing suits it.
        if (mType == tangent_line_annotation)
            return shortNumber(mGradient);
        if (!hasReference || getX(1) == getX(0))
            return kNoValue;
        return shortNumber((getY(1) - getY(0)) / (getX(1) - getX(0)));
    }
    case info_expression: {
        const std::string expression = buildExpressionFromAnnotation();
        return expression.empty() ? kNoValue : expression;
    }
    case info_simple_curve_name: return orNone(context.simpleName);
    case info_reduced_curve_name: return orNone(context.reducedName);
    case info_full_curve_name: return orNone(context.fullName);
    case info_run_parameters: return orNone(context.runParameters);
    case info_reference_run_parameters: return orNone(context.referenceRunParameters);
    case info_simple_reference_curve_name: return orNone(context.simpleReferenceName);
    case info_reduced_reference_curve_name: return orNone(context.reducedReferenceName);
    case info_full_reference_curve_name: return orNone(context.fullReferenceName);
    case info_complete_curve_information: {
        if (context.fullName.empty())
            return kNoValue;
        std::string text = context.fullName;
        if (!context.runParameters.empty())
            text += "\n" + context.runParameters;
        if (n)
            text += "\n" + formatPoint(0, context);
        return text;
    }
    case info_all_points: {
        if (!n || !context.formatX || !context.formatY)
            return kNoValue;
        std::string text;
        for (size_t i = 0; i < n; ++i)
            text += (i ? " " : "") + formatPoint(i, context);
        return text;
    }
    default: return kNoValue;
    }
}

std::string wxAnnotation::replaceTextPlaceholders(const cCurveInformationContext& context) const
{
    std::string out;
    size_t position = 0;
    while (position < mText.size()) {
        const size_t open = mText.find('<', position);
        if (open == std::string::npos)
            break;
        const size_t close = mText.find('>', open + 1);
        if (close == std::string::npos)
            break;
        const std::string name = lower(mText.substr(open + 1, close - open - 1));
        int found = -1;
        for (int info = 0; info < nb_annotation_info_types && found < 0; ++info) {
            const std::string candidate = getCurveInformationName(info);
            if (!candidate.empty() && lower(candidate) == name)
                found = info;
        }
        out.append(mText, position, open - position);
        if (found >= 0) {
            out += getCurveInformation(found, context);
            position = close + 1;
        } else {
            // Not a placeholder: "<" stays text, and a later "<" may still open one.
            out += '<';
            position = open + 1;
        }
    }
    out.append(mText, position, std::string::npos);
    return out;
}

std::string wxAnnotation::buildExpressionFromAnnotation() const
{
    if (!checkIsInterpolationType(mType) && !checkIsExtrapolationType(mType))
        return "";
    static const char* const kFunctions[] = {"linear_interpolation", "spline_interpolation",
                                             "polynomial_interpolation"};
    const int kind = (mType - linear_interpolation_annotation) % 3;
    std::string xs, ys;
    for (size_t i = 0; i < getNbPoints(); ++i) {
        xs += (i ? "," : "") + plainNumber(getX(i));
        ys += (i ? "," : "") + plainNumber(getY(i));
    }
    return std::string(kFunctions[kind]) + "([" + xs + "],[" + ys + "]" +
           (checkIsExtrapolationType(mType) ? ",1" : ",0") + ")";
}

bool wxAnnotation::checkIfAnnotationIsDrawn(double xmin, double xmax, double ymin, double ymax, double xMargin,
                                            double yMargin) const
{
    if (checkIsExtrapolationType(mType) || mType == tangent_line_annotation)
        return getNbPoints() > 0;  // lines that cross the whole view
    const double x0 = std::min(xmin, xmax) - xMargin, x1 = std::max(xmin, xmax) + xMargin;
    const double y0 = std::min(ymin, ymax) - yMargin, y1 = std::max(ymin, ymax) + yMargin;
    for (size_t i = 0; i < getNbPoints(); ++i) {
        const bool xIn = getX(i) >= x0 && getX(i) <= x1;
        // An X interval spans the whole height: its x alone decides.
        if (xIn && (mType == x_interval_annotation || (getY(i) >= y0 && getY(i) <= y1)))
            return true;
    }
    // Two points on either side of the view still draw the line between them.
    if (getNbPoints() >= 2 && mType != point_annotation) {
        const double lowX = std::min(getX(0), getX(getNbPoints() - 1)), highX = std::max(getX(0), getX(getNbPoints() - 1));
        return lowX <= x1 && highX >= x0;
    }
    return false;
}

std::string wxAnnotation::createDndXmlString() const
{
    std::string data;
    for (size_t i = 0; i < mPoints.size(); ++i)
        data += (i ? "," : "") + plainNumber(mPoints[i]);
    return "<annotation type=\"" + xmlEscaped(getAnnotationTypeAsString(mType)) + "\" text=\"" + xmlEscaped(mText) +
           "\" data=\"" + data + "\" />";
}

std::string wxAnnotation::getTypeAndTextForCommandFile() const
{
    std::string text;
    for (char c : mText) {
        if (c == '\n')
            text += "\\n";
        else if (c == '"')
            text += "\\\"";
        else
            text += c;
    }
    std::string type = getAnnotationTypeAsString(mType);
    std::replace(type.begin(), type.end(), ' ', '_');
    return "\"" + type + "\" \"" + text + "\"";
}

}  // namespace vx3::singlePlotWidgetAnnotations
