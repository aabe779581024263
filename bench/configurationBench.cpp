// Saving and loading the configuration file, against writing and reading the same bytes in a plain
// file with the same durability (one fsync per save), in the same run.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/core/wxWaveExplorerCommand.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxLogger.h"

namespace {

using namespace vx3;

double milliseconds(std::chrono::steady_clock::duration d)
{
    return std::chrono::duration<double, std::milli>(d).count();
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

template <typename F>
double timeIt(F&& work)
{
    auto start = std::chrono::steady_clock::now();
    work();
    return milliseconds(std::chrono::steady_clock::now() - start);
}

void print(const char* name, double value, double baseline)
{
    std::printf("%s: %.3f ms; baseline: %.3f ms; ratio: %.1f\n", name, value, baseline,
                baseline > 0 ? value / baseline : 0.0);
}

}  // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 50;
    char pattern[] = "/tmp/zelwave-bench-conf-XXXXXX";
    const char* made = mkdtemp(pattern);
    if (!made)
        return 1;
    const std::string folder = made;
    const std::string name = folder + "/conf.db";
    const std::string plain = folder + "/plain.bin";

    // A configuration as a user's looks after a while: every option, full recent lists, changed bindings.
    wxWaveExplorerConfiguration configuration;
    configuration.setConfigFileName(name);
    for (int i = 0; i < 12; ++i)
        configuration.addLastOpenedFiles("/home/user/simulations/run_" + std::to_string(i) + "/result.tr0");
    configuration.setLastDirectory("/home/user/simulations");
    configuration.setKeyBinding(0, "R");
    cVxLogger quiet(vxLogger::fatal_error);
    wxWaveExplorerCommand command;
    if (command.parseCommandString("set_option fft_parameter_nb_time_samples 65536", quiet))
        configuration.setOption(command);

    std::vector<uint8_t> bytes;
    for (auto topic : {waveExplorerConfiguration::topic_main, waveExplorerConfiguration::topic_post_process,
                       waveExplorerConfiguration::topic_browser}) {
        auto blob = configuration.serializeTopic(topic);
        bytes.insert(bytes.end(), blob.begin(), blob.end());
    }

    std::vector<double> saves, loads, plainSaves, plainLoads;
    bool ok = true;
    for (int i = 0; i < rounds; ++i) {
        configuration.setWindowSize(1000 + i, 800);  // a change, so that every save writes
        saves.push_back(timeIt([&] { ok &= configuration.saveToConfig(quiet); }));
        wxWaveExplorerConfiguration reader;
        reader.setConfigFileName(name);
        loads.push_back(timeIt([&] { ok &= reader.loadFromConfig(quiet); }));
        ok &= reader.windowWidth == 1000 + i;

        plainSaves.push_back(timeIt([&] {
            int fd = ::open(plain.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            ok &= fd >= 0 && ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
            ok &= ::fsync(fd) == 0;
            ::close(fd);
        }));
        plainLoads.push_back(timeIt([&] {
            std::vector<uint8_t> back(bytes.size());
            int fd = ::open(plain.c_str(), O_RDONLY);
            ok &= fd >= 0 && ::read(fd, back.data(), back.size()) == static_cast<ssize_t>(back.size());
            ::close(fd);
            ok &= back == bytes;
        }));
    }
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    if (!ok) {
        std::fprintf(stderr, "a save or load failed\n");
        return 1;
    }
    std::printf("# %zu bytes of settings in three blobs, median of %d rounds\n", bytes.size(), rounds);
    print("configuration save", medianOf(saves), medianOf(plainSaves));
    print("configuration load", medianOf(loads), medianOf(plainLoads));
    return 0;
}
