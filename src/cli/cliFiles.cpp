// Subcommands that read waveform files: what a file holds, and a curve's values as CSV.
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <sstream>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "cCliTool.h"
#include "cliFileSupport.h"
#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParser.h"

namespace vx3 {

namespace {

using namespace cliFiles;

std::string unitOf(const cCurvePlotDataType* type)
{
    if (!type || (type->getUnit() == curvePlotDataType::undefined_unit && type->getUnitString().empty()))
        return std::string();
    // Units without a short text (seconds) show the type's name, then the unit's long name.
    std::string text = type->getUnitStr();
    if (text.empty())
        text = type->name();
    return text.empty() ? type->getUnitName() : text;
}


int runInfo(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    cFileOptions options;
    options.allowedFlags = {"--tree"};
    if (!readOptions(arguments, options, err, false))
        return 2;
    const bool tree = options.hasFlag("--tree");
    if (options.positional.empty()) {
        err << "zelwave-cli info: name at least one file\n";
        return 2;
    }
    int result = 0;
    for (const std::string& name : options.positional) {
        cCurvePlotDataFile store;
        const returnCode code = readFile(store, name, options, err);
        if (code != ok && code != partly_parsed) {
            result = 1;
            continue;
        }
        const std::vector<cCurvePlotDataSection*> sections = sectionsOf(store);
        const cFileDbSupport* file = sections.empty() ? nullptr : sections.front()->getFile();
        out << "file \"" << (file ? file->fileName() : name) << "\": " << (file ? file->getDbTypeAsSting() : "")
            << ", " << sections.size() << (sections.size() == 1 ? " section" : " sections")
            << (code == partly_parsed ? " (read partially)" : "") << '\n';
        for (size_t s = 0; s < sections.size(); ++s) {
            cCurvePlotDataSection& section = *sections[s];
            uint64_t users = 0;
            for (uint64_t c = 0; c < section.getNbOfVariables(); ++c)
                users += section.getVariable(c).checkMustClose() ? 0 : 1;
            out << "section " << s << " \"" << section.completeName() << "\": " << users
                << (users == 1 ? " curve" : " curves");
            if (section.getStepIndex())
                out << ", run " << section.getStepIndex();
            for (const auto& parameter : section.getStepParameters().parameters)
                out << ", " << parameter.getName() << "=" << parameter.getValueAsString();
            out << '\n';
            if (tree) {
                printInstanceTree(section, out);
                continue;
            }
            for (uint64_t k = 0; k < section.getNbOfSweepVariables(); ++k) {
                const cCurvePlotSweepVariable& sweep = section.getSweepVariable(k);
                // Values still in the file are counted, not loaded.
                const uint64_t points =
                    sweep.checkDbSupportActive() && sweep.checkNeedsLoading() ? sweep.getDbSize() : sweep.getVectorSize();
                out << "  sweep \"" << sweep.name() << "\" [" << unitOf(sweep.getType()) << "] "
                    << points << " points\n";
            }
            for (uint64_t c = 0; c < section.getNbOfVariables(); ++c) {
                const cCurvePlotVariable& curve = section.getVariable(c);
                if (curve.checkMustClose())
                    continue;
                out << "  curve \"" << curve.name() << "\" [" << unitOf(curve.getType()) << "] "
                    << section.getVariableValueCount(c) << " points";
                if (curve.getType() && curve.getType()->checkIsComplex())
                    out << ", complex";
                if (curve.getType() && curve.getType()->checkIsEnum())
                    out << ", enumeration of " << curve.getType()->getStrings().size();
                if (curve.getType() && curve.getType()->checkIsDigital()) {
                    const uint64_t width = curve.getType()->getConstantStringSize();
                    out << ", logic" << (width > 1 ? " vector of " + std::to_string(width) : std::string());
                }
                out << '\n';
            }
        }
    }
    return result;
}

int runDump(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    cFileOptions options;
    options.allowedFlags = {"--ticks", "--all-logic"};
    if (!readOptions(arguments, options, err, true))
        return 2;
    const bool allLogic = options.hasFlag("--all-logic");
    if (options.positional.size() != (allLogic ? 1u : 2u)) {
        err << (allLogic ? "zelwave-cli dump: --all-logic takes one file\n" : "zelwave-cli dump: name one file and one curve\n");
        return 2;
    }
    uint64_t sectionIndex = 0;
    if (!cVxString(options.section).toUint64(sectionIndex)) {
        err << "zelwave-cli dump: --section wants a number\n";
        return 2;
    }
    cCurvePlotDataFile store;
    if (!openFile(store, options, err))
        return 1;
    const std::vector<cCurvePlotDataSection*> sections = sectionsOf(store);
    if (sectionIndex >= sections.size()) {
        err << "zelwave-cli dump: the file has " << sections.size() << " section(s)\n";
        return 1;
    }
    cCurvePlotDataSection& section = *sections[sectionIndex];
    if (allLogic) {
        // Every digital curve of the section, for comparing whole dumps.
        out << "curve,time,state\n";
        std::ostringstream lines;
        for (uint64_t c = 0; c < section.getNbOfVariables(); ++c) {
            cCurvePlotVariable& curve = section.getVariable(c);
            if (curve.checkMustClose() || !curve.getType() || !curve.getType()->checkIsDigital())
                continue;
            // One curve in memory at a time.
            bool load = false;
            if (!loadValues(section, curve, c, false, "dump", err, &load))
                return 1;
            if (!checkIsLogicChangeCurve(curve))
                continue;
            lines.str(std::string());
            dumpLogicChanges(section, curve, options.hasFlag("--ticks"), lines);
            std::istringstream split(lines.str());
            for (std::string line; std::getline(split, line);)
                out << csvField(curve.name()) << ',' << line << '\n';
            if (load)
                curve.releaseDb();
        }
        return 0;
    }
    const std::string& curveName = options.positional[1];
    const uint64_t sweeps = section.getNbOfSweepVariables();
    uint64_t index = section.findVariableIndex(curveName);
    const cCurvePlotVariable* curve = index != cCurvePlotDataSection::npos ? &section.getVariable(index) : nullptr;
    const cCurvePlotVariable* sweepCurve = nullptr;
    uint64_t sweepIndex = 0;
    if (!curve) {
        sweepIndex = section.findSweepVariableIndex(curveName);
        curve = sweepCurve = sweepIndex != cCurvePlotDataSection::npos ? &section.getSweepVariable(sweepIndex) : nullptr;
    }
    if (!curve) {
        err << "zelwave-cli dump: no curve \"" << curveName << "\" in section " << sectionIndex << '\n';
        return 1;
    }
    const std::string xName = sweeps ? section.getSweepVariable(sweeps - 1).name() : "x";
    if (!loadValues(section, *curve, index, sweepCurve != nullptr, "dump", err))
        return 1;
    if (checkIsLogicChangeCurve(*curve)) {
        out << csvField(xName) << ',' << csvField(curve->name()) << '\n';
        dumpLogicChanges(section, *curve, options.hasFlag("--ticks"), out);
        return 0;
    }
    if (curve->checkIsParameterizedLayout()) {
        // A curve with x values of its own (the changes of a sparse curve).
        curvePlotFunctionArgs::cDataVectors vectors;
        if (!curve->computeDataVectors(section, vectors) || !vectors.checkHasX()) {
            err << "zelwave-cli dump: \"" << curveName << "\" has no values to print\n";
            return 1;
        }
        out << csvField(xName) << ',' << csvField(curve->name()) << (vectors.yDoubleComplex || vectors.yFloatComplex ? ",imag" : "")
            << '\n';
        curvePlotFunctionArgs::visitDataVectors(vectors, [&](auto xs, auto ys) {
            for (uint64_t i = 0; i < vectors.count; ++i) {
                out << number(static_cast<double>(xs[i])) << ',';
                if constexpr (std::is_arithmetic_v<std::remove_cv_t<std::remove_pointer_t<decltype(ys)>>>)
                    out << number(static_cast<double>(ys[i])) << '\n';
                else
                    out << number(ys[i].real()) << ',' << number(ys[i].imag()) << '\n';
            }
            return 0;
        });
        return 0;
    }
    const bool complex = curve->getType() && curve->getType()->checkIsComplex();
    const uint64_t count = curve->getVectorSize();
    // Outer sweeps of a matrix first, then x, then the value (two for a complex curve).
    for (uint64_t k = 0; k + 1 < sweeps; ++k)
        out << csvField(section.getSweepVariable(k).name()) << ',';
    out << csvField(xName) << ',' << csvField(curve->name());
    if (complex)
        out << ",imag";
    out << '\n';
    const uint64_t cuts = section.computeNbOfCutsPerCurve();
    const uint64_t xCount = cuts ? count / cuts : count;
    std::vector<uint64_t> permutation, sweepIndices;
    section.getDefaultSweepPermutationArray(permutation);
    for (uint64_t cut = 0; cut < cuts; ++cut) {
        if (sweeps > 1)
            section.computeSweepIndicesForCut(cut, permutation, sweepIndices);
        for (uint64_t i = 0; i < xCount; ++i) {
            const uint64_t at = sweeps > 1 ? section.computeSweepMatrixCurveIndex(i, permutation, sweepIndices) : i;
            for (uint64_t k = 0; k + 1 < sweeps; ++k)
                out << number(section.getSweepValue(k, sweepIndices[k])) << ',';
            out << number(sweeps ? section.getSweepValue(sweeps - 1, i) : static_cast<double>(i)) << ',';
            if (complex) {
                const std::complex<double> value = curve->getDataType() == curvePlotProperties::float_complex
                                                       ? std::complex<double>(curve->floatComplexValues()[at])
                                                       : curve->doubleComplexValues()[at];
                out << number(value.real()) << ',' << number(value.imag()) << '\n';
            } else if (curve == sweepCurve) {
                out << number(section.getSweepValue(sweepIndex, at)) << '\n';
            } else {
                out << number(curve->getDoubleValue(at)) << '\n';
            }
        }
    }
    return 0;
}

}  // namespace

void addFileSubcommands(cCliTool& tool)
{
    const std::string options =
        "Options:\n"
        "  --reader R   read with one reader only: csv (fast, then slow), fast, slow, html, tecplot,\n"
        "               vcd, nutmeg;\n"
        "               by default the file's name and content decide\n"
        "  --verbose    also print the readers' informations (to standard error)\n"
        "  --read-all   read every value when opening (large value change dumps otherwise keep\n"
        "               their values in the file until a curve is used)\n";
    tool.add({"info", "list the sections, curves, units and point counts of waveform files",
              "usage: zelwave-cli info [--reader R] [--verbose] [--tree] FILE...\n\n"
              "Reads each file as the viewer opens it and prints its sections, their sweeps (x axes)\n"
              "and curves with unit and number of points. Warnings and errors of the readers go to\n"
              "standard error. Exit code 1 when a file can't be read.\n"
              "With --tree each section's instance tree is printed instead: instances end in \"/\"\n"
              "(with their kind, such as \"module\"), and each curve stands under its instance.\n\n" +
                  options,
              runInfo});
    tool.add({"dump", "write one curve's x and values as CSV with full precision",
              "usage: zelwave-cli dump [--reader R] [--verbose] [--section N] [--ticks] FILE CURVE\n"
              "       zelwave-cli dump [--reader R] [--verbose] [--section N] [--ticks] --all-logic FILE\n\n"
              "Writes a header line and one line per point: x and the value (real and imaginary part\n"
              "for a complex curve), printed with %.17g so that they read back to the same doubles.\n"
              "For a sweep matrix each line starts with the values of the outer sweeps. CURVE may also\n"
              "name a sweep. N counts the file's sections from 0 (default 0).\n"
              "A digital curve prints one line per change: the time in seconds (--ticks: in the\n"
              "file's integer time units) and the state, \"0\", \"1\", \"x\", \"z\" or a vector of them\n"
              "written left to right. --all-logic prints the changes of every digital curve of the\n"
              "section as \"curve,time,state\" lines (curve names may contain commas: split from the right).\n\n" +
                  options,
              runDump});
}

}  // namespace vx3
