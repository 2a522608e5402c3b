// Writes the alarm's chime as a WAV file, at build time, so that the repository holds the
// recipe of the sound rather than its bytes. Usage: wakeline_make_chime OUTPUT.wav

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "power/wave_sound.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT.wav\n", argv[0]);
        return 2;
    }
    const std::string bytes = wakeline::WaveFileBytes(wakeline::MakeChime());
    std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        std::fprintf(stderr, "could not write %s: %s\n", argv[1], std::strerror(errno));
        return 1;
    }
    return 0;
}
