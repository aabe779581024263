// Free properties of sections and curves: a kind, an optional name and one value.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3::curvePlotProperties {

// Numbers are stored in sessions: never renumber.
enum property_type : unsigned {
    undefined_property = 0,
    user_defined = 1,  // named by the property itself
    run_parameter = 2,
    run_index = 3,
    alter_index = 4,
    temperature = 5,
    file_name = 6,
    analysis_type = 7,
    analysis_name = 8,
    x_start = 9,
    x_stop = 10,
    x_step = 11,
    scale = 14,
    variable_type = 15,
    left_bit_number = 16,
    right_bit_number = 17,
    calculator_expression = 18,
    color = 19,
    line_style = 20,
    symbol = 21,
    line_width = 22,
    color_imaginary_part = 23,
    line_style_imaginary_part = 24,
    symbol_imaginary_part = 25,
    line_width_imaginary_part = 26,
    initial_section = 27,
    initial_curve = 28,
    model = 29,
    region = 30,
    assertion = 31,
    instance = 32,
    expression = 33,
    severity = 34,
    status = 35,
    used_by_link_to_schematic = 36,
    parent_section_id = 37,
    file_variant = 38,
    type = 39,
    // Of a file entry: how a table was cut at the first parse (separator, two analysis values),
    // and the open dialog's choice (read data, first and last x value), kept for reloads.
    file_table_separator = 40,
    file_table_analysis_1 = 41,
    file_table_analysis_2 = 42,
    file_open_read_data = 43,
    file_open_first_x_value = 44,
    file_open_last_x_value = 45,
    equivalent_parent_net = 46,
    original_file_name = 47,
};

// "" for kinds without a text.
const char* propertyTypeToString(unsigned kind);

// Codes of property variable_type: Verilog variable kinds, in this order.
enum vcd_variable_type : unsigned {
    vcd_wreal, vcd_trireg, vcd_logic, vcd_realtime, vcd_shortint, vcd_supply1, vcd_wand, vcd_int, vcd_inout,
    vcd_triand, vcd_wor, vcd_real, vcd_byte, vcd_reg, vcd_tri1, vcd_integer, vcd_out, vcd_trior, vcd_port,
    vcd_shortreal, vcd_longint, vcd_supply0, vcd_tri, vcd_enum, vcd_in,
    // Added later; appended so that stored numbers keep their meaning.
    vcd_event, vcd_parameter, vcd_real_parameter, vcd_time, vcd_tri0, vcd_wire, vcd_bit, kNbOfVcdVariableTypes
};
const char* convertVcdVariableTypeToString(unsigned code);

class cProperty {
public:
    enum value_kind : unsigned { empty_value, int64_value, double_value, complex_value, text_value, text_with_unit_value };

    cProperty() = default;
    static cProperty makeInteger(unsigned kind, int64_t value, const std::string& name = std::string());
    static cProperty makeDouble(unsigned kind, double value, const std::string& name = std::string());
    static cProperty makeComplex(unsigned kind, double real, double imag, const std::string& name = std::string());
    static cProperty makeText(unsigned kind, const std::string& text, const std::string& name = std::string());
    static cProperty makeTextWithUnit(unsigned kind, const std::string& text, const std::string& unit,
                                      const std::string& name = std::string());

    unsigned getType() const { return mKind; }
    // The kind's text; for user-defined properties their own name.
    std::string getTypeAsString() const;
    const std::string& getName() const { return mName; }
    value_kind getValueKind() const { return mValueKind; }

    bool isEmpty() const { return mValueKind == empty_value; }
    bool isInteger() const { return mValueKind == int64_value; }
    bool isDouble() const { return mValueKind == double_value; }
    bool isComplex() const { return mValueKind == complex_value; }
    bool isText() const { return mValueKind == text_value || mValueKind == text_with_unit_value; }
    bool hasUnit() const { return mValueKind == text_with_unit_value; }

    int64_t getInteger() const { return mInteger; }
    double getReal() const { return mReal; }
    double getImag() const { return mImag; }
    const std::string& getText() const { return mText; }
    const std::string& getUnit() const { return mUnit; }
    // Numeric value of integer, double and complex (real part); false for the others.
    bool getAsDouble(double& value) const;
    std::string getValueAsString() const;

    // Same kind, name and value, doubles compared with a relative tolerance of 1e-12.
    bool corresponds(const cProperty& other) const;
    bool operator==(const cProperty& other) const;
    bool operator!=(const cProperty& other) const { return !(*this == other); }

private:
    unsigned mKind = undefined_property;
    std::string mName;
    value_kind mValueKind = empty_value;
    int64_t mInteger = 0;
    double mReal = 0.0;
    double mImag = 0.0;
    std::string mText;
    std::string mUnit;
};

}  // namespace vx3::curvePlotProperties

namespace vx3 {

class cCurvePlotProperties {
public:
    using cProperty = curvePlotProperties::cProperty;

    size_t getNbOfProperties() const { return mProperties.size(); }
    const cProperty& getProperty(size_t index) const { return mProperties[index]; }
    const std::vector<cProperty>& getProperties() const { return mProperties; }
    // Returns the new property's index.
    size_t addProperty(const cProperty& property);
    // Replaces the first property of that kind (and name, for user-defined ones) or adds it.
    size_t setProperty(const cProperty& property);
    void removeProperty(size_t index);
    void clearProperties() { mProperties.clear(); }
    // Index of the first property of the kind, or the count when there is none.
    size_t findProperty(unsigned kind, size_t start = 0) const;
    size_t findProperty(unsigned kind, const std::string& name) const;

    // x of an artificial sweep: start and step from the properties X Start and X Step.
    bool getXStartAndStep(double& start, double& step) const;
    bool getXStop(double& stop) const;

    bool operator==(const cCurvePlotProperties& other) const { return mProperties == other.mProperties; }

private:
    std::vector<cProperty> mProperties;
};

}  // namespace vx3
