#include <cstdio>

int main() {
    std::printf("wakeline-tool\n");
    return 2;
}
