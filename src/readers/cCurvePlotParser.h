// The one door through which a waveform file enters the store: it decides on a reader from the
// file's name and first bytes, runs it, tries the other readers when it fails, and reloads files
// keeping their sections. A parser object is also the set of options under which it reads.
// It is made for one task and may run on a worker thread: it holds no global state, reports to
// its own logger, and stops with code 26 when the logger's call-back says the user interrupted.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "readers/cCurvePlotParserCommon.h"

namespace vx3 {

class cVxWaveformPlugin;

class cCurvePlotParser : public cCurvePlotParserCommon {
public:
    cCurvePlotParser() = default;
    // Parses at once; throws a cLoggedException when the file can't be read.
    cCurvePlotParser(cCurvePlotDataFile& store, const std::string& fileName);

    // parserType 0 lets the name and the content decide (unless the options force a reader).
    returnCode parse(cCurvePlotDataFile& store, const std::string& fileName, unsigned parserType = 0);
    // The same chain, each reader only looking at the head of the file.
    returnCode detectFileType(cCurvePlotDataFile& store, const std::string& fileName,
                              cCurvePlotParserOpenFileOptions& openFileOptions);
    // Text dropped on the application or pasted: tried as a table and as HTML.
    returnCode parseString(cCurvePlotDataFile& store, const std::string& text);

    // ---- Reload
    // The files among files that changed on disk.
    returnCode reloadMarkedFiles(cCurvePlotDataFile& store, const std::vector<cFileDbSupport*>& files);
    // The open file name (its path or its short name); newName, when given, is its new path.
    // The reloaded file is appended to files.
    returnCode reloadFile(cCurvePlotDataFile& store, const std::string& name, const std::string& newName,
                          std::vector<cFileDbSupport*>& files);
    returnCode reloadFile(cCurvePlotDataFile& store, const std::string& name, const std::string& newName);
    returnCode reload(cCurvePlotDataFile& store, cFileDbSupport& file, const std::string& name);

    // ---- Choosing a reader
    // extension with its dot, in lower case; fileName without folder; stem without extension.
    static unsigned guessPreferredParserFromFileName(const std::string& extensionLowerCase, const std::string& path,
                                                     const std::string& fileName, const std::string& stem);
    static unsigned guessPreferredParserFromBom(const std::string& path);
    // name and content together, as parse decides.
    static unsigned guessPreferredParser(const std::string& path);
    // ".tr0", ".sw12", ".ac3": true with the number.
    static bool checkIsTr0Extension(const std::string& extension, unsigned& index);
    // ".ic" or ".ic" and a number.
    static bool checkIsIc0Extension(const std::string& extension, unsigned& index);
    // The word for a reader type in messages; types without one give the extension without dot.
    static std::string getFileTypeAsString(unsigned type, const std::string& extension);

    // Waveform plug-ins, asked before any reader (none until plug-ins are loaded).
    void setPlugins(const std::vector<cVxWaveformPlugin*>& plugins) { mPlugins = plugins; }

private:
    template <class Fn>
    returnCode withReader(unsigned type, cCurvePlotDataFile& store, Fn&& fn);
    returnCode runReader(unsigned type, cCurvePlotDataFile& store, const std::string& name);
    returnCode detectWithReader(unsigned type, cCurvePlotDataFile& store, const std::string& name,
                                cCurvePlotParserOpenFileOptions& openFileOptions);
    // Logs the final line of a reader's attempt; true when the attempt ends the parse.
    bool printErrorMessageAndQuit(const std::string& typeText, const std::string& name, returnCode code) const;
    std::string resolveFileName(const std::string& fileName) const;

    std::vector<cVxWaveformPlugin*> mPlugins;
};

}  // namespace vx3
