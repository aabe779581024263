// The dump the digital drawing tests draw: written by iverilog through
// oracles/digital_dump.py, whose own parse of the dump lists each signal's changes.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace zwtest {

struct cDigitalDumpOracle {
    using cChanges = std::vector<std::pair<uint64_t, std::string>>;
    double scale = 0;  // seconds per tick
    uint64_t end = 0;  // the dump's last time, in ticks
    std::map<std::string, cChanges> changes;  // signal name: (tick, value) per change

    // Writes design.vcd and changes.txt into folder; false when the tools are missing.
    bool write(const std::string& folder)
    {
        const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/widgets/oracles/digital_dump.py";
        if (std::system(("/usr/bin/python3 '" + script + "' '" + folder + "'").c_str()) != 0)
            return false;
        std::ifstream file(folder + "/changes.txt");
        for (std::string line; std::getline(file, line);) {
            std::istringstream in(line);
            std::string name;
            in >> name;
            if (name == "scale")
                in >> scale;
            else if (name == "end")
                in >> end;
            else
                for (std::string word; in >> word;)
                    changes[name].emplace_back(std::stoull(word.substr(0, word.find(':'))),
                                               word.substr(word.find(':') + 1));
        }
        return scale > 0;
    }
};

}  // namespace zwtest
