#include <cstdio>

#include "wakeline_version.h"

int main() {
    std::printf("%s %s\n", WAKELINE_TITLE, WAKELINE_VERSION_TEXT);
    return 0;
}
