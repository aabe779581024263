// Scanning speed of numbers: a text of random decimals (1 GB by default) read by the number
// parser through each of the three sources. Baselines in the same run: std::from_chars over the
// same bytes in memory (the floor of any decimal parser) and `wc -l` over the file.
// Before timing, the first ten million numbers are checked bit for bit against strtod.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "readers/scan/cParserBase.h"

using namespace vx3;

namespace {

double seconds(std::chrono::steady_clock::duration d) { return std::chrono::duration<double>(d).count(); }

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Decimals of simulator output: plain, with exponents, short and long; eight per line.
std::string makeText(uint64_t bytes)
{
    std::string text;
    text.reserve(bytes + 64);
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-20, 20);
    char buffer[64];
    for (uint64_t i = 0; text.size() < bytes; ++i) {
        const double v = mantissa(random) * std::pow(10.0, exponent(random));
        const auto result = (i % 3 == 0) ? std::to_chars(buffer, buffer + 64, v, std::chars_format::fixed, 6)
                                         : std::to_chars(buffer, buffer + 64, v);
        text.append(buffer, result.ptr);
        text.push_back(i % 8 == 7 ? '\n' : ' ');
    }
    return text;
}

// Each source's loop in a function of its own, as a reader's loop is: the three are timed on
// equal terms, not as parts of one large function.
template <class It>
__attribute__((noinline)) bool scanAll(It begin, const It& end, double& sum, uint64_t& count)
{
    using parser = cParserBase<It>;
    sum = 0;
    count = 0;
    while (begin != end) {
        double value;
        if (!parser::parseDoubleWithUnits(begin, end, value))
            return false;
        sum += value;
        ++count;
        if (*begin == '\n') {
            ++begin;
            begin.advanceBuffer();
        } else {
            ++begin;
        }
    }
    return true;
}

__attribute__((noinline)) void fromCharsAll(const std::string& text, double& sum, uint64_t& count)
{
    const char* p = text.data();
    const char* end = p + text.size();
    sum = 0;
    count = 0;
    while (p < end) {
        double value;
        const auto result = std::from_chars(p, end, value);
        sum += value;
        ++count;
        p = result.ptr + 1;
    }
}

// The first limit numbers agree with strtod bit for bit.
template <class It>
uint64_t checkAgainstStrtod(It begin, const It& end, const std::string& text, uint64_t limit)
{
    using parser = cParserBase<It>;
    const char* cursor = text.c_str();
    uint64_t mismatches = 0;
    for (uint64_t i = 0; i < limit && begin != end; ++i) {
        double value = 0;
        if (!parser::parseDoubleWithUnits(begin, end, value))
            return limit;
        char* next = nullptr;
        const double expected = std::strtod(cursor, &next);
        mismatches += std::memcmp(&value, &expected, 8) != 0 || begin.position() != uint64_t(next - text.c_str());
        cursor = next + 1;
        ++begin;
        if (i % 8 == 7)
            begin.advanceBuffer();
    }
    return mismatches;
}

}  // namespace

int main(int argc, char** argv)
{
    const uint64_t bytes = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : (1ull << 30);
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 3;
    const std::string file = "/tmp/zelwave-bench-decimals.txt";
    const std::string text = makeText(bytes);
    {
        FILE* out = std::fopen(file.c_str(), "wb");
        if (!out || std::fwrite(text.data(), 1, text.size(), out) != text.size())
            return 1;
        std::fclose(out);
    }
    const double megabytes = static_cast<double>(text.size()) / (1 << 20);

    cParserBaseMappedIteratorHandler mapped;
    cParserBaseFileIteratorHandler buffered;
    cParserBaseStringIteratorHandler memory;
    if (!mapped.openFile(file) || buffered.openTextFile(file, 0) != 0)
        return 1;
    memory.useStringData(text);

    const uint64_t checked = 10000000;
    const uint64_t bad = checkAgainstStrtod(mapped.begin(), mapped.end(), text, checked) +
                         checkAgainstStrtod(buffered.begin(), buffered.end(), text, checked) +
                         checkAgainstStrtod(memory.begin(), memory.end(), text, checked);
    std::printf("strtod_agreement: %llu numbers x 3 sources, %llu mismatches\n",
                static_cast<unsigned long long>(checked), static_cast<unsigned long long>(bad));

    std::vector<double> mappedTimes, fileTimes, stringTimes, fromCharsTimes, wcTimes;
    double sums[4] = {0, 0, 0, 0};
    uint64_t counts[4] = {0, 0, 0, 0};
    for (int round = 0; round < rounds; ++round) {
        auto start = std::chrono::steady_clock::now();
        if (!scanAll(mapped.begin(), mapped.end(), sums[0], counts[0]))
            return 2;
        mappedTimes.push_back(seconds(std::chrono::steady_clock::now() - start));

        start = std::chrono::steady_clock::now();
        if (!scanAll(buffered.begin(), buffered.end(), sums[1], counts[1]))
            return 2;
        fileTimes.push_back(seconds(std::chrono::steady_clock::now() - start));

        start = std::chrono::steady_clock::now();
        if (!scanAll(memory.begin(), memory.end(), sums[2], counts[2]))
            return 2;
        stringTimes.push_back(seconds(std::chrono::steady_clock::now() - start));

        start = std::chrono::steady_clock::now();
        fromCharsAll(text, sums[3], counts[3]);
        fromCharsTimes.push_back(seconds(std::chrono::steady_clock::now() - start));

        start = std::chrono::steady_clock::now();
        if (std::system(("wc -l " + file + " > /dev/null").c_str()) != 0)
            return 3;
        wcTimes.push_back(seconds(std::chrono::steady_clock::now() - start));
    }
    std::remove(file.c_str());
    for (int k = 0; k < 3; ++k)
        if (counts[k] != counts[3] || sums[k] != sums[3]) {
            std::printf("error: source %d read %llu numbers, from_chars %llu\n", k,
                        static_cast<unsigned long long>(counts[k]), static_cast<unsigned long long>(counts[3]));
            return 4;
        }
    const double fromChars = megabytes / medianOf(fromCharsTimes);
    const double wc = megabytes / medianOf(wcTimes);
    const char* names[] = {"scan_mapped_iterator", "scan_file_iterator", "scan_string_iterator"};
    const std::vector<double>* times[] = {&mappedTimes, &fileTimes, &stringTimes};
    std::printf("numbers: %llu in %.0f MB\n", static_cast<unsigned long long>(counts[3]), megabytes);
    for (int k = 0; k < 3; ++k) {
        const double rate = megabytes / medianOf(*times[k]);
        std::printf("%s: %.1f MB/s; baseline: %.1f MB/s (std::from_chars); ratio: %.3f\n", names[k], rate, fromChars,
                    rate / fromChars);
        std::printf("%s: %.1f MB/s; baseline: %.1f MB/s (wc -l); ratio: %.3f\n", names[k], rate, wc, rate / wc);
    }
    return bad ? 5 : 0;
}
