// Writes a large value change dump for the reading benchmark: a few thousand signals in nested
// scopes (single bits, buses, reals), values changing at random, until the file reaches the
// size asked for. Deterministic for a given size.
// usage: bench_vcd_generate FILE MEGABYTES [SIGNALS]
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {
std::string codeOf(uint64_t index)
{
    std::string code;
    do {
        code.push_back(static_cast<char>('!' + index % 94));
        index /= 94;
    } while (index > 0);
    return code;
}
}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s FILE MEGABYTES [SIGNALS]\n", argv[0]);
        return 2;
    }
    const uint64_t target = std::strtoull(argv[2], nullptr, 10) * 1000000ull;
    const unsigned signals = argc > 3 ? static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10)) : 4000;
    std::FILE* file = std::fopen(argv[1], "w");
    if (!file)
        return 1;
    std::vector<char> buffer(1 << 22);
    std::setvbuf(file, buffer.data(), _IOFBF, buffer.size());
    std::fprintf(file, "$date today $end\n$version bench_vcd_generate $end\n$timescale 1ps $end\n");
    std::fprintf(file, "$scope module top $end\n");
    struct cSignal {
        std::string code;
        unsigned width;  // 0: real
        char state = '0';
    };
    std::vector<cSignal> list;
    std::mt19937_64 random(42);
    const unsigned perScope = 100;
    for (unsigned i = 0; i < signals; ++i) {
        if (i % perScope == 0) {
            if (i)
                std::fprintf(file, "$upscope $end\n");
            std::fprintf(file, "$scope module block%u $end\n", i / perScope);
        }
        const unsigned kind = i % 20;
        const unsigned width = kind < 14 ? 1 : kind < 19 ? (kind < 17 ? 8 : 32) : 0;
        list.push_back({codeOf(i), width, '0'});
        if (width == 0)
            std::fprintf(file, "$var real 64 %s level%u $end\n", list.back().code.c_str(), i);
        else if (width == 1)
            std::fprintf(file, "$var wire 1 %s s%u $end\n", list.back().code.c_str(), i);
        else
            std::fprintf(file, "$var reg %u %s bus%u [%u:0] $end\n", width, list.back().code.c_str(), i, width - 1);
    }
    std::fprintf(file, "$upscope $end\n$upscope $end\n$enddefinitions $end\n#0\n$dumpvars\n");
    auto writeValue = [&](cSignal& s) {
        if (s.width == 0) {
            std::fprintf(file, "r%.6g %s\n", std::uniform_real_distribution<double>(-5, 5)(random), s.code.c_str());
        } else if (s.width == 1) {
            // Single bits change: they toggle, and now and then go unknown.
            const uint64_t r = random() % 64;
            s.state = r == 0 ? 'x' : (s.state == '1' ? '0' : '1');
            std::fprintf(file, "%c%s\n", s.state, s.code.c_str());
        } else {
            uint64_t bits = random();
            char text[65];
            unsigned n = 0;
            // Writers drop leading zeros.
            bool leading = true;
            for (int b = static_cast<int>(s.width) - 1; b >= 0; --b) {
                const bool one = (bits >> b) & 1;
                if (leading && !one && b > 0)
                    continue;
                leading = false;
                text[n++] = one ? '1' : '0';
            }
            text[n] = 0;
            std::fprintf(file, "b%s %s\n", text, s.code.c_str());
        }
    };
    for (cSignal& s : list)
        writeValue(s);
    std::fprintf(file, "$end\n");
    uint64_t time = 0;
    while (static_cast<uint64_t>(std::ftell(file)) < target) {
        time += 1 + random() % 1000;
        std::fprintf(file, "#%llu\n", static_cast<unsigned long long>(time));
        // Distinct variables in one step, as simulators write them.
        const unsigned changes = 5 + random() % 40;
        const uint64_t first = random() % list.size();
        const uint64_t stride = 1 + random() % (list.size() / 64);
        for (unsigned c = 0; c < changes; ++c)
            writeValue(list[(first + c * stride) % list.size()]);
    }
    std::fclose(file);
    return 0;
}
